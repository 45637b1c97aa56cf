#include "platform/DllHeader.h"

#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

#include <QSet>
#include <QtEndian>

namespace zth::platform {
namespace {

// Offsets in the headers of an executable file, in bytes.
constexpr std::uint32_t kDosToPe = 0x3C;
constexpr std::uint32_t kCoff = 4;  // behind the signature
constexpr std::uint32_t kCoffSize = 20;
constexpr std::uint32_t kSectionCount = 2;
constexpr std::uint32_t kOptionalSize = 16;
constexpr std::uint16_t kPlus = 0x20B;  // the optional header's magic number in 64-bit files
constexpr std::uint32_t kDirectories = 96;
constexpr std::uint32_t kDirectoriesPlus = 112;
constexpr std::uint32_t kDirectorySize = 8;
constexpr std::uint32_t kSectionSize = 40;
constexpr std::uint32_t kImportSize = 20;
constexpr std::uint32_t kImportName = 12;

// No library needs more; a damaged file might seem to.
constexpr qsizetype kMostNeeds = 1000;
constexpr qsizetype kLongestName = 260;

/// A file's numbers; those outside it are 0.
class Content {
 public:
  explicit Content(const QByteArray& bytes) : bytes_(bytes) {}

  std::uint16_t Word(std::uint64_t at) const { return Number<std::uint16_t>(at); }
  std::uint32_t Long(std::uint64_t at) const { return Number<std::uint32_t>(at); }

  QString Text(std::uint64_t at) const {
    if (at >= Size()) return {};
    const QByteArray rest = bytes_.mid(static_cast<qsizetype>(at), kLongestName);
    return QString::fromLatin1(rest.constData(), static_cast<qsizetype>(qstrnlen(rest.constData(), rest.size())));
  }

 private:
  std::uint64_t Size() const { return static_cast<std::uint64_t>(bytes_.size()); }

  template <typename T>
  T Number(std::uint64_t at) const {
    if (at + sizeof(T) > Size()) return 0;
    return qFromLittleEndian<T>(bytes_.constData() + at);
  }

  const QByteArray& bytes_;
};

DllMachine MachineOf(std::uint16_t number) {
  switch (number) {
    case 0x14C:
      return DllMachine::X86;
    case 0x8664:
      return DllMachine::X64;
    case 0xAA64:
      return DllMachine::Arm64;
    default:
      return DllMachine::Other;
  }
}

/// Where the sections say that an address of the loaded library is in the file; 0 if nowhere.
std::uint64_t Place(const Content& content, std::uint64_t coff, std::uint32_t address) {
  const std::uint64_t sections = coff + kCoffSize + content.Word(coff + kOptionalSize);
  for (std::uint32_t i = 0; i < content.Word(coff + kSectionCount); ++i) {
    const std::uint64_t section = sections + std::uint64_t{i} * kSectionSize;
    const std::uint32_t begin = content.Long(section + 12);
    const std::uint32_t size = content.Long(section + 16);
    if (address >= begin && address - begin < size) {
      return std::uint64_t{content.Long(section + 20)} + (address - begin);
    }
  }
  return 0;
}

QStringList NeedsOf(const Content& content, std::uint64_t coff) {
  const std::uint64_t optional = coff + kCoffSize;
  const std::uint64_t directories = optional + (content.Word(optional) == kPlus ? kDirectoriesPlus : kDirectories);
  QStringList needs;
  std::uint64_t row = Place(content, coff, content.Long(directories + kDirectorySize));
  for (; row != 0 && needs.size() < kMostNeeds; row += kImportSize) {
    const std::uint32_t address = content.Long(row + kImportName);
    const QString name = address == 0 ? QString() : content.Text(Place(content, coff, address));
    if (name.isEmpty()) break;
    needs << name;
  }
  return needs;
}

QString KindOf(DllMachine machine) {
  switch (machine) {
    case DllMachine::X86:
      return "32-bit";
    case DllMachine::X64:
      return "64-bit";
    case DllMachine::Arm64:
      return "64-bit ARM";
    case DllMachine::Other:
      break;
  }
  return "different";
}

/// The system's sets of entries have no files of these names.
bool IsSet(const QString& name) {
  return name.startsWith("api-ms-", Qt::CaseInsensitive) || name.startsWith("ext-ms-", Qt::CaseInsensitive);
}

}  // namespace

std::optional<DllHeader> ReadDllHeader(const QByteArray& content) {
  const Content file(content);
  const std::uint64_t pe = file.Long(kDosToPe);
  if (!content.startsWith("MZ") || file.Long(pe) != 0x4550) return std::nullopt;
  return DllHeader{MachineOf(file.Word(pe + kCoff)), NeedsOf(file, pe + kCoff)};
}

QString DllTrouble(const QString& file, DllMachine own, const DllSearch& search) {
  QStringList troubles;
  QSet<QString> known;
  std::vector<std::pair<QString, QString>> waiting{{file, {}}};  // each with the one that needs it
  for (std::size_t i = 0; i < waiting.size(); ++i) {
    const auto [path, user] = waiting[i];
    const QString because = user.isEmpty() ? QString() : user + " needs it. ";
    const auto header = search.read(path);
    if (!header) {
      troubles << path + " is not a library for Windows. " + because;
      continue;
    }
    if (header->machine != own) {
      troubles << path + " is a " + KindOf(header->machine) + " library, and this program is a " + KindOf(own) +
                      " one, which can load its own kind only. " + because;
      continue;
    }
    for (const QString& name : header->needs) {
      if (IsSet(name) || known.contains(name.toLower())) continue;
      known << name.toLower();
      const QString found = search.find(name);
      if (found.isEmpty()) {
        troubles << path + " needs " + name + ", which is in none of the folders searched. ";
      } else if (!search.isSystems(found)) {
        waiting.emplace_back(found, path);
      }
    }
  }
  return troubles.join("").trimmed();
}

}  // namespace zth::platform
