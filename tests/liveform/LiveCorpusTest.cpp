// The real form files opened as live forms: the live window shows what lumora-form-png
// draws, and every binary form opens, changes mode, shows its inspector with every node
// selected in turn, and closes.
#include "foundation/ApEvent.h"
#include "platform/vcl/FormRender.h"
#include "tests/liveform/LiveFormTestUtil.h"
#include "tests/support/Corpus.h"

#include <QImage>

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <unistd.h>

using namespace livetest;
namespace fs = std::filesystem;

namespace {

#if defined(__SANITIZE_ADDRESS__)
// Under the sanitizers every tenth form is enough to find what goes wrong with memory.
constexpr size_t kCorpusStep = 10;
#else
constexpr size_t kCorpusStep = 1;
#endif

class LiveCorpusTest : public ::testing::Test {
protected:
  void SetUp() override {
    Application->Initialize();
    UseTheControls();
    FinalizeApEvent();
  }
  void TearDown() override { FinalizeApEvent(); }
};

// What lies inside the frame of a picture of the whole window.
QImage Inside(const QImage& picture, const TCustomForm* form) {
  const int fw = form->FrameWidth();
  return picture.copy(fw, fw + form->CaptionHeight(), picture.width() - 2 * fw,
                      picture.height() - 2 * fw - form->CaptionHeight());
}

}  // namespace

TEST_F(LiveCorpusTest, TheLiveWindowShowsWhatTheFormDrawnToAPictureShows) {
  LUMORA_REQUIRE_CORPUS();
  // Dialogs, tool windows, menus, page controls, grids, lists, trees, tool and status
  // bars, rich text, a Chinese code page and one of the largest forms.
  const char* names[] = {"0005.dfm", "0006.dfm", "0007.dfm", "0201.dfm", "0207.dfm", "0209.dfm",
                         "0212.dfm", "0238.dfm", "0251.dfm", "0407.dfm", "0434.dfm", "2852.dfm"};
  const fs::path dir = fs::temp_directory_path() / ("lumora-live-" + std::to_string(::getpid()));
  fs::create_directories(dir);
  for (const char* name : names) {
    const fs::path file = lumora::test::CorpusDir() / "bin" / name;
    SCOPED_TRACE(file.string());
    const fs::path png = dir / (std::string(name) + ".png");
    std::vector<std::string> errors;
    ASSERT_TRUE(RenderFormFileToPng(file.string(), png.string(), errors));
    const QImage drawn = QImage(QString::fromStdString(png.string())).convertToFormat(QImage::Format_RGB32);

    TjoDesigner designer;
    ASSERT_TRUE(designer.Document()->LoadFromFile(file.string()));
    QCursor::setPos(-1000, -1000);
    designer.Show();
    QApplication::processEvents();
    TfixFormFFF* form = designer.HostForm();
    QWidget* window = form->Widget();
    EXPECT_EQ(window->size(), drawn.size());
    const QImage live =
        window->grab(QRect(form->WindowInsideOffset(), form->WindowInsideSize(window->size()))).toImage().convertToFormat(
            QImage::Format_RGB32);
    EXPECT_TRUE(live == Inside(drawn, form)) << "the inside of the live window differs from " << png.string();
    EXPECT_GT(live.width(), 50);
  }
  fs::remove_all(dir);
}

TEST_F(LiveCorpusTest, EveryBinaryFormOpensLiveChangesModeAndShowsEveryComponentInItsInspector) {
  LUMORA_REQUIRE_CORPUS();
  auto files = lumora::test::CorpusFiles("bin", ".dfm");
  const auto pairs = lumora::test::CorpusFiles("pairs", ".bin.dfm");
  files.insert(files.end(), pairs.begin(), pairs.end());
  ASSERT_GT(files.size(), 2000u);
  const auto start = std::chrono::steady_clock::now();
  size_t opened = 0, nodes = 0;
  for (size_t i = 0; i < files.size(); i += kCorpusStep) {
    const fs::path& file = files[i];
    SCOPED_TRACE(file.string());
    auto designer = std::make_unique<TjoDesigner>();
    ASSERT_TRUE(designer->Document()->LoadFromFile(file.string()));
    designer->Show();
    TfixFormFFF* form = designer->HostForm();
    ASSERT_NE(form, nullptr);
    EXPECT_TRUE(form->Widget()->isVisible());
    designer->SetMode(jdmDeadForm);
    EXPECT_EQ(GetSystemMenu(form)->RadioChecked(SC_JO_LIVEFORM, SC_JO_DEADFORM), SC_JO_DEADFORM);
    designer->SetMode(jdmLiveForm);
    designer->ShowInspector();
    TFrm_DFM_OI* inspector = designer->Inspector();
    ASSERT_NE(inspector, nullptr);
    ASSERT_FALSE(inspector->IsEmpty());
    TTreeNodes* items = inspector->CompTree->Items();
    ASSERT_GT(items->Count(), 0);
    for (TTreeNode* node = items->GetFirstNode(); node; node = node->GetNext()) {
      inspector->CompTree->SetSelected(node);
      // Every block's property text starts with its heading and ends with its end.
      TStrings* lines = inspector->Propertyes->Lines();
      ASSERT_GE(lines->Count(), 2);
      EXPECT_NE(lines->Strings(0).find(node->Text()), std::string::npos) << node->Text();
      ++nodes;
    }
    // The live form closes as Esc closes it; the designer goes with what it owns.
    form->Release();
    QApplication::processEvents();
    EXPECT_EQ(designer->HostForm(), nullptr);
    designer.reset();
    ++opened;
    FinalizeApEvent();
  }
  const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  std::printf("%zu live forms, %zu components selected, in %.1f s\n", opened, nodes, seconds);
}
