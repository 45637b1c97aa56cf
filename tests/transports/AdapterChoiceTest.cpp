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

const std::vector<Adapter> kPresent{{0, "i915 gmbus dpa", false, true},
                                    {1, "Synopsys DesignWare I2C adapter", false, false},
                                    {2, "SMBus I801 adapter at f040", true, false},
                                    {3, "i2c-2-mux (chan_id 0)", false, false},
                                    {4, "NVIDIA SMBus 0", false, true},
                                    {5, "CP2112 SMBus Bridge on hidraw1", false, false},
                                    {12, "unnamed host", true, false}};

TEST(AdapterChoice, ASettingNamesAdaptersByNumberOrNameElseEveryHostIsTakenAndNothingElse) {
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
        Row{"auto", {2, 5, 12}, ""}, Row{" , ", {2, 5, 12}, ""}, Row{"", {2, 5, 12}, ""}}) {
    Settings settings;
    settings.adapters = ParseAdapterList(row.setting);
    settings.origin = "test";
    const AdapterChoice choice = ChooseAdapters(kPresent, settings);
    std::vector<int> chosen;
    for (const Adapter& adapter : choice.chosen) chosen.push_back(adapter.number);
    EXPECT_EQ(chosen, row.chosen) << row.setting;
    EXPECT_EQ(choice.remarks.size(), *row.remark == '\0' ? 0U : 1U) << row.setting;
    for (const std::string& remark : choice.remarks) EXPECT_THAT(remark, HasSubstr(row.remark));
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
    std::string config, state;  // the base directories; empty when there is none
  };
  const std::string home = "/home/ann", usual = home + "/.config", usualState = home + "/.local/state";
  for (const Row& row :
       {Row{{{"HOME", home}}, usual, usualState},
        Row{{{"HOME", home}, {"XDG_CONFIG_HOME", "/c"}, {"XDG_STATE_HOME", "/s"}}, "/c", "/s"},
        Row{{{"HOME", home}, {"XDG_STATE_HOME", "not/absolute"}}, usual, usualState}, Row{{}, "", ""}}) {
    const UserPlaces places = PlacesOf([&row](const char* name) {
      const auto found = row.variables.find(name);
      return found == row.variables.end() ? std::string() : found->second;
    });
    EXPECT_EQ(places.settingsFile, row.config.empty() ? "" : row.config + "/zth4718/smbus.conf");
    EXPECT_EQ(places.logFile, row.state.empty() ? "" : row.state + "/zth4718/smbus.log");
  }
}

}  // namespace
}  // namespace zth::smbus
