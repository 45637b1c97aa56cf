#include <algorithm>
#include <cstdlib>

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

#include "tools/windows/SvgSheet.h"
#include "widgets/IconSheet.h"

namespace zth::widgets {
namespace {

/// The largest difference of any channel of any pixel.
int Difference(const QImage& one, const QImage& other) {
  int most = 0;
  for (int y = 0; y < one.height(); ++y) {
    for (int x = 0; x < one.width(); ++x) {
      const auto a = reinterpret_cast<const QRgb*>(one.constScanLine(y))[x];
      const auto b = reinterpret_cast<const QRgb*>(other.constScanLine(y))[x];
      most = std::max({most, std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                       std::abs(qBlue(a) - qBlue(b)), std::abs(qAlpha(a) - qAlpha(b))});
    }
  }
  return most;
}

void ExpectSameIcon(const QByteArray& svg, int side) {
  const QImage sheet = tools::SvgSheet(svg, side);
  for (const char* colour : {"#000000", "#ffffff", "#31363b", "#eff0f1", "#c02040"}) {
    EXPECT_LE(Difference(Coloured(sheet, colour), tools::Drawn(svg, colour, side)), 2) << side << colour;
  }
  QImage nothing(side, side, QImage::Format_ARGB32_Premultiplied);
  nothing.fill(Qt::transparent);
  EXPECT_GT(Difference(Coloured(sheet, "#000000"), nothing), 9);
}

TEST(IconSheet, GivesTheIconThatTheDrawingGivesInAnyColour) {
  int icons = 0;
  for (const char* folder : {ZTH_SOURCES "/shell/icons", ZTH_SOURCES "/widgets/icons"}) {
    const QDir drawings(folder);
    for (const QString& name : drawings.entryList({"*.svg"})) {
      SCOPED_TRACE(name.toStdString());
      QFile file(drawings.filePath(name));
      ASSERT_TRUE(file.open(QIODevice::ReadOnly));
      const QByteArray svg = file.readAll();
      ++icons;
      for (const int side : {16, 24, 64}) ExpectSameIcon(svg, side);
    }
  }
  EXPECT_EQ(icons, 18);
}

TEST(IconSheet, IsNeverEnlargedIfThereIsALargerOne) {
  EXPECT_EQ(SheetSide(1), 16);
  EXPECT_EQ(SheetSide(16), 16);
  EXPECT_EQ(SheetSide(17), 18);
  EXPECT_EQ(SheetSide(100), 128);
  EXPECT_EQ(SheetSide(1000), 128);
}

}  // namespace
}  // namespace zth::widgets
