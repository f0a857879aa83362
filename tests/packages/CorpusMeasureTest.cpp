// How much of the real form files the packages Lumora ships can build: every form of the
// corpus is read through the package loader, first with the standard package alone (as
// the known-packages list leaves it), then with every shipped package loaded. Prints the
// child components of a known class, those the reader builds, and the 20 classes most
// often missing.
#include "liveform/PackConfig.h"

#include "platform/vcl/Dialogs.h"
#include "platform/vcl/Forms.h"
#include "tests/packages/CorpusCount.h"
#include "tests/support/Corpus.h"
#include "tests/support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

double Share(long part, long whole) { return whole ? 100.0 * static_cast<double>(part) / static_cast<double>(whole) : 0.0; }

}  // namespace

TEST(CorpusMeasureTest, ComponentsTheShippedPackagesBuild) {
  LUMORA_REQUIRE_CORPUS();
  Application->Initialize();
  lumora::test::TTempDir dir;
  SetPackagesIniFile(dir / "lumora.ini");
  SetUserQuestionHook([](const TUserQuestion& q) {
    ADD_FAILURE() << q.Text;
    return mrOk;
  });
  TjoPackageLoaderSR* loader = Loader();
  loader->SetRootDir(LUMORA_BINARY_DIR);
  loader->SetKnownPackagesFile(LUMORA_BINARY_DIR "/bin/known-packages");
  ASSERT_TRUE(loader->LoadFromKnownPackages());
  ASSERT_EQ(loader->Count(), 4);

  const auto files = lumora::test::CorpusForms();
  ASSERT_GT(files.size(), 3000u);

  // The known-packages list loads the standard package and lists the others unloaded.
  for (int i = 0; i < loader->Count(); ++i)
    EXPECT_EQ(loader->IsLoaded(i), std::filesystem::path(loader->FileName(i)).filename() == "dclstd.so")
        << loader->FileName(i);
  const auto standard = lumora::test::CountCorpusComponents(files);
  lumora::test::PrintCorpusCount("dclstd", standard);

  for (int i = 0; i < loader->Count(); ++i) {
    loader->SetLoaded(i, true);
    ASSERT_TRUE(loader->IsLoaded(i)) << loader->FileName(i);
  }
  const auto all = lumora::test::CountCorpusComponents(files);
  lumora::test::PrintCorpusCount("dclstd, dclsmp, dcldb and dclqrt", all);

  EXPECT_GT(all.Forms, 3000);
  EXPECT_EQ(all.Forms, standard.Forms);
  EXPECT_EQ(all.Instances, standard.Instances);
  EXPECT_GT(all.Instances, 90000);
  // The controls alone covered 55.8% of the corpus's components by class; the four
  // packages, at least 82%.
  EXPECT_GE(Share(standard.Known, standard.Instances), 55.8);
  EXPECT_GE(Share(all.Known, all.Instances), 82.0);
  // The reader builds every component of a known class that no unknown class encloses.
  EXPECT_EQ(standard.Built, standard.Known - standard.KnownInsideUnknown);
  EXPECT_EQ(all.Built, all.Known - all.KnownInsideUnknown);
  EXPECT_GT(all.Built, standard.Built);

  SetUserQuestionHook({});
  loader->SetDirty(false);
  FinalizePackConfig();
  SetPackagesIniFile("");
}
