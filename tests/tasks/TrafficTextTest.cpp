#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "tasks/TrafficReader.h"

namespace zth::tasks {
namespace {

using ::testing::ElementsAre;
using ::testing::StartsWith;

constexpr char kHead[] = "# ZTH4718 bus traffic 1\n";

/// A file in pieces of a few bytes, as slow disks give them.
TrafficReader::Source InPieces(const std::string& text, std::size_t bytes) {
  return [in = std::make_shared<std::istringstream>(text), bytes] {
    std::string piece(bytes, '\0');
    in->read(piece.data(), static_cast<std::streamsize>(bytes));
    piece.resize(static_cast<std::size_t>(in->gcount()));
    return piece;
  };
}

/// The lines as they are written again after reading, with the fault at the end if there is one.
std::vector<std::string> Again(const std::string& text, std::size_t bytes = 4096) {
  TrafficReader reader(InPieces(text, bytes));
  std::vector<std::string> lines;
  while (reader.Next()) lines.push_back(TrafficLineText(reader.Record(), reader.Text(), 0));
  if (!reader.Fault().empty()) lines.push_back(reader.Fault());
  return lines;
}

/// Every form of a call over each link, done and failed, in the order of the grammar.
const std::vector<std::string> kLines{
    "0.000000 usb firmware -> 1",
    "0.000001 usb firmware -> fail",
    "0.000002 usb firmware -> fail -7",
    "0.812345 usb connect -> 30 33",
    "0.812346 usb connect -> fail -5 ; start",
    "0.912345 usb r 58 3e -> 41 ; start",
    "0.912346 usb r 58 3e -> fail",
    "1.023456 usb rb 58 20 4 -> 12 80 80 80 ; monitor",
    "1.023457 usb rb 58 20 4 -> fail ; monitor",
    "1.123456 usb w 58 21 31 -> ok ; frmAutoGraph cmbControl(0)",
    "1.123457 usb w 58 21 31 -> fail 2",
    "1.223455 usb port r 4a -> 3c",
    "1.223456 usb port w 4a 03 -> ok ; pins",
    "1.223457 usb port wb 4a 03 -> ok ; frmDynamicTmin demo",
    "1.223458 usb heater w 1 75 -> ok ; frmHeaters sldHeater1",
    "1.223459 usb heater r -> c8 00 00",
    "1.223460 usb heater r -> fail",
    "# note the fan stops here",
    "1.323455 smbus detect -> ok",
    "1.323456 smbus r 2c 3e -> ff",
    "1.323457 smbus r 2c 3e -> fail",
    "1.323458 smbus r 2c 3e -> fail 00",
    "1.323459 smbus w 2c 21 31 -> ok",
    "86400.000000 smbus w 2c 21 31 -> fail",
};

TEST(TrafficText, EachFormReadsAsItWasWrittenInWhateverPiecesTheFileComes) {
  std::string text = kHead;
  for (const std::string& line : kLines) text += line + "\n";
  for (const std::size_t bytes : {1U, 7U, 4096U}) EXPECT_EQ(Again(text, bytes), kLines);
}

TEST(TrafficText, ACallKeepsItsParts) {
  TrafficRecord record;
  std::string_view text;
  EXPECT_EQ(ParseTrafficCall("1.5 usb rb 58 20 4 -> 12 80 7f 81 ; monitor", record, text), "");
  EXPECT_EQ(record.time, 1.5);
  EXPECT_EQ(record.mode, 1);
  EXPECT_EQ(record.form, link::Form::ReadBlock);
  EXPECT_EQ(record.address, 0x58);
  EXPECT_EQ(record.reg, 0x20);
  EXPECT_THAT(record.Bytes(), ElementsAre(0x12, 0x80, 0x7F, 0x81));
  EXPECT_TRUE(record.succeeded);
  EXPECT_EQ(text, "monitor");
  EXPECT_EQ(ParseTrafficCall("2 smbus r 2c 3e -> fail", record, text), "");
  EXPECT_FALSE(record.succeeded);
  EXPECT_THAT(record.Bytes(), ElementsAre(0xFF));
  EXPECT_EQ(text, "");
}

TEST(TrafficText, TheHeadSaysWhatWasRecorded) {
  const TrafficHead head{"2026-11-23T10:12:13.123Z", "Board \"7\"", "1.1.0", false};
  const std::string text = TrafficHeadText(head);
  EXPECT_THAT(text, StartsWith("# ZTH4718 bus traffic 1\n"
                               "# started 2026-11-23T10:12:13.123Z board \"Board '7'\" program 1.1.0\n"));
  TrafficReader reader(InPieces(text, 4096));
  EXPECT_FALSE(reader.Next());
  EXPECT_EQ(reader.Fault(), "");
  EXPECT_EQ(reader.Head().started, head.started);
  EXPECT_EQ(reader.Head().board, "Board '7'");
  EXPECT_EQ(reader.Head().program, head.program);
  EXPECT_FALSE(reader.Head().smbusFailuresKnown);
}

TEST(TrafficText, WhatAUserNotesNeverBreaksALine) {
  TrafficRecord note;
  note.isNote = true;
  EXPECT_EQ(TrafficLineText(note, "two\nlines \xC3\xA9\xFF\x01", 0), "# note two lines \xC3\xA9");
  const std::string line = TrafficLineText(note, std::string(5000, 'x'), 0);
  EXPECT_LE(line.size(), kMostTrafficLine);
  EXPECT_EQ(Again(kHead + line), std::vector{line});
}

TEST(TrafficText, JoinedPartsWindowsLineEndsAndOtherCommentsAreRead) {
  EXPECT_THAT(
      Again(std::string(kHead) + "# part 1\r\n\r\n0.5 usb r 58 3E -> 4A;start\r\n" + kHead + "1 usb connect -> 30 33"),
      ElementsAre("0.500000 usb r 58 3e -> 4a ; start", "1.000000 usb connect -> 30 33"));
}

TEST(TrafficText, AFaultIsToldWithItsLine) {
  const std::pair<std::string, const char*> kFaults[] = {
      {"", "line 1: this is no recording of bus traffic"},
      {"<html>\n", "line 1: this is no recording of bus traffic"},
      {"# ZTH4718 bus traffic 2\n", "line 1: version \"2\" of the format is unknown; this program reads version 1"},
      {std::string(kHead) + "x usb r 58 3e -> 41\n", "line 2: it does not begin with a time in seconds"},
      {std::string(kHead) + "inf usb r 58 3e -> 41\n", "line 2: it does not begin with a time in seconds"},
      {std::string(kHead) + "0 smbus rb 58 3e 1 -> 41\n", "line 2: the form of the call is unknown"},
      {std::string(kHead) + "0 usb r 158 3e -> 41\n", "line 2: the address is no byte of two digits"},
      {std::string(kHead) + "0 usb r 58 -> 41\n", "line 2: the register is no byte of two digits"},
      {std::string(kHead) + "0 usb w 58 3e -1 -> ok\n", "line 2: the value is no byte of two digits"},
      {std::string(kHead) + "0 usb rb 58 3e 66 -> 41\n", "line 2: the count is not one from 1 to 65"},
      {std::string(kHead) + "0 usb heater w 1 101 -> ok\n", "line 2: the percentage is not one from 0 to 100"},
      {std::string(kHead) + "0 usb r 58 3e 41\n", "line 2: there is no \"->\" after the call"},
      {std::string(kHead) + "\n0 usb r 58 3e ->", "line 3: there is no result"},
      {std::string(kHead) + "0 usb rb 58 3e 3 -> 41 42\n", "line 2: there are too few bytes of two digits"},
      {std::string(kHead) + "0 usb r 58 3e -> 41 42\n", "line 2: there is more than the call"},
      {std::string(kHead) + "0 usb w 58 3e 41 -> 41\n", "line 2: the result is neither \"ok\" nor \"fail\""},
      {std::string(kHead) + "0 usb r 58 3e -> fail 0\n", "line 2: the result of the failure is that of a success"},
      {std::string(kHead) + "0 usb firmware -> 0\n", "line 2: the result is neither a number above 0 nor \"fail\""},
      {std::string(kHead) + std::string(3000, '#'), "line 2: it is longer than 2048 bytes"},
      {std::string(kHead) + "# note \xC3(\n", "line 2: it holds bytes that are no text"},
      {std::string(kHead) + std::string("# \0\n", 4), "line 2: it holds bytes that are no text"},
  };
  for (const auto& [text, fault] : kFaults) EXPECT_THAT(Again(text), ElementsAre(fault)) << text;
}

TEST(TrafficText, AnEndlessFileIsReadToTheLimitOnly) {
  std::int64_t given = 0;
  TrafficReader reader(
      [&given] { return given == 0 ? given = 1, kHead : (given += 1000, std::string(999, ' ') + "\n"); }, 1024 * 1024);
  EXPECT_FALSE(reader.Next());
  EXPECT_EQ(reader.Fault(), "line 1050: the recording is longer than 1 MB");
  EXPECT_LT(given, 1024 * 1024 + 2000);
  // Nor is a line without an end collected.
  given = 0;
  TrafficReader endless([&given] { return given += 1000, std::string(1000, ' '); });
  EXPECT_FALSE(endless.Next());
  EXPECT_EQ(endless.Fault(), "line 1: it is longer than 2048 bytes");
  EXPECT_LT(given, 5000);
}

}  // namespace
}  // namespace zth::tasks
