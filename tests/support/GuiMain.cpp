// main() of the widget tests: a QApplication on the offscreen platform unless told otherwise.
#include <QApplication>
#include <gtest/gtest.h>

#include <cstdlib>

int main(int argc, char** argv) {
  if (!std::getenv("QT_QPA_PLATFORM")) setenv("QT_QPA_PLATFORM", "offscreen", 1);
  QApplication app(argc, argv);
  ::testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
