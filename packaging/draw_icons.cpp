// Draws the program's icon in the sizes that desktops ask for.
//
//     draw_icons ICON.svg FOLDER
#include <QImage>
#include <QPainter>
#include <QString>
#include <QSvgRenderer>
#include <cstdio>

namespace {

constexpr int kSizes[] = {16, 22, 24, 32, 48, 64, 128, 256, 512};

bool Draw(QSvgRenderer& icon, int size, const QString& path) {
  QImage picture(size, size, QImage::Format_ARGB32);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  icon.render(&painter);
  painter.end();
  return picture.save(path);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  QSvgRenderer icon(QString::fromLocal8Bit(argv[1]));
  for (const int size : kSizes) {
    const QString path = QStringLiteral("%1/%2.png").arg(QString::fromLocal8Bit(argv[2])).arg(size);
    if (icon.isValid() && Draw(icon, size, path)) continue;
    std::fprintf(stderr, "draw_icons: %s could not be drawn\n", qUtf8Printable(path));
    return 1;
  }
  return 0;
}
