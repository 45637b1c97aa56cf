#include "linux-smbus/Remedies.h"

#include <cerrno>
#include <system_error>

#include "linux-smbus/Settings.h"
#include "linux-smbus/Text.h"

namespace zth::smbus {

std::string Describe(const Adapter& adapter) {
  return "i2c-" + std::to_string(adapter.number) + " (" + (adapter.name.empty() ? "no name" : adapter.name) + ")";
}

std::string NameOf(const Adapter& adapter) {
  const std::string node = "i2c-" + std::to_string(adapter.number);
  return adapter.name.empty() ? node : adapter.name + " (" + node + ")";
}

std::string ErrorText(int error) {
  return std::generic_category().message(error) + " (errno " + std::to_string(error) + ")";
}

std::string NoAdapterText() {
  return "The kernel knows no SMBus or I2C adapter. Load the driver of this PC's SMBus host, as \"sudo modprobe "
         "i2c-i801\" (Intel) or \"sudo modprobe i2c-piix4\" (AMD), and see that the firmware setup has the SMBus "
         "controller switched on.";
}

std::string NoneChosenText(const std::vector<Adapter>& present) {
  std::string text = "No adapter is in use. There are: ";
  for (std::size_t index = 0; index < present.size(); ++index) {
    if (index > 0) text += ", ";
    text += Describe(present[index]);
    if (present[index].isDisplay) text += " [a display's, never used]";
  }
  return text + ". Without a setting only SMBus hosts are taken. Load the driver of this PC's (\"sudo modprobe " +
         "i2c-i801\" or \"sudo modprobe i2c-piix4\"), or name another adapter by " + kAdaptersVariable +
         " or in the file zth4718/smbus.conf of your configuration folder.";
}

std::string CannotOpenText(const Adapter& adapter, const std::string& node, int error) {
  const std::string text = Describe(adapter) + ": " + node + " cannot be opened, " + ErrorText(error) + ". ";
  switch (error) {
    case ENOENT:
    case ENXIO:
    case ENODEV:
      return text + "Load the kernel's i2c-dev: \"sudo modprobe i2c-dev\", and for every start of the PC " +
             "\"echo i2c-dev | sudo tee /etc/modules-load.d/i2c-dev.conf\".";
    case EACCES:
    case EPERM:
      return text + "Install packaging/60-zth4718-smbus.rules as docs/hardware.md tells and join its group: " +
             "\"sudo usermod -aG i2c $USER\", then log in again.";
    default:
      return text + "The adapter is not used.";
  }
}

std::string HeldText(int adapter, std::uint8_t address, const std::string& driver) {
  std::string text = "held by a kernel driver and left alone, reads 0xFF. ";
  if (!driver.empty()) {
    text += "To have it free: \"echo " + ChipName(adapter, address) + " | sudo tee /sys/bus/i2c/drivers/" + driver +
            "/unbind\".";
  }
  return text;
}

}  // namespace zth::smbus
