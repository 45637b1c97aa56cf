#include <map>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include <gmock/gmock.h>

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
  using Row = std::tuple<const char*, std::vector<int>, const char*>;
  for (const auto& [setting, expected, told] :
       {Row{"5,2", {5, 2}, ""}, Row{"i2c-1", {1}, ""}, Row{"/dev/i2c-12", {12}, ""},
        Row{"smbus", {2, 5}, "i2c-4 (NVIDIA SMBus 0): a display's bus"}, Row{"i801, 2, i2c-2", {2}, ""},
        Row{"1, i2c-2-mux", {1, 3}, ""}, Row{"0", {}, "names i2c-0"},
        Row{"7, 2", {2}, "names \"7\": there is no such adapter"}, Row{"-1", {}, "there is no such adapter"},
        Row{"auto", {2, 5, 12}, ""}, Row{" , ", {2, 5, 12}, ""}, Row{"", {2, 5, 12}, ""}}) {
    const AdapterChoice choice = ChooseAdapters(kPresent, {ParseAdapterList(setting), "test", {}});
    std::vector<int> chosen;
    for (const Adapter& adapter : choice.chosen) chosen.push_back(adapter.number);
    EXPECT_EQ(chosen, expected) << setting;
    EXPECT_EQ(choice.remarks.size(), *told == '\0' ? 0U : 1U) << setting;
    for (const std::string& remark : choice.remarks) EXPECT_THAT(remark, HasSubstr(told));
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
  const std::string home = "/home/ann", conf = "/zth4718/smbus.conf", log = "/zth4718/smbus.log",
                    usual = home + "/.config" + conf, usualLog = home + "/.local/state" + log;
  const std::tuple<std::map<std::string, std::string>, std::string, std::string> rows[] = {
      {{{"HOME", home}}, usual, usualLog},
      {{{"HOME", home}, {"XDG_CONFIG_HOME", "/c"}, {"XDG_STATE_HOME", "/s"}}, "/c" + conf, "/s" + log},
      {{{"HOME", home}, {"XDG_STATE_HOME", "not/absolute"}}, usual, usualLog},
      {{}, "", ""}};
  for (auto [variables, settingsFile, logFile] : rows) {
    const UserPlaces places = PlacesOf([&all = variables](const char* name) { return all[name]; });
    EXPECT_EQ(places.settingsFile, settingsFile);
    EXPECT_EQ(places.logFile, logFile);
  }
}

}  // namespace
}  // namespace zth::smbus
