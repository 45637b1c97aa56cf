#include "linux-smbus/Sysfs.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

#include "linux-smbus/Text.h"

namespace zth::smbus {

namespace fs = std::filesystem;

namespace {

// PCI class codes as sysfs writes them, "0xccssii" for class, subclass, interface.
constexpr std::string_view kPciDisplay = "0x03";
constexpr std::string_view kPciSmbus = "0x0c05";

// Names that the kernel's display drivers give their buses. The PCI class identifies most of them; these are for
// displays on other buses, and for drivers whose adapter is not below its card in the device tree.
constexpr std::array<std::string_view, 21> kDisplayWords{
    "gmbus",   "ddc",  "dpddc", "ddi",     "dpmst",  "aux",    "hdmi",   "dvi", "lvds", "vga",   "drm",
    "display", "i915", "nvkm",  "nouveau", "nvidia", "radeon", "amdgpu", "mga", "ast",  "cirrus"};

std::string FirstLine(const fs::path& file) {
  std::ifstream stream(file);
  std::string line;
  std::getline(stream, line);
  return Trimmed(line);
}

/// The N of a folder named i2c-N; beside them are the buses' chips, with names such as 0-002c.
std::optional<int> AdapterNumber(const std::string& folder) {
  constexpr std::string_view kPrefix = "i2c-";
  if (!folder.starts_with(kPrefix)) return std::nullopt;
  return WholeNumber(std::string_view(folder).substr(kPrefix.size()));
}

/// A word matches only if there is no letter directly before or after it: "DDC-A" is a display, "addcard" is not.
bool HasWord(const std::string& lower, std::string_view word) {
  const auto isLetter = [](char c) { return c >= 'a' && c <= 'z'; };
  for (std::size_t at = lower.find(word); at != std::string::npos; at = lower.find(word, at + 1)) {
    const std::size_t end = at + word.size();
    if ((at == 0 || !isLetter(lower[at - 1])) && (end == lower.size() || !isLetter(lower[end]))) return true;
  }
  return false;
}

bool NameIsOfDisplay(const std::string& name) {
  const std::string lower = LowerCase(name);
  return std::any_of(kDisplayWords.begin(), kDisplayWords.end(),
                     [&lower](std::string_view word) { return HasWord(lower, word); });
}

/// True if a device above the adapter is a display controller or one of its connectors.
bool HangsOnDisplay(const fs::path& device) {
  for (fs::path above = device; above.has_relative_path(); above = above.parent_path()) {
    if (above.filename() == "drm" || above.filename() == "graphics") return true;
    if (FirstLine(above / "class").starts_with(kPciDisplay)) return true;
  }
  return false;
}

}  // namespace

Sysfs::Sysfs(const fs::path& root) : devices_(root / "bus/i2c/devices") {}

std::vector<Adapter> Sysfs::Adapters() const {
  std::vector<Adapter> adapters;
  std::error_code error;
  for (fs::directory_iterator entry(devices_, error), end; !error && entry != end; entry.increment(error)) {
    const std::optional<int> number = AdapterNumber(entry->path().filename().string());
    if (!number) continue;
    Adapter adapter;
    adapter.number = *number;
    adapter.name = FirstLine(entry->path() / "name");
    std::error_code unresolved;
    const fs::path device = fs::canonical(entry->path(), unresolved);
    if (!unresolved) {
      // Only the controller's own bus: the buses behind its multiplexer lead to memory modules.
      adapter.isHost = FirstLine(device.parent_path() / "class").starts_with(kPciSmbus);
      adapter.isDisplay = HangsOnDisplay(device);
    }
    if (!adapter.isHost && NameIsOfDisplay(adapter.name)) adapter.isDisplay = true;
    adapters.push_back(std::move(adapter));
  }
  std::sort(adapters.begin(), adapters.end(), [](const Adapter& a, const Adapter& b) { return a.number < b.number; });
  return adapters;
}

bool Sysfs::IsThere(int adapter) const {
  std::error_code error;
  return fs::exists(devices_ / ("i2c-" + std::to_string(adapter)), error);
}

std::string Sysfs::DriverAt(int adapter, std::uint8_t address) const {
  std::error_code error;
  const fs::path driver = fs::read_symlink(devices_ / ChipName(adapter, address) / "driver", error);
  return error ? std::string() : driver.filename().string();
}

}  // namespace zth::smbus
