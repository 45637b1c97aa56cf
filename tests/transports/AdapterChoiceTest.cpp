#include <map>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "linux-smbus/AdapterChoice.h"

namespace zth::smbus {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::vector<int> Numbers(const std::vector<Adapter>& adapters) {
  std::vector<int> numbers;
  for (const Adapter& adapter : adapters) numbers.push_back(adapter.number);
  return numbers;
}

const std::vector<Adapter> kPresent{{0, "i915 gmbus dpa", false, true},
                                    {1, "Synopsys DesignWare I2C adapter", false, false},
                                    {2, "SMBus I801 adapter at f040", true, false},
                                    {3, "i2c-2-mux (chan_id 0)", false, false},
                                    {4, "NVIDIA SMBus 0", false, true},
                                    {5, "CP2112 SMBus Bridge on hidraw1", false, false},
                                    {12, "unnamed host", true, false}};

TEST(AdapterChoice, WithoutASettingEveryHostIsTakenAndNothingElse) {
  const AdapterChoice choice = ChooseAdapters(kPresent, {});
  EXPECT_THAT(Numbers(choice.chosen), ElementsAre(2, 5, 12));
  EXPECT_THAT(choice.remarks, IsEmpty());
}

TEST(AdapterChoice, ASettingNamesAdaptersByNumberOrName) {
  struct Row {
    const char* setting;
    std::vector<int> chosen;
    const char* remark;
  };
  for (const Row& row :
       {Row{"5,2", {5, 2}, ""}, Row{"i2c-1", {1}, ""}, Row{"/dev/i2c-12", {12}, ""},
        Row{"smbus", {2, 5}, "i2c-4 (NVIDIA SMBus 0): a display's bus"}, Row{"i801, 2, i2c-2", {2}, ""},
        Row{"1, i2c-2-mux", {1, 3}, ""}, Row{"0", {}, "names i2c-0"},
        Row{"7, 2", {2}, "names \"7\": there is no such adapter"}, Row{"-1", {}, "there is no such adapter"},
        Row{"auto", {2, 5, 12}, ""}, Row{" , ", {2, 5, 12}, ""}}) {
    Settings settings;
    settings.adapters = ParseAdapterList(row.setting);
    settings.origin = "test";
    const AdapterChoice choice = ChooseAdapters(kPresent, settings);
    EXPECT_EQ(Numbers(choice.chosen), row.chosen) << row.setting;
    if (*row.remark == '\0') {
      EXPECT_THAT(choice.remarks, IsEmpty()) << row.setting;
    } else {
      EXPECT_THAT(choice.remarks, ElementsAre(HasSubstr(row.remark))) << row.setting;
    }
  }
}

TEST(Settings, TheFileIsReadLineByLine) {
  std::istringstream file(
      "# buses\n\n  adapters = 1\r\nadapters=SMBus I801 , 3 # the board\nretries = 2\nadapters 4\n");
  const Settings settings = ParseSettings(file, "smbus.conf");
  EXPECT_THAT(settings.adapters, ElementsAre("SMBus I801", "3"));
  EXPECT_THAT(settings.faults, ElementsAre(HasSubstr("smbus.conf:5:"), HasSubstr("smbus.conf:6:")));
}

TEST(Settings, FilesStandInTheUsersFolders) {
  struct Row {
    std::map<std::string, std::string> variables;
    const char *settings, *log;
  };
  for (const Row& row : {Row{{{"HOME", "/home/ann"}},
                             "/home/ann/.config/zth4718/smbus.conf",
                             "/home/ann/.local/state/zth4718/smbus.log"},
                         Row{{{"HOME", "/home/ann"}, {"XDG_CONFIG_HOME", "/c"}, {"XDG_STATE_HOME", "/s"}},
                             "/c/zth4718/smbus.conf",
                             "/s/zth4718/smbus.log"},
                         Row{{{"HOME", "/home/ann"}, {"XDG_STATE_HOME", "not/absolute"}},
                             "/home/ann/.config/zth4718/smbus.conf",
                             "/home/ann/.local/state/zth4718/smbus.log"},
                         Row{{}, "", ""}}) {
    const UserPlaces places = PlacesOf([&row](const char* name) {
      const auto found = row.variables.find(name);
      return found == row.variables.end() ? std::string() : found->second;
    });
    EXPECT_EQ(places.settingsFile, row.settings);
    EXPECT_EQ(places.logFile, row.log);
  }
}

}  // namespace
}  // namespace zth::smbus
