// The bus traffic in words: columns, filters and what is copied, compared with texts written by hand.
#include <gmock/gmock.h>

#include "link/Declarations.h"
#include "tasks/TrafficCopies.h"
#include "tasks/TrafficFilter.h"
#include "tasks/TrafficText.h"
#include "tasks/TrafficWords.h"

namespace zth::testing {
namespace {

using tasks::Traffic;
using tasks::TrafficFilter;
using tasks::TrafficRecord;
using ::testing::ElementsAre;

/// The lines of a recording as traffic.
std::unique_ptr<Traffic> Play(const std::vector<std::string>& lines) {
  auto traffic = std::make_unique<Traffic>();
  traffic->CountFrom(0);
  for (const std::string& line : lines) {
    TrafficRecord record;
    std::string_view text;
    if (line.starts_with("# note ")) {
      record.isNote = true;
      text = std::string_view(line).substr(7);
    } else {
      EXPECT_EQ(tasks::ParseTrafficCall(line, record, text), "") << line;
    }
    traffic->Add(record, text);
  }
  return traffic;
}

std::string Columns(const std::string& line) {
  const auto played = Play({line});
  const Traffic& traffic = *played;
  const TrafficRecord& record = traffic.At(0);
  std::string columns;
  for (const std::string& word :
       {tasks::BusText(record), tasks::AddressText(record), tasks::CallText(record), tasks::RegisterText(record),
        tasks::NameText(record), tasks::BytesText(record, 4), tasks::FieldsText(record)}) {
    columns += (columns.empty() ? "" : "|") + word;
  }
  return columns;
}

TEST(TrafficWords, TellEachFormOfACall) {
  struct Row {
    const char *line, *columns;
  };
  for (const Row& row : {
           Row{"0.000000 usb firmware -> 1", "USB||firmware||||"},
           Row{"0.100000 usb connect -> 30 33", "USB||connect|||30 33|"},
           Row{"0.900000 usb w 58 21 50 -> ok ; frmX",
               "USB|58h|W|21h|PWM1 Config|50|Bhvr = 2, Inv = 1, Slow = 0, Spin = 0"},
           Row{"0.900000 smbus r 2c 21 -> 31", "SMBus|2Ch|R|21h|PWM1 Config|31|Bhvr = 1, Inv = 1, Slow = 0, Spin = 1"},
           Row{"0.900000 usb r 58 21 -> fail", "USB|58h|R, failed|21h|PWM1 Config||"},
           Row{"0.900000 usb w 58 03 29 -> fail",
               "USB|58h|W, failed|03h|Configuration 3|29|"
               "Cl_r = 1, SF = 0, S4 = 1, S3 = 0, S2 = 0, S1 = 1"},
           Row{"0.900000 usb r 58 45 -> 40", "USB|58h|R|45h|Remote 1 Low Limit / Pin 15 Low Limit|40|"},
           Row{"0.900000 usb r 58 ff -> 00", "USB|58h|R|FFh||00|"},
           Row{"0.900000 usb rb 58 54 6 -> 43 21 01 02 03 04",
               "USB|58h|R block|54h-59h|"
               "Local/Remote 1 Hyst to Remote 3 Offset|43 21 01 02 ...|"
               "Local/Remote 1 Hyst: RH1 = 4, LH = 3; "
               "Remote 2 / Remote 3 Hyst: RH3 = 2, RH2 = 1"},
           Row{"0.900000 usb port w 4a 03 -> ok", "USB|4Ah|W port|||03|"},
           Row{"0.900000 usb port r 4a -> 3f", "USB|4Ah|R port|||3F|"},
           Row{"# note now", "mark||||"},
       }) {
    EXPECT_EQ(Columns(row.line), row.columns) << row.line;
  }
}

TEST(TrafficWords, TellWhatAWriteHasChanged) {
  const auto played = Play({"0.1 usb w 58 21 11 -> ok", "0.2 usb w 58 21 31 -> ok", "0.3 usb w 58 21 31 -> ok",
                            "0.4 usb w 58 21 e7 -> fail", "0.5 usb w 58 21 c7 -> ok", "0.6 usb r 58 28 -> 80",
                            "0.7 usb w 58 28 ff -> ok", "0.8 usb port r 4a -> 3f", "0.9 usb port w 4a 3c -> ok"});
  const Traffic& traffic = *played;
  std::vector<std::string> changes;
  for (std::uint64_t i = 0; i < traffic.End(); ++i) changes.push_back(tasks::ChangeText(traffic.At(i)));
  EXPECT_THAT(changes, ElementsAre("", "11 → 31: Bhvr 0 → 1", "31, unchanged", "",
                                   "31 → C7: Bhvr 1 → 6, Inv 1 → 0, Spin 1 → 7", "", "80 → FF", "", "3F → 3C"));
  EXPECT_EQ(tasks::ChangeText(traffic.At(4), 1), "31 → C7: Bhvr 1 → 6, 2 more");
}

const std::vector<std::string> kSession{"0.1 usb r 58 3e -> 41 ; start",                           // 0
                                        "0.2 usb rb 58 20 4 -> 12 80 80 80 ; monitor",             // 1
                                        "0.3 usb w 58 21 31 -> ok ; frmAutoGraph cmbControl(0)",   // 2
                                        "0.4 usb r 58 b8 -> 00 ; monitor frmLimits",               // 3
                                        "# note Monitor off, PWM1 next",                           // 4
                                        "0.6 smbus w 2c 28 21 -> fail ; frmLimits txtX",           // 5
                                        "0.7 smbus r 2c 21 -> ff ; monitoring",                    // 6
                                        "0.8 usb port w 4a 03 -> ok ; frmLimits cmdApply, pins"};  // 7

std::vector<int> Shown(const TrafficFilter& filter) {
  const auto played = Play(kSession);
  const Traffic& traffic = *played;
  tasks::TrafficMatcher matcher(traffic, filter);
  std::vector<int> shown;
  for (int i = 0; i < static_cast<int>(traffic.End()); ++i) {
    if (matcher.Matches(traffic.At(static_cast<std::uint64_t>(i)))) shown.push_back(i);
  }
  return shown;
}

TEST(TrafficWords, AreFilteredByConditionsThatCombine) {
  EXPECT_THAT(Shown({}), ElementsAre(0, 1, 2, 3, 4, 5, 6, 7));
  EXPECT_THAT(Shown({.writesOnly = true}), ElementsAre(2, 4, 5, 7));
  EXPECT_THAT(Shown({.withoutMonitor = true}), ElementsAre(0, 2, 4, 5, 6, 7));
  EXPECT_THAT(Shown({.failuresOnly = true}), ElementsAre(4, 5));
  EXPECT_THAT(Shown({.source = "frmLimits"}), ElementsAre(3, 4, 5, 7));
  EXPECT_THAT(Shown({.writesOnly = true, .withoutMonitor = true, .source = "frmLimits"}), ElementsAre(4, 5, 7));
  EXPECT_THAT(Shown({.text = "smbus", .writesOnly = true}), ElementsAre(5));
  EXPECT_THAT(Shown({.source = "monitor"}), ElementsAre(1, 4));
}

TEST(TrafficWords, AreFoundInAnyColumnButTheTime) {
  struct Row {
    const char* text;
    std::vector<int> shown;
  };
  for (const Row& row : std::vector<Row>{{"pwm1", {1, 2, 4, 5, 6}},
                                         {" PWM3 Config ", {1}},
                                         {"Bhvr = 1", {2}},
                                         {"Bhvr = 7", {6}},
                                         {"21h", {1, 2, 6}},
                                         {"0x21", {1, 2, 6}},
                                         {"21", {2, 5, 6}},
                                         {"2Ch", {5, 6}},
                                         {"12 80", {1}},
                                         {"failed", {5}},
                                         {"W PORT", {7}},
                                         {"cmbcontrol", {2}},
                                         {"off", {4}},
                                         {"0.3", {}},
                                         {"no such text", {}}}) {
    EXPECT_EQ(Shown({.text = row.text}), row.shown) << row.text;
  }
}

std::vector<std::uint64_t> All(const Traffic& traffic) {
  std::vector<std::uint64_t> numbers;
  for (std::uint64_t i = traffic.First(); i < traffic.End(); ++i) numbers.push_back(i);
  return numbers;
}

TEST(TrafficWords, AreCopiedAsText) {
  const auto played = Play({kSession[2], kSession[4]});
  const Traffic& traffic = *played;
  EXPECT_EQ(tasks::AsText(traffic, All(traffic)),
            "0.300000\tUSB\t58h\tW\t21h\tPWM1 Config\t31\t\tfrmAutoGraph cmbControl(0)\t"
            "Bhvr = 1, Inv = 1, Slow = 0, Spin = 1\n"
            "0.000000\t\t\tmark\t\tMonitor off, PWM1 next\t\t\t\t\n");
}

TEST(TrafficWords, AreCopiedForI2cTools) {
  const auto played = Play(kSession);
  const Traffic& traffic = *played;
  EXPECT_EQ(tasks::AsI2cTools(traffic, All(traffic)),
            "BUS=${BUS:-1}  # the number of the I2C adapter, see i2cdetect -l\n"
            "# 58h on USB: 0x2c in 7 bits\n"
            "i2cget -y $BUS 0x2c 0x3e  # 0x41, Company ID\n"
            "i2cget -y $BUS 0x2c 0x20  # 0x12\n"
            "i2cget -y $BUS 0x2c 0x21  # 0x80, PWM1 Config\n"
            "i2cget -y $BUS 0x2c 0x22  # 0x80, PWM2 Config\n"
            "i2cget -y $BUS 0x2c 0x23  # 0x80, PWM3 Config\n"
            "i2cset -y $BUS 0x2c 0x21 0x31  # PWM1 Config\n"
            "i2cget -y $BUS 0x2c 0xb8  # 0x00, Thermal Status 1,Host\n"
            "# mark: \"Monitor off, PWM1 next\"\n"
            "# SMBus 2Ch W, failed 28h PWM1 Min 21\n"
            "# 2Ch on SMBus\n"
            "i2cget -y $BUS 0x2c 0x21  # 0xff, PWM1 Config\n"
            "# USB 4Ah W port 03\n");
  const auto probe = Play({"0.1 smbus r 00 00 -> ff", "0.2 usb heater w 1 50 -> ok"});
  EXPECT_EQ(tasks::AsI2cTools(*probe, {0}),
            "BUS=${BUS:-1}  # the number of the I2C adapter, see i2cdetect -l\n"
            "# SMBus 00h R 00h Configuration 0 FF\n");
}

TEST(TrafficWords, AreCopiedAsC) {
  const auto played = Play({kSession[2], kSession[3], "0.9 usb w 5a 28 80 -> ok", "# note a path C:\\"});
  const Traffic& traffic = *played;
  EXPECT_EQ(tasks::AsC(traffic, All(traffic)),
            "// 58h on USB\n"
            "{0x21, 0x31}, // PWM1 Config\n"
            "// USB 58h R B8h Thermal Status 1,Host 00\n"
            "// 5Ah on USB\n"
            "{0x28, 0x80}, // PWM1 Min\n"
            "// mark: \"a path C:\\\"\n");
}

}  // namespace
}  // namespace zth::testing
