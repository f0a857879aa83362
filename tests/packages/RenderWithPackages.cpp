// Draws form files with the data and report packages' classes registered, for looking
// at what they draw: render-with-packages OUT.png FORM.dfm [--design]
#include "tests/packages/PackageTestUtil.h"

#include "tests/support/Corpus.h"

#include <QApplication>

#include <cstdio>
#include <cstdlib>
#include <cstring>

int main(int argc, char** argv) {
  if (!std::getenv("QT_QPA_PLATFORM")) setenv("QT_QPA_PLATFORM", "offscreen", 1);
  QApplication app(argc, argv);
  if (argc < 3) {
    std::fprintf(stderr, "usage: render-with-packages OUT.png FORM.dfm [--design]\n");
    return 2;
  }
  lumora::test::RegisterPackageClassesForTest(true);
  TFormLoadResult result;
  TCustomForm* form = lumora::test::ReadCorpusForm(argv[2], &result);
  for (const std::string& e : result.Errors) std::fprintf(stderr, "%s\n", e.c_str());
  if (argc > 3 && std::strcmp(argv[3], "--design") == 0) form->SetDesignState(true);
  const QImage image = RenderForm(form);
  const bool saved = image.save(argv[1], "PNG");
  delete form;
  return saved ? 0 : 1;
}
