// lumora-screenshot: saves what the X display shows (every window on it) as a PNG, after
// waiting a moment for the windows to draw. For looking at Lumora under Xvfb, where there
// is no desktop to take a picture with.
//   lumora-screenshot OUT.png [DELAY_MS]
#include <QGuiApplication>
#include <QPixmap>
#include <QScreen>
#include <QThread>

#include <cstdio>
#include <cstdlib>

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "Usage: lumora-screenshot OUT.png [DELAY_MS]\n");
    return 2;
  }
  const int delay = argc > 2 ? std::atoi(argv[2]) : 0;
  QGuiApplication app(argc, argv);
  if (delay > 0) QThread::msleep(static_cast<unsigned long>(delay));
  QScreen* screen = QGuiApplication::primaryScreen();
  if (!screen) {
    std::fprintf(stderr, "lumora-screenshot: no screen\n");
    return 1;
  }
  const QPixmap shot = screen->grabWindow(0);
  if (shot.isNull() || !shot.save(QString::fromLocal8Bit(argv[1]))) {
    std::fprintf(stderr, "lumora-screenshot: cannot save %s\n", argv[1]);
    return 1;
  }
  return 0;
}
