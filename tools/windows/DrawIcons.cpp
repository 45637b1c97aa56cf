// draw-icons <folder> <program's icon> <collection.qrc>...: draws the icons of a build without Qt's SVG module. For
// each collection of SVG files, "<folder>/<room>/<collection>.qrc" names sheets of each icon in each size; the
// program's icon is drawn as it is, into "<folder>/program-<side>.png".
#include <array>
#include <cstdio>
#include <stdexcept>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QTextStream>
#include <QXmlStreamReader>

#include "tools/windows/SvgSheet.h"
#include "widgets/IconSheet.h"

namespace {

constexpr std::array kProgramSides{16, 20, 24, 32, 40, 48, 64, 256};

QByteArray ContentOf(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) throw std::runtime_error("cannot be read: " + path.toStdString());
  return file.readAll();
}

void Save(const QImage& image, const QString& path) {
  if (!QDir().mkpath(QFileInfo(path).path()) || !image.save(path, "PNG")) {
    throw std::runtime_error("cannot be written: " + path.toStdString());
  }
}

/// Draws a collection's icons and writes the collection that names the drawings.
void DrawCollection(const QString& qrc, const QString& folder) {
  const QDir from = QFileInfo(qrc).dir();
  const QDir to(folder + '/' + from.dirName());
  QString drawn;
  QXmlStreamReader reader(ContentOf(qrc));
  while (!reader.atEnd()) {
    if (reader.readNext() != QXmlStreamReader::StartElement) continue;
    if (reader.name() == QLatin1String("qresource")) {
      drawn += "  <qresource prefix=\"" + reader.attributes().value("prefix").toString() + "\">\n";
    }
    if (reader.name() != QLatin1String("file")) continue;
    const QString file = reader.readElementText();
    const QByteArray svg = ContentOf(from.filePath(file));
    for (const int side : zth::widgets::kSheetSides) {
      const QString sheet = QString("%1-%2.png").arg(file.chopped(4)).arg(side);
      Save(zth::tools::SvgSheet(svg, side), to.filePath(sheet));
      drawn += "    <file>" + sheet + "</file>\n";
    }
  }
  if (reader.hasError() || drawn.isEmpty()) throw std::runtime_error("is no collection: " + qrc.toStdString());
  QFile out(to.filePath(QFileInfo(qrc).fileName()));
  if (!out.open(QIODevice::WriteOnly)) throw std::runtime_error("cannot be written: " + out.fileName().toStdString());
  QTextStream(&out) << "<RCC>\n" << drawn << "  </qresource>\n</RCC>\n";
}

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QGuiApplication application(argc, argv);
  const QStringList words = QCoreApplication::arguments();
  if (words.size() < 4) {
    std::fputs("usage: draw-icons <folder> <program's icon> <collection.qrc>...\n", stderr);
    return 2;
  }
  try {
    const QByteArray program = ContentOf(words[2]);
    for (const int side : kProgramSides) {
      Save(zth::tools::Drawn(program, Qt::black, side), QString("%1/program-%2.png").arg(words[1]).arg(side));
    }
    for (const QString& qrc : words.mid(3)) DrawCollection(qrc, words[1]);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "draw-icons: %s\n", error.what());
    return 1;
  }
  return 0;
}
