// Draws form files with the data and report packages' classes registered, for looking
// at what they draw: render-with-packages OUT.png FORM.dfm [--design] [--zoom X Y W H N]
// (--zoom: only that part of the picture, N times larger, pixels kept square).
#include "tests/packages/PackageTestUtil.h"

#include "tests/support/Corpus.h"

#include <QApplication>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <algorithm>

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
  QRect part;
  int factor = 1;
  for (int i = 3; i < argc; ++i) {
    if (std::strcmp(argv[i], "--design") == 0) form->SetDesignState(true);
    if (std::strcmp(argv[i], "--zoom") == 0 && i + 5 < argc) {
      part = QRect(std::atoi(argv[i + 1]), std::atoi(argv[i + 2]), std::atoi(argv[i + 3]), std::atoi(argv[i + 4]));
      factor = std::max(1, std::atoi(argv[i + 5]));
      i += 5;
    }
  }
  QImage image = RenderForm(form);
  if (!part.isEmpty()) image = image.copy(part).scaled(part.size() * factor, Qt::IgnoreAspectRatio, Qt::FastTransformation);
  const bool saved = image.save(argv[1], "PNG");
  delete form;
  return saved ? 0 : 1;
}
