#include <random>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "windows/data/SavedConfig.h"

namespace zth::windows {
namespace {

using Result = SavedReader::Result;

/// What a text is read as: "1=2 4C=A4 end", or "broken" at its end.
std::string ReadAll(std::string_view text) {
  std::ostringstream read;
  read << std::hex << std::uppercase;
  SavedReader reader(text);
  if (!reader.FindStart()) return "broken";
  int address = 0;
  int value = 0;
  auto result = reader.Next(address, value);
  for (; result == Result::Line; result = reader.Next(address, value)) read << address << '=' << value << ' ';
  read << (result == Result::End ? "end" : "broken");
  return read.str();
}

TEST(SavedReader, TakesWhateverHasTwoNumbersBehindAnX) {
  const std::vector<std::tuple<const char*, std::string, const char*>> rows{
      {"nothing", "", "broken"},
      {"no brace", "0x1\t0x2\r\n", "broken"},
      {"no head", "{\r\n0x0\t0x5\t // Name\r\n0x4C\t0xA4\t // x } {\r\n}\r\n", "0=5 4C=A4 end"},
      {"an empty list", "head\n{\n}", "end"},
      {"line feeds alone, no comments", "{\n0x21\t0xAB\n0x3\t0x07\n}\n", "21=AB 3=7 end"},
      {"a brace in the comment", "Comment : a{b\r\n{\r\n0x1\t0x2\t//\r\n}", "1=2 end"},
      {"an x before the brace", "Comment : x0x }\r\n{\r\n0x1\t0x2\t//\r\n}", "1=2 end"},
      {"lower case digits", "{\n0xaf\t0xfe\n}", "AF=FE end"},
      {"a capital X is none", "{\n0X1 0x2\t0x3\t\n}", "2=3 end"},
      {"an x that stands first is passed over", "{\nx12 x34 x56\t\n}", "34=56 end"},
      {"no digits", "{\n0xzz\t0x??\n}", "0=0 end"},
      {"one digit, then something", "{\n0x5g\t0x-1\t\n}", "5=0 end"},
      {"a blank is no digit", "{\n0x 5\t0x 6\t\n}", "0=0 end"},
      {"three digits", "{\n0x123\t0x456\n}", "12=45 end"},
      {"numbers on lines of their own", "{\naddress 0x12\nvalue 0x34\n}", "12=34 end"},
      {"an empty line is part of the next", "{\n\n0x1\t0x2\t\n}", "1=2 end"},
      {"an empty line before the end", "{\n0x1\t0x2\t\n\n}\n", "1=2 broken"},
      {"a brace that does not stand first", "{\n0x1\t0x2\t\n }\n", "1=2 broken"},
      {"no end", "{\n0x1\t0x2\t\n0x3\t0x4\t\n", "1=2 3=4 broken"},
      {"cut within the value", "{\n0x1\t0x2\t\n0x3\t0x4", "1=2 broken"},
      {"cut behind the value", "{\n0x1\t0x22", "broken"},
      {"a digit that ends its line takes the next one", "{\n0x1\t0x2\n0x3\t0x4\t\n0x5\t0x6\t\n}", "1=2 5=6 end"},
      {"no text", std::string("{\n0x1\t0x2\t\n0x3\0\t0x4\t\n}", 22), "1=2 broken"},
      {"two bytes a character", std::string("{\0\n\0}\0", 6), "broken"},
  };
  for (const auto& [what, text, read] : rows) EXPECT_EQ(ReadAll(text), read) << what;
}

TEST(SavedReader, StopsAtAHundredThousandLines) {
  std::string text = "{\n";
  std::string read;
  for (int i = 0; i < SavedReader::kMostLines - 1; ++i) text += "0x1\t0xFF\n", read += "1=FF ";
  EXPECT_TRUE(ReadAll(text + "}") == read + "broken");
  EXPECT_TRUE(ReadAll("{\n" + text.substr(11) + "}") == read.substr(5) + "end");
}

TEST(SavedReader, GivesBackWhatWasSavedWhateverTheComment) {
  std::mt19937 random(4718);
  const auto noise = [&random](const std::string& characters) {
    std::string text;
    for (auto n = random() % 20; n > 0; --n) text += characters[random() % characters.size()];
    return text;
  };
  for (int i = 0; i < 2000; ++i) {
    std::string text = SavedHead("11/18/2026", "2:40:12 AM", noise("x0{ }/\t\xC3\xA9"));
    std::ostringstream lines;
    lines << std::hex << std::uppercase;
    for (auto n = 1 + random() % 200; n > 0; --n) {
      const auto address = static_cast<std::int32_t>(random() % 256);
      const auto value = static_cast<std::int32_t>(random() % 256);
      lines << address << '=' << value << ' ';
      text += SavedLine(address, value, noise("x}{ 0A"));
    }
    text += kSavedEnd;
    ASSERT_EQ(ReadAll(text), lines.str() + "end") << text;
    // Cut anywhere, it gives a beginning of them and nothing else.
    const std::string cut = ReadAll(std::string_view(text).substr(0, random() % text.size()));
    ASSERT_EQ(lines.str().rfind(cut.substr(0, cut.rfind(' ') + 1), 0), 0U);
  }
}

}  // namespace
}  // namespace zth::windows
