// Draws the program's icon at the sizes of the icon theme, into DIR/NxN/apps/lumora.png:
//   lumora-draw-icon desktop/icons/hicolor
#include <QDir>
#include <QFont>
#include <QGuiApplication>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
// The drawing, on a 256-unit canvas, scaled to each size.
static void draw(QPainter& p) {
  p.setRenderHint(QPainter::Antialiasing);
  // The window.
  QRectF win(20, 36, 216, 184);
  QPainterPath shadow;
  shadow.addRoundedRect(win.translated(6, 8), 10, 10);
  p.fillPath(shadow, QColor(0, 0, 0, 60));
  QPainterPath frame;
  frame.addRoundedRect(win, 10, 10);
  p.fillPath(frame, QColor(212, 208, 200));
  p.setPen(QPen(QColor(64, 64, 64), 4));
  p.drawPath(frame);
  // Caption bar.
  QRectF cap(24, 40, 208, 40);
  QLinearGradient g(cap.topLeft(), cap.topRight());
  g.setColorAt(0, QColor(10, 36, 106));
  g.setColorAt(1, QColor(88, 140, 210));
  QPainterPath capPath;
  capPath.addRoundedRect(cap, 7, 7);
  p.fillPath(capPath, g);
  // Caption buttons.
  for (int i = 0; i < 2; ++i) {
    QRectF b(178 + i * 26, 48, 22, 22);
    p.fillRect(b, QColor(212, 208, 200));
    p.setPen(QPen(QColor(64, 64, 64), 2));
    p.drawRect(b);
  }
  p.setPen(QPen(Qt::black, 3));
  p.drawLine(QPointF(208, 53), QPointF(220, 65));
  p.drawLine(QPointF(220, 53), QPointF(208, 65));
  p.drawLine(QPointF(183, 64), QPointF(195, 64));
  // Text side: lines of form text.
  QRectF text(36, 94, 112, 112);
  p.fillRect(text, Qt::white);
  p.setPen(QPen(QColor(128, 128, 128), 2));
  p.drawRect(text);
  const QColor bold(20, 20, 20), plain(90, 120, 170);
  struct L {
    int indent;
    int len;
    bool strong;
  } lines[] = {{0, 70, true},   {12, 60, false}, {12, 48, false}, {12, 66, true},
               {24, 50, false}, {12, 30, true},  {0, 30, true}};
  for (int i = 0; i < 7; ++i) {
    const qreal y = 106 + i * 14;
    p.setPen(QPen(lines[i].strong ? bold : plain, 6, Qt::SolidLine, Qt::RoundCap));
    p.drawLine(QPointF(46 + lines[i].indent, y), QPointF(46 + lines[i].indent + lines[i].len * 0.8, y));
  }
  // Live side: a button and a check box.
  QRectF button(160, 100, 60, 28);
  p.fillRect(button, QColor(212, 208, 200));
  p.setPen(QPen(Qt::white, 3));
  p.drawLine(button.topLeft(), button.topRight());
  p.drawLine(button.topLeft(), button.bottomLeft());
  p.setPen(QPen(QColor(64, 64, 64), 3));
  p.drawLine(button.bottomLeft(), button.bottomRight());
  p.drawLine(button.topRight(), button.bottomRight());
  QRectF check(160, 142, 20, 20);
  p.fillRect(check, Qt::white);
  p.setPen(QPen(QColor(64, 64, 64), 2));
  p.drawRect(check);
  p.setPen(QPen(QColor(20, 120, 40), 4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  p.drawPolyline(QPolygonF({QPointF(164, 152), QPointF(169, 158), QPointF(177, 145)}));
  p.setPen(QPen(QColor(90, 90, 90), 5, Qt::SolidLine, Qt::RoundCap));
  p.drawLine(QPointF(188, 152), QPointF(220, 152));
  p.drawLine(QPointF(166, 182), QPointF(220, 182));
  // A lens in the green of the banner: the viewer.
  p.setBrush(QColor(255, 255, 255, 150));
  p.setPen(QPen(QColor(0, 150, 60), 12));
  p.drawEllipse(QPointF(196, 190), 30, 30);
  p.setPen(QPen(QColor(0, 110, 45), 16, Qt::SolidLine, Qt::RoundCap));
  p.drawLine(QPointF(218, 212), QPointF(240, 236));
}
int main(int argc, char** argv) {
  QGuiApplication app(argc, argv);
  if (argc < 2) return 2;
  const char* out = argv[1];
  for (int size : {16, 24, 32, 48, 64, 128, 256}) {
    QImage img(size, size, QImage::Format_ARGB32_Premultiplied);
    img.fill(Qt::transparent);
    QPainter p(&img);
    p.scale(size / 256.0, size / 256.0);
    draw(p);
    p.end();
    QDir().mkpath(QString("%1/%2x%2/apps").arg(out).arg(size));
    img.save(QString("%1/%2x%2/apps/lumora.png").arg(out).arg(size));
  }
}
