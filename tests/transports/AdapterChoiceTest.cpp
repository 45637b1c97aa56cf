#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <tuple>
#include <unistd.h>
#include <vector>

#include <gmock/gmock.h>

#include "linux-smbus/AdapterChoice.h"
#include "linux-smbus/Journal.h"
#include "linux-smbus/Settings.h"
#include "linux-smbus/Sysfs.h"

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

TEST(AdapterChoice, ASettingNamesAdaptersByNumberOrNameOtherwiseOnlyHostsAreUsed) {
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

TEST(Settings, FilesAreInTheUsersFolders) {
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

namespace fs = std::filesystem;
using testing::IsEmpty;

class FilesTest : public testing::Test {
 public:
  FilesTest() {
    fs::remove_all(root);
    fs::create_directories(root);
  }
  ~FilesTest() override { fs::remove_all(root); }

 protected:
  static void Put(const fs::path& file, const std::string& text) {
    fs::create_directories(file.parent_path());
    std::ofstream(file) << text << "\n";
  }
  static std::string Get(const fs::path& file) {
    std::ifstream text(file);
    return {std::istreambuf_iterator<char>(text), {}};
  }
  /// An adapter below `device`, as the kernel presents it: a folder there, and a link among the devices of the bus.
  void PutAdapter(const std::string& device, int number, const std::string& name) const {
    const std::string folder = "i2c-" + std::to_string(number);
    Put(root / "devices" / device / folder / "name", name);
    fs::create_directories(root / "bus/i2c/devices");
    fs::create_directory_symlink(root / "devices" / device / folder, root / "bus/i2c/devices" / folder);
  }

  const fs::path root = fs::path(testing::TempDir()) /
                        (std::string("zth-smbus-") + testing::UnitTest::GetInstance()->current_test_info()->name() +
                         std::to_string(getpid()));
};

TEST_F(FilesTest, HostsAndDisplaysAreDistinguishedByTheirDevices) {
  const std::string pci = "pci0000:00/0000:00:";
  Put(root / "devices" / (pci + "1f.4") / "class", "0x0c0500");
  Put(root / "devices" / (pci + "02.0") / "class", "0x030000");
  Put(root / "devices" / (pci + "15.0") / "class", "0x0c8000");
  PutAdapter(pci + "1f.4", 10, "I801 aux host");
  PutAdapter(pci + "1f.4/i2c-10", 11, "i2c-10-mux (chan_id 0)");
  PutAdapter(pci + "02.0", 2, "SMBus of a graphics card");
  PutAdapter(pci + "02.0/drm/card0/card0-DP-1", 3, "DPMST");
  PutAdapter(pci + "15.0/i2c_designware.0", 1, "Synopsys DesignWare I2C adapter");
  PutAdapter("platform/soc/drm/card1", 4, "hot plug");
  PutAdapter("platform/soc", 5, "AUX A/DDI A/PHY A");
  PutAdapter("platform/soc", 6, "mainland bus");
  PutAdapter("", 0, "SMBus stub driver");
  fs::create_directories(root / "bus/i2c/devices/0-002c");
  fs::create_directory_symlink(root / "bus/i2c/drivers/lm75", root / "bus/i2c/devices/0-002c/driver");

  const Sysfs sysfs(root);
  std::string found;
  for (const Adapter& adapter : sysfs.Adapters()) {
    found += std::to_string(adapter.number) + (IsSmbusHost(adapter) ? " host" : "") +
             (adapter.isDisplay ? " display" : "") + ", ";
  }
  EXPECT_EQ(found, "0 host, 1, 2 display, 3 display, 4 display, 5 display, 6, 10 host, 11, ");
  EXPECT_EQ(sysfs.DriverAt(0, 0x2C), "lm75");
  EXPECT_EQ(sysfs.DriverAt(0, 0x2D), "");
  EXPECT_TRUE(sysfs.IsThere(10));
  EXPECT_FALSE(sysfs.IsThere(7));
  EXPECT_THAT(Sysfs(root / "nothing").Adapters(), IsEmpty());
}

TEST_F(FilesTest, TheVariableOverridesTheFile) {
  const UserPlaces places{root / "smbus.conf", {}};
  std::string variable;
  const auto adapters = [&] { return LoadSettings(places, [&](const char*) { return variable; }).adapters; };
  EXPECT_THAT(adapters(), IsEmpty());
  Put(places.settingsFile, "adapters = 3");
  EXPECT_THAT(adapters(), ElementsAre("3"));
  variable = "auto";
  EXPECT_THAT(adapters(), IsEmpty());
  variable = "1,2";
  EXPECT_THAT(adapters(), ElementsAre("1", "2"));
}

TEST_F(FilesTest, TheLogKeepsItsMessagesAndStaysWithinItsLimit) {
  const fs::path file = root / "deep" / "smbus.log";
  std::ostringstream errors;
  Journal journal(errors, file, [] { return std::string("[now]"); });
  journal.Note("for the log");
  journal.Tell("for both");
  EXPECT_EQ(Get(file), "[now] for the log\n[now] for both\n");
  EXPECT_EQ(errors.str(), "smbus: for both\n");

  const std::string line(1000, 'x');
  for (int count = 0; count < 1000; ++count) {
    journal.Note(line);
    ASSERT_LE(fs::file_size(file), Journal::kMaxBytes);
  }
  journal.Note("the last");
  EXPECT_THAT(Get(file), HasSubstr("the last"));
  EXPECT_LE(fs::file_size(file.string() + ".1"), Journal::kMaxBytes);
  EXPECT_EQ(std::distance(fs::directory_iterator(file.parent_path()), fs::directory_iterator()), 2);
}

}  // namespace
}  // namespace zth::smbus
