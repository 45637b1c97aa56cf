#include <cmath>
#include <limits>
#include <utility>

#include <gtest/gtest.h>

#include "base/AnsiText.h"
#include "base/NumberText.h"
#include "base/Rounding.h"
#include "base/Twips.h"

namespace zth::base {
namespace {

TEST(Rounding, TiesGoToTheEvenNeighbour) {
  using Row = std::pair<double, double>;
  for (const auto& [value, whole] :
       {Row{0.5, 0}, Row{1.5, 2}, Row{2.5, 2}, Row{-0.5, 0}, Row{-1.5, -2}, Row{-2.5, -2}, Row{50 * 2.55, 127},
        Row{10 * 2.55, 26}, Row{30 * 2.55, 76}, Row{0.49999999999999994, 0},
        Row{4503599627370497.0, 4503599627370497.0}, Row{-7.3, -7}, Row{-7.7, -8}}) {
    EXPECT_EQ(RoundHalfEven(value), whole) << value;
  }
  EXPECT_TRUE(std::isnan(RoundHalfEven(std::nan(""))));
  EXPECT_EQ(RoundHalfEven(0.125, 2), 0.12);
  EXPECT_EQ(RoundHalfEven(0.375, 2), 0.38);
  EXPECT_EQ(RoundHalfEven(-15.9375, 2), -15.94);
}

TEST(Rounding, WholeNumbersAreLimitedToTheirRange) {
  EXPECT_EQ(RoundToInt(1e300), std::numeric_limits<std::int32_t>::max());
  EXPECT_EQ(RoundToInt(-1e300), std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(RoundToInt(std::nan("")), 0);
  EXPECT_EQ(RoundToByte(-1), 0);
  EXPECT_EQ(RoundToByte(254.5), 254);
  EXPECT_EQ(RoundToByte(255.5), 255);
}

TEST(NumberText, ADecimalReadingTakesTheLeadingNumber) {
  using Row = std::pair<const char*, double>;
  for (const auto& [text, value] :
       {Row{"", 0},     Row{"abc", 0}, Row{"12", 12},    Row{"  -7.5x9", -7.5}, Row{".5", .5},
        Row{"5.", 5},   Row{"+3", 3},  Row{"1e3", 1000}, Row{"2D2", 200},       Row{"1e", 1},
        Row{"1e+", 1},  Row{"-", 0},   Row{".", 0},      Row{"1.2.3", 1.2},     Row{"12,5", 12},
        Row{"0x10", 0}, Row{"--1", 0}, Row{"inf", 0},    Row{"nan", 0},         Row{"1e-999", 0}}) {
    EXPECT_EQ(LeadingDecimal(text), value) << text;
  }
  EXPECT_EQ(LeadingDecimal("-1e999"), -std::numeric_limits<double>::max());
}

TEST(NumberText, OnlyACompleteNumberCountsAsANumber) {
  for (const char* text : {"1000", " -6.5 ", "1E+07", ".5"}) EXPECT_TRUE(IsDecimal(text)) << text;
  for (const char* text : {"", " ", "12a", "a12", "1 2", "-", "True"}) EXPECT_FALSE(IsDecimal(text)) << text;
}

TEST(NumberText, AHexadecimalReadingStopsAtTheFirstOtherCharacter) {
  using Row = std::pair<const char*, std::int32_t>;
  for (const auto& [text, value] : {Row{"58h on USB", 0x58}, Row{"2Ch on SMBus", 0x2C}, Row{"1aH", 0x1A}, Row{"", 0},
                                    Row{"-1", 0}, Row{"FFFFFFFFFFFFFFFFFFFF", 0x7FFFFFFF}}) {
    EXPECT_EQ(LeadingHex(text), value) << text;
  }
  for (const auto& [text, value] : {Row{"0", 0}, Row{"4C", 0x4C}, Row{"FFFFFFFF", -1}}) EXPECT_EQ(HexText(value), text);
}

TEST(NumberText, GeneralFormatHasNoZeroBeforeThePoint) {
  using Row = std::pair<float, const char*>;
  for (const auto& [value, text] :
       {Row{0, "0"}, Row{-0.0F, "0"}, Row{0.1F, ".1"}, Row{0.25F, ".25"}, Row{-0.25F, "-.25"}, Row{25.25F, "25.25"},
        Row{12, "12"}, Row{-64, "-64"}, Row{15.94F, "15.94"}, Row{1234567, "1234567"}, Row{9999999, "9999999"},
        Row{1e7F, "1E+07"}, Row{1.5e-7F, "1.5E-07"}, Row{0.0001F, ".0001"}, Row{3.4e38F, "3.4E+38"},
        Row{1.0F / 3, ".3333333"}}) {
    EXPECT_EQ(GeneralText(value), text);
  }
  EXPECT_EQ(GeneralText(0.1), ".1");
  EXPECT_EQ(GeneralText(86399.999), "86399.999");
  EXPECT_EQ(GeneralText(1.0 / 3), ".333333333333333");
}

TEST(AnsiText, CharactersOutsideTheCodePageHaveNoCode) {
  EXPECT_EQ(AnsiCode(U'A'), 0x41);
  EXPECT_EQ(AnsiCode(U'\u00FC'), 0xFC);
  EXPECT_EQ(AnsiCode(U'\u20AC'), 0x80);
  EXPECT_EQ(AnsiCode(U'\u0081'), std::nullopt);
  EXPECT_EQ(AnsiCode(U'\u4E2D'), std::nullopt);
}

TEST(Twips, FifteenAreOnePixel) {
  EXPECT_EQ(PixelsFromTwips(1000), 67);
  EXPECT_EQ(PixelsFromTwips(-120), -8);
  for (int pixels = -2000; pixels < 4000; ++pixels) EXPECT_EQ(PixelsFromTwips(TwipsFromPixels(pixels)), pixels);
}

}  // namespace
}  // namespace zth::base
