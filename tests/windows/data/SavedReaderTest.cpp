#include <algorithm>
#include <ostream>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "windows/data/SavedConfig.h"

namespace zth::windows {
namespace {

using Result = SavedReader::Result;

struct Read {
  std::vector<std::pair<int, int>> lines;
  Result end = Result::Broken;
  bool operator==(const Read&) const = default;
};

void PrintTo(const Read& read, std::ostream* out) {
  for (const auto& [address, value] : read.lines) *out << std::hex << address << '=' << value << ' ';
  *out << (read.end == Result::End ? "end" : "broken");
}

Read ReadAll(std::string_view text) {
  Read read;
  SavedReader reader(text);
  if (!reader.FindStart()) return read;
  int address = 0;
  int value = 0;
  while ((read.end = reader.Next(address, value)) == Result::Line) read.lines.emplace_back(address, value);
  return read;
}

TEST(SavedReader, TakesWhateverHasTwoNumbersBehindAnX) {
  const auto end = [](std::vector<std::pair<int, int>> lines) { return Read{std::move(lines), Result::End}; };
  const auto broken = [](std::vector<std::pair<int, int>> lines) { return Read{std::move(lines), Result::Broken}; };
  struct Row {
    const char* what;
    std::string text;
    Read read;
  };
  const std::vector<Row> rows{
      {"nothing", "", broken({})},
      {"no brace", "0x1\t0x2\r\n", broken({})},
      {"no head", "{\r\n0x0\t0x5\t // Name\r\n0x4C\t0xA4\t // x } {\r\n}\r\n", end({{0, 5}, {0x4C, 0xA4}})},
      {"an empty list", "head\n{\n}", end({})},
      {"line feeds alone, no comments", "{\n0x21\t0xAB\n0x3\t0x07\n}\n", end({{0x21, 0xAB}, {3, 7}})},
      {"a brace in the comment", "Comment : a{b\r\n{\r\n0x1\t0x2\t//\r\n}", end({{1, 2}})},
      {"an x before the brace", "Comment : x0x }\r\n{\r\n0x1\t0x2\t//\r\n}", end({{1, 2}})},
      {"lower case digits", "{\n0xaa\t0xfe\n}", end({{0xAA, 0xFE}})},
      {"a capital X is none", "{\n0X1 0x2\t0x3\t\n}", end({{2, 3}})},
      {"an x that stands first is passed over", "{\nx12 x34 x56\t\n}", end({{0x34, 0x56}})},
      {"no digits", "{\n0xzz\t0x??\n}", end({{0, 0}})},
      {"one digit, then something", "{\n0x5g\t0x-1\t\n}", end({{5, 0}})},
      {"a blank is no digit", "{\n0x 5\t0x 6\t\n}", end({{0, 0}})},
      {"three digits", "{\n0x123\t0x456\n}", end({{0x12, 0x45}})},
      {"numbers on lines of their own", "{\naddress 0x12\nvalue 0x34\n}", end({{0x12, 0x34}})},
      {"an empty line is part of the next", "{\n\n0x1\t0x2\t\n}", end({{1, 2}})},
      {"an empty line before the end", "{\n0x1\t0x2\t\n\n}\n", broken({{1, 2}})},
      {"a brace that does not stand first", "{\n0x1\t0x2\t\n }\n", broken({{1, 2}})},
      {"no end", "{\n0x1\t0x2\t\n0x3\t0x4\t\n", broken({{1, 2}, {3, 4}})},
      {"cut within the value", "{\n0x1\t0x2\t\n0x3\t0x4", broken({{1, 2}})},
      {"cut behind the value", "{\n0x1\t0x22", broken({})},
      {"a digit that ends its line takes the next one with it", "{\n0x1\t0x2\n0x3\t0x4\t\n0x5\t0x6\t\n}",
       end({{1, 2}, {5, 6}})},
      {"no text", std::string("{\n0x1\t0x2\t\n0x3\0\t0x4\t\n}", 22), broken({{1, 2}})},
      {"two bytes a character", std::string("{\0\n\0}\0", 6), broken({})},
  };
  for (const Row& row : rows) EXPECT_EQ(ReadAll(row.text), row.read) << row.what;
}

TEST(SavedReader, StopsAtAHundredThousandLines) {
  std::string text = "{\n";
  for (int i = 0; i < SavedReader::kMostLines - 1; ++i) text += "0x1\t0xFF\n";
  EXPECT_EQ(ReadAll(text + "}").lines.size(), SavedReader::kMostLines - 1);
  EXPECT_EQ(ReadAll(text + "}").end, Result::Broken);
  EXPECT_EQ(ReadAll(text.substr(9) + "}").end, Result::Broken) << "the opening line went with it";
  EXPECT_EQ(ReadAll("{\n" + text.substr(11) + "}").end, Result::End);
}

TEST(SavedReader, GivesBackWhatWasSavedWhateverTheComment) {
  std::mt19937 random(4718);
  for (int i = 0; i < 2000; ++i) {
    std::string comment;
    for (auto n = random() % 20; n > 0; --n) comment += "x0{ }/\t\xC3\xA9"[random() % 9];
    std::string text = SavedHead("11/18/2026", "2:40:12 AM", comment);
    std::vector<std::pair<int, int>> lines;
    for (auto n = 1 + random() % 200; n > 0; --n) {
      lines.emplace_back(random() % 256, random() % 256);
      std::string caption;
      for (auto k = random() % 10; k > 0; --k) caption += "x}{ 0A"[random() % 6];
      text += SavedLine(lines.back().first, lines.back().second, caption);
    }
    text += kSavedEnd;
    ASSERT_EQ(ReadAll(text), (Read{lines, Result::End})) << text;
    // Cut anywhere, it gives a beginning of them and nothing else.
    const Read cut = ReadAll(std::string_view(text).substr(0, random() % text.size()));
    ASSERT_LE(cut.lines.size(), lines.size());
    ASSERT_TRUE(std::equal(cut.lines.begin(), cut.lines.end(), lines.begin()));
  }
}

}  // namespace
}  // namespace zth::windows
