#include "tasks/RegisterImage.h"

#include <algorithm>
#include <string_view>

#include "base/Counted.h"
#include "chip/ReadEffects.h"
#include "chip/RegisterGroups.h"
#include "chip/RegisterNames.h"
#include "link/ChipId.h"
#include "link/Declarations.h"
#include "link/Transfers.h"
#include "link/USBStuff.h"
#include "tasks/ChangeWords.h"

namespace zth::tasks {
namespace {

/// The addresses of the rows that fit, each once, in the order of the table.
template <typename Fits>
std::vector<std::uint8_t> AddressesOf(Fits fits) {
  std::vector<std::uint8_t> addresses;
  for (const chip::RegisterRow& row : chip::kRegisterRows) {
    if (fits(row) && std::ranges::count(addresses, row.address) == 0) addresses.push_back(row.address);
  }
  return addresses;
}

std::string Counted(std::size_t count, std::string_view nouns) {
  return base::Counted(static_cast<std::int64_t>(count), nouns);
}

}  // namespace

bool RegisterImage::IsEmpty() const {
  return std::ranges::none_of(bytes, [](const HeldByte& held) { return held.known != 0; });
}

void RegisterImage::Put(std::uint8_t reg, std::uint8_t value, std::uint8_t known) {
  HeldByte& held = bytes[reg];
  held.value = static_cast<std::uint8_t>((held.value & ~known) | (value & known));
  held.known = static_cast<std::uint8_t>(held.known | known);
}

RegisterImage DefaultImage() {
  RegisterImage image;
  image.origin = "Defaults";
  for (const chip::RegisterRow& row : chip::kRegisterRows) {
    if (!image.Holds(row.address)) image.Put(row.address, row.defaultValue);
  }
  return image;
}

const std::vector<std::uint8_t>& ComparableRegisters() {
  static const auto registers = AddressesOf([](const chip::RegisterRow& row) { return !row.readOnly; });
  return registers;
}

const std::vector<std::uint8_t>& ReadableRegisters() {
  static const auto registers =
      AddressesOf([](const chip::RegisterRow& row) { return !chip::ReadClears(row.address); });
  return registers;
}

std::vector<std::uint8_t> OfGroup(const std::vector<std::uint8_t>& registers, const std::string& group) {
  std::vector<std::uint8_t> found = registers;
  if (group.empty()) return found;
  std::erase_if(found, [&](std::uint8_t reg) { return std::ranges::count(chip::GroupsOf(reg), group) == 0; });
  return found;
}

ImageReading ReadImage(const std::vector<std::uint8_t>& registers, const GoesOn& goesOn) {
  ImageReading reading;
  reading.image.origin = link::TextOf(link::ChipInUse()).toStdString();
  for (auto reg = registers.begin(); reg != registers.end(); ++reg) {
    if (goesOn && !goesOn(static_cast<std::size_t>(reg - registers.begin()))) {
      reading.notReached.assign(reg, registers.end());
      break;
    }
    if (chip::ReadClears(*reg)) {
      reading.leftAlone.push_back(*reg);
      continue;
    }
    const link::FailureWatch watch;
    const std::int16_t value = link::ReadRegister(link::Bus.DeviceAddress, *reg);
    if (watch.Failed()) {
      reading.failed.push_back(*reg);
    } else {
      reading.image.Put(*reg, static_cast<std::uint8_t>(value));
    }
  }
  return reading;
}

std::string ReadingWords(const ImageReading& reading) {
  const auto read = std::ranges::count_if(reading.image.bytes, [](const HeldByte& held) { return held.known != 0; });
  std::string words = base::Counted(read, "registers") + " read.";
  if (!reading.failed.empty()) {
    words += ' ' + Counted(reading.failed.size(), "transfers") + " failed: " + RegisterWords(reading.failed.front());
    words += reading.failed.size() > 1 ? " and others." : ".";
  }
  if (!reading.leftAlone.empty()) {
    words += ' ' + Counted(reading.leftAlone.size(), "registers") + " left out: a read clears them.";
  }
  if (reading.WasStopped()) words += " Stopped: " + Counted(reading.notReached.size(), "registers") + " not read.";
  return words;
}

}  // namespace zth::tasks
