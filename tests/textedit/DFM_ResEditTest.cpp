// The form-text editor driven as a user drives it: loading, the tree, the keywords, the
// status bar, compiling, the font command and the strings of a form.
#include "tests/support/Corpus.h"
#include "tests/textedit/EditorTestUtil.h"

#include "platform/streaming/ObjectText.h"

#include <QImage>

using namespace lumora::test;

namespace {

class ResEditTest : public EditorFormTest {
protected:
  void SetUp() override {
    EditorFormTest::SetUp();
    editor = new TjoDFM_ResourceEditor(form);
    editor->SetParent(form);
    editor->SetAlign(alClient);
  }
  TjoDFM_ResourceEditor* editor = nullptr;
};

TEST_F(ResEditTest, LooksLikeAnEditor) {
  LUMORA_REQUIRE_CORPUS();
  const std::string resource = ReadFileBytes(CorpusDir() / "bin" / "1201.dfm");
  TStringList lines;
  lines.SetText(ObjectResourceToText(resource));
  editor->SetTreeVisible(true);
  editor->SetStatusBarVisible(true);
  editor->SetText("1201.dfm");
  ShowForm();
  editor->LoadLines(&lines);
  editor->RichEdit()->SetFocus();
  QApplication::processEvents();
  form->Widget()->grab().save(QString::fromStdString(std::string(LUMORA_BINARY_DIR) + "/editor-look.png"));
  EXPECT_GT(editor->Tree()->Items()->Count(), 1);
}

}  // namespace
