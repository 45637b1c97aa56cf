#include <string>

#include <QDir>
#include <QFile>

#include "platform/Machine.h"
#include "tests/command/CommandGround.h"

namespace zth::testing {
namespace {

/// A tree of files in the place of a machine's. Nodes in `denied` may not be used: whoever runs the tests may use all.
class FakeMachine final : public platform::Machine {
 public:
  explicit FakeMachine(const QString& root) : root_(root), files_(root) {}

  void Add(const QString& path, const QByteArray& text = {}) const {
    QDir().mkpath(QFileInfo(root_ + path).path());
    QFile file(root_ + path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(text) == text.size());
  }
  void Link(const QString& path, const QString& to) const {
    QDir().mkpath(QFileInfo(root_ + path).path());
    EXPECT_TRUE(QFile::link(to, root_ + path));
  }

  QStringList Names(const QString& folder) const override { return files_.Names(folder); }
  QString FirstLine(const QString& file) const override { return files_.FirstLine(file); }
  QString Target(const QString& link) const override { return files_.Target(link); }
  platform::NodeAccess Access(const QString& node) const override {
    platform::NodeAccess access = files_.Access(node);
    if (denied.contains(node)) access = {access.isThere, false, "i2c"};
    return access;
  }

  QStringList denied;

 private:
  QString root_;
  platform::LocalMachine files_;
};

class DevicesTest : public CommandTest {
 protected:
  DevicesTest() { desk.services.machine = &machine; }
  int Look() { return Run({"doctor", "--no-transfers"}); }
  bool Tells(const std::string& text) const { return out.find(text) != std::string::npos; }

  QTemporaryDir root;
  FakeMachine machine{root.path()};
};

TEST_F(DevicesTest, DoctorSaysWhatKeepsFromTheBusWithoutTouchingIt) {
  EXPECT_EQ(Look(), command::kNoHardware);
  EXPECT_TRUE(Tells("i2c-dev: not loaded; remedy: \"sudo modprobe i2c-dev\"\n")) << out;
  EXPECT_TRUE(Tells("SMBus host: none; remedy: load the driver")) << out;
  EXPECT_TRUE(Tells("USB devices: 0, of which you may use 0; remedy: plug in the adapter\n")) << out;

  machine.Add("/sys/class/i2c-dev/i2c-0/dev");
  machine.Add("/sys/bus/i2c/devices/i2c-0/name", "SMBus I801 adapter at f040\n");
  machine.Add("/sys/bus/i2c/devices/i2c-1/name", "i915 gmbus dpb\n");
  machine.Add("/sys/bus/i2c/devices/i2c-2/device/class", "0x0c0500\n");
  machine.Add("/sys/bus/i2c/devices/0-0050/name", "spd\n");
  machine.Add("/sys/bus/i2c/devices/0-002c/name", "zth4718\n");
  machine.Link("/sys/bus/i2c/devices/0-002c/driver", "/sys/bus/i2c/drivers/hwmon9");
  machine.Add("/dev/i2c-0");
  machine.Add("/dev/bus/usb/001/002");
  machine.denied = {"/dev/i2c-0", "/dev/bus/usb/001/002"};
  EXPECT_EQ(Look(), command::kNoHardware);
  EXPECT_TRUE(Tells("i2c-dev: loaded\n")) << out;
  EXPECT_TRUE(
      Tells("i2c-0 (SMBus I801 adapter at f040): an SMBus host, but you may not use /dev/i2c-0 (group i2c); "
            "remedy: \"sudo usermod -aG i2c $USER\""))
      << out;
  EXPECT_TRUE(Tells("i2c-1 (i915 gmbus dpb): no SMBus host")) << out;
  EXPECT_TRUE(Tells("i2c-2 (no name): an SMBus host, but there is no /dev/i2c-2; remedy: ")) << out;
  EXPECT_TRUE(Tells("2Ch on i2c-0: held by the kernel driver hwmon9; remedy: if this is the ZTH4718, \"echo 0-002c"));
  EXPECT_FALSE(Tells("50h on i2c-0")) << "no driver holds it";
  EXPECT_TRUE(Tells("USB devices: 1, of which you may use 0; remedy: install the udev rule")) << out;

  machine.denied.clear();
  EXPECT_EQ(Look(), command::kDone) << out;
  EXPECT_TRUE(Tells("an SMBus host, and you may use /dev/i2c-0 (group ")) << out;
  EXPECT_EQ(traffic, Traffic{});
}

TEST_F(DevicesTest, ABoardThatNeedsNoDeviceIsNotHeldToThem) {
  desk.board.boardNames = {{"USBFunctions", "Simulated board"}, {"smbus", "Simulated board"}};
  EXPECT_EQ(Look(), command::kDone) << out;
  desk.board.boardNames.erase("smbus");
  EXPECT_EQ(Look(), command::kNoHardware);
  EXPECT_EQ(Run({"--json", "doctor", "--no-transfers"}), command::kNoHardware);
  EXPECT_TRUE(Tells(R"({"what":"i2c-dev","state":"not loaded","remedy":"\"sudo modprobe i2c-dev\""})")) << out;
}

}  // namespace
}  // namespace zth::testing
