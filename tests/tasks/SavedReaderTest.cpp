#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tasks/SavedConfig.h"

namespace zth::tasks {
namespace {

using Result = SavedReader::Result;
using namespace std::string_literals;

/// The result of reading a text: "1=2 4C=A4 end", or "broken" at its end.
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

TEST(SavedReader, AcceptsAnythingWithTwoNumbersAfterAnX) {
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
      {"a digit that ends its line", "{\n0x1\t0x2\n0x3\t0x4\n0x5\t0x6\n}", "1=2 3=4 5=6 end"},
      {"an x that ends its line", "{\n0x1\t0x\n0x3\t0x4\n}", "1=0 3=4 end"},
      {"an address that ends its line", "{\n0x1\n0x2\n0x\n0x4\n}", "1=2 0=4 end"},
      {"carriage returns alone", "a\r{\r0x1\t0x2\r0x3\t0x44\r\r0x5\t0x6\t//\r}\r", "1=2 3=44 5=6 end"},
      {"a carriage return among line feeds ends nothing", "{\n0x1\t0x2\t// a\r0x3\t0x4\n}", "1=2 end"},
      {"zero bytes", "{\0\n\0000x1\t0x2\0\n0x3\0\t0x\0\t\n}"s, "1=2 3=0 end"},
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

TEST(SavedReader, RecognisesATextOfWideCharacters) {
  const auto widened = [](const std::string& text, int bytes, bool bigEnd) {
    std::string wide;
    for (const char c : text) {
      std::string character(static_cast<std::size_t>(bytes), '\0');
      (bigEnd ? character.back() : character.front()) = c;
      wide += character;
    }
    return wide;
  };
  const std::string text = SavedHead("1/1/2026", "8:00", "") + SavedLine(0x28, 7, "Name") + std::string(kSavedEnd);
  // A comment in another script contains no zeros.
  std::string foreign;
  for (int i = 0; i < 60; ++i) foreign += "\x37\x04";
  for (const bool bigEnd : {false, true}) {
    const std::string two = widened(text, 2, bigEnd);
    EXPECT_STREQ(WideEncoding(two), "UTF-16");
    EXPECT_STREQ(WideEncoding(two + foreign), "UTF-16");
    EXPECT_STREQ(WideEncoding((bigEnd ? "\xFE\xFF" : "\xFF\xFE") + two), "UTF-16");
    EXPECT_STREQ(WideEncoding(widened(text, 4, bigEnd)), "UTF-32");
    const std::string mark = bigEnd ? "\0\0\xFE\xFF"s : "\xFF\xFE\0\0"s;
    EXPECT_STREQ(WideEncoding(mark + foreign), "UTF-32");
  }
  for (const std::string& narrow : {std::string(), text, "\xEF\xBB\xBF" + text, text + std::string(9000, '\0'),
                                    std::string(100, '\0'), text + foreign}) {
    EXPECT_EQ(WideEncoding(narrow), nullptr) << narrow;
  }
}

TEST(SavedReader, PutsAnyCommentIntoOneLine) {
  const std::pair<const char*, const char*> rows[]{
      {"a\nb", "a b"},           {"a\r\nb", "a b"},
      {"a\rb\n\nc", "a b  c"},   {"\n brace {\n", "brace {"},
      {"a\xE2\x80\xA8z", "a z"}, {"a\xE2\x80\xA9z\xC2\x85y\vx\fw", "a z y x w"},
      {"a\tb", "a\tb"},          {"\xE2\x80\xA6\xC2\xB0", "\xE2\x80\xA6\xC2\xB0"}};
  for (const auto& [comment, line] : rows) {
    const std::string head = SavedHead("d", "t", comment);
    EXPECT_NE(head.find("\r\nComment : " + std::string(line) + "\r\n\r\nAddress\t"), std::string::npos) << head;
    EXPECT_EQ(ReadAll(head + SavedLine(0x4C, 0xA4, "x") + "}"), "4C=A4 end") << head;
  }
}

}  // namespace
}  // namespace zth::tasks
