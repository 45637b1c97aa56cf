#pragma once

#include <cstdint>

#include <QString>

namespace zth::link {

/// Identifies a chip by its link and its bus address there. The default means no chip.
struct ChipId {
  std::int16_t mode = 0;  ///< as in `InterfaceMode`
  std::int32_t address = 0;

  bool operator==(const ChipId&) const = default;
};

/// The chip that the windows' register operations address: the current `InterfaceMode` and `DeviceAddress`.
ChipId ChipInUse();

/// Makes a chip the one in use: sets `DeviceAddress`, and `InterfaceMode` unless the chip has no link.
void Use(const ChipId& chip);

/// The text in the device list: "58h on USB".
QString TextOf(const ChipId& chip);

/// The chip of such a text. Without a link in it, the mode is 0.
ChipId ChipOf(const QString& text);

/// Another chip is in use for as long as such an object lives, and then the one before again. In between, no event may
/// be handled: no window would know.
class Meanwhile {
 public:
  explicit Meanwhile(const ChipId& chip);
  ~Meanwhile();
  Meanwhile(const Meanwhile&) = delete;
  Meanwhile& operator=(const Meanwhile&) = delete;

 private:
  ChipId before_;
};

}  // namespace zth::link
