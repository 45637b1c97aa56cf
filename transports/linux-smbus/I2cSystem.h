#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace zth::smbus {

/// A bus adapter, as described by the kernel.
struct Adapter {
  int number = 0;          ///< the N of i2c-N
  std::string name;        ///< for example "SMBus I801 adapter at f040"
  bool isHost = false;     ///< its own device is a PCI SMBus controller
  bool isDisplay = false;  ///< it belongs to a display or a graphics card
};

/// Which of the two transfers that this library uses an adapter supports.
struct Abilities {
  bool readByteData = false;
  bool writeByteData = false;
};

/// The seam to the kernel. Failures are errno values, never exceptions.
class I2cSystem {
 public:
  virtual ~I2cSystem() = default;

  /// All adapters known to the kernel, by ascending number. Needs neither i2c-dev nor permissions.
  virtual std::vector<Adapter> Adapters() = 0;
  /// Whether the kernel still has this adapter. Cheap enough to call occasionally while polling.
  virtual bool IsThere(int adapter) = 0;
  /// The kernel driver bound to an address of an adapter; empty if unknown.
  virtual std::string DriverAt(int adapter, std::uint8_t address) = 0;
  /// The path of the adapter's device node, for messages.
  virtual std::string NodeOf(int adapter) = 0;

  /// The time of a monotonic clock with an unspecified start.
  virtual std::chrono::nanoseconds Now() = 0;

  /// Opens the adapter's node for transfers. Returns a descriptor or -errno.
  virtual int Open(int adapter) = 0;
  virtual void Close(int descriptor) = 0;
  /// Returns 0 or -errno.
  virtual int QueryAbilities(int descriptor, Abilities& abilities) = 0;
  /// Points the descriptor at an address. Returns 0 or -errno: -EBUSY if a kernel driver is bound to the address. The
  /// descriptor then still points at its previous address, so no transfer may follow.
  virtual int Select(int descriptor, std::uint8_t address) = 0;
  /// One byte-data read from the selected address. Returns the byte or -errno.
  virtual int ReadByteData(int descriptor, std::uint8_t reg) = 0;
  /// One byte-data write to the selected address. Returns 0 or -errno.
  virtual int WriteByteData(int descriptor, std::uint8_t reg, std::uint8_t value) = 0;
};

}  // namespace zth::smbus
