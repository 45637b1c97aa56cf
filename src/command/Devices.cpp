#include "command/Devices.h"

#include <algorithm>
#include <vector>

namespace zth::command {
namespace {

const QString kDevices = "/sys/bus/i2c/devices/";
constexpr char kPciSmbus[] = "0x0c05";  // a PCI class code as sysfs writes it

constexpr char kLoadDriver[] =
    "load the driver of this PC's SMBus host, \"sudo modprobe i2c-i801\" (Intel) or \"sudo modprobe i2c-piix4\" (AMD)";
constexpr char kLoadModule[] = "\"sudo modprobe i2c-dev\"";
constexpr char kJoinGroup[] =
    "\"sudo usermod -aG i2c $USER\", log in again; docs/hardware.md tells of the rule that gives the node to this "
    "group";

/// One line of the report.
struct Finding {
  std::string what;    ///< "i2c-0 (SMBus I801 adapter at f040)"
  std::string state;   ///< in words
  std::string remedy;  ///< empty if all is well
};

void Show(const Finding& finding, const Output& output) {
  output.Result(finding.what + ": " + finding.state + (finding.remedy.empty() ? "" : "; remedy: " + finding.remedy),
                {{"what", finding.what}, {"state", finding.state}, {"remedy", finding.remedy}});
}

bool IsSmbusHost(const platform::Machine& machine, const QString& adapter) {
  return machine.FirstLine(kDevices + adapter + "/name").contains("SMBus") ||
         machine.FirstLine(kDevices + adapter + "/device/class").startsWith(kPciSmbus);
}

Finding OfAdapter(const platform::Machine& machine, const QString& adapter) {
  const QString name = machine.FirstLine(kDevices + adapter + "/name");
  Finding finding{(adapter + " (" + (name.isEmpty() ? "no name" : name) + ")").toStdString(), "", ""};
  if (!IsSmbusHost(machine, adapter)) {
    finding.state = "no SMBus host, not used unless a setting names it";
    return finding;
  }
  const QString node = "/dev/" + adapter;
  const platform::NodeAccess access = machine.Access(node);
  const std::string of = node.toStdString() + " (group " + access.group.toStdString() + ")";
  if (!access.isThere) {
    finding.state = "an SMBus host, but there is no " + node.toStdString();
    finding.remedy = kLoadModule;
  } else if (!access.mayUse) {
    finding.state = "an SMBus host, but you may not use " + of;
    finding.remedy = kJoinGroup;
  } else {
    finding.state = "an SMBus host, and you may use " + of;
  }
  return finding;
}

/// The chips that kernel drivers hold, named as "0-002c" in the bus's folder.
void ShowHeld(const platform::Machine& machine, const QStringList& names, const Output& output) {
  for (const QString& name : names) {
    const QString driver = machine.Target(kDevices + name + "/driver");
    const qsizetype dash = name.indexOf("-00");
    if (driver.isEmpty() || dash <= 0 || name.size() != dash + 5) continue;
    const QString address = name.right(2).toUpper() + "h on i2c-" + name.left(dash);
    Show({address.toStdString(), "held by the kernel driver " + driver.toStdString(),
          "if this is the ZTH4718, \"echo " + name.toStdString() + " | sudo tee /sys/bus/i2c/drivers/" +
              driver.toStdString() + "/unbind\""},
         output);
  }
}

/// True if a fault keeps from the bus.
bool ShowSmbus(const platform::Machine& machine, const Output& output) {
  const QStringList names = machine.Names(kDevices);
  const bool hasModule = machine.Names("/sys/class").contains("i2c-dev");
  Show({"i2c-dev", hasModule ? "loaded" : "not loaded", hasModule ? "" : kLoadModule}, output);
  bool mayUseOne = false;
  bool hasHost = false;
  for (const QString& name : names) {
    if (!name.startsWith("i2c-")) continue;
    const Finding finding = OfAdapter(machine, name);
    Show(finding, output);
    if (!IsSmbusHost(machine, name)) continue;
    hasHost = true;
    mayUseOne = mayUseOne || finding.remedy.empty();
  }
  if (!hasHost) Show({"SMBus host", "none", kLoadDriver}, output);
  ShowHeld(machine, names, output);
  return !hasModule || !mayUseOne;
}

/// True if there is no USB device that may be used. Which one is the adapter only its maker's library knows.
bool ShowUsb(const platform::Machine& machine, const Output& output) {
  int count = 0;
  int usable = 0;
  for (const QString& bus : machine.Names("/dev/bus/usb")) {
    for (const QString& node : machine.Names("/dev/bus/usb/" + bus)) {
      ++count;
      if (machine.Access("/dev/bus/usb/" + bus + "/" + node).mayUse) ++usable;
    }
  }
  Finding finding{"USB devices", std::to_string(count) + ", of which you may use " + std::to_string(usable), ""};
  if (count == 0) finding.remedy = "plug in the adapter";
  if (count > 0 && usable == 0) finding.remedy = "install the udev rule of the adapter's maker";
  Show(finding, output);
  return usable == 0;
}

}  // namespace

bool ShowDevices(const platform::Machine& machine, const DevicesNeeded& needed, const Output& output) {
  const bool smbusFails = ShowSmbus(machine, output);
  const bool usbFails = ShowUsb(machine, output);
  return (needed.smbus && smbusFails) || (needed.usb && usbFails);
}

}  // namespace zth::command
