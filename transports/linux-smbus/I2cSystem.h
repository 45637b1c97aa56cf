#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace zth::smbus {

/// One bus adapter, as the kernel describes it.
struct Adapter {
  int number = 0;          ///< the N of i2c-N
  std::string name;        ///< as "SMBus I801 adapter at f040"
  bool isHost = false;     ///< its own device is a PCI SMBus controller
  bool isDisplay = false;  ///< it belongs to a display or a graphics card
};

/// What an adapter can do, of the two transfers that this library uses.
struct Abilities {
  bool readByteData = false;
  bool writeByteData = false;
};

/// The seam to the kernel. Failures are errno values, never exceptions.
class I2cSystem {
 public:
  virtual ~I2cSystem() = default;

  /// All adapters that the kernel knows, by rising number. Needs neither i2c-dev nor permissions.
  virtual std::vector<Adapter> Adapters() = 0;
  /// Whether the kernel still has this adapter. Cheap enough to ask now and then while polling.
  virtual bool IsThere(int adapter) = 0;
  /// The kernel driver that is bound to an address of an adapter; empty when that cannot be told.
  virtual std::string DriverAt(int adapter, std::uint8_t address) = 0;
  /// Where the adapter's device node is, for messages.
  virtual std::string NodeOf(int adapter) = 0;

  /// The time by a monotonic clock of unspecified start.
  virtual std::chrono::nanoseconds Now() = 0;

  /// Opens the adapter's node for transfers: a descriptor, or -errno.
  virtual int Open(int adapter) = 0;
  virtual void Close(int descriptor) = 0;
  /// 0, or -errno.
  virtual int QueryAbilities(int descriptor, Abilities& abilities) = 0;
  /// Points the descriptor at an address: 0, or -errno. -EBUSY when a kernel driver is bound to the address; the
  /// descriptor then still points where it did before, so that no transfer may follow.
  virtual int Select(int descriptor, std::uint8_t address) = 0;
  /// One byte-data read from the address selected: the byte, or -errno.
  virtual int ReadByteData(int descriptor, std::uint8_t reg) = 0;
  /// One byte-data write to the address selected: 0, or -errno.
  virtual int WriteByteData(int descriptor, std::uint8_t reg, std::uint8_t value) = 0;
};

}  // namespace zth::smbus
