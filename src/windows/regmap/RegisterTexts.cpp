#include "windows/regmap/RegisterTexts.h"

#include <algorithm>

#include <QStringList>

#include "base/NumberText.h"
#include "chip/ChipState.h"
#include "chip/RegisterFields.h"

namespace zth::windows {
namespace {

constexpr std::int32_t kHighest = 0xFF;

bool IsByte(std::int32_t number) {
  return number >= 0 && number <= kHighest;
}

/// True for names that say more than the bit's number or "reserved".
bool TellsSomething(const QString& bitName) {
  return bitName.size() > 1 && bitName.compare("Res", Qt::CaseInsensitive) != 0;
}

}  // namespace

QString DescriptionOf(const chip::RegisterEntry& entry) {
  return QString::fromStdString(entry.Caption) + " Register";
}

bool FitsSearch(const chip::RegisterEntry& entry, const QString& text) {
  const QString wanted = text.trimmed();
  if (wanted.isEmpty() || AddressOf(wanted) == entry.Address) return true;
  if (QString::fromStdString(entry.Name).contains(wanted, Qt::CaseInsensitive)) return true;
  const QStringList bits = QString::fromStdString(entry.BitNames).split(':');
  return std::any_of(bits.begin(), bits.end(), [&wanted](const QString& bit) {
    return TellsSomething(bit) && bit.startsWith(wanted, Qt::CaseInsensitive);
  });
}

int AddressOf(QString text) {
  if (text.startsWith("0x", Qt::CaseInsensitive)) {
    text.remove(0, 2);
  } else if (text.endsWith('h', Qt::CaseInsensitive)) {
    text.chop(1);
  }
  bool ok = false;
  const int address = text.toInt(&ok, 16);
  return ok && address >= 0 ? address : -1;
}

QString FieldsText(const chip::RegisterEntry& entry, int value) {
  return QString::fromStdString(chip::FieldsText(entry.BitNames, static_cast<unsigned>(value)));
}

QString RowText(const chip::RegisterEntry& entry, int value) {
  return QStringList{QString::fromStdString(entry.Name),    HexWithSuffix(entry.Address),
                     value < 0 ? "" : HexWithSuffix(value), HexWithSuffix(entry.Default),
                     entry.ReadOnly ? "Yes" : "No",         QString::fromStdString(entry.BitNames)}
      .join('\t');
}

QString HexWithSuffix(int value) {
  return QString::fromStdString(base::HexText(value)) + 'h';
}

QString AddressHint(std::int32_t address) {
  if (IsByte(address)) return {};
  return QString("There is no register at %1: nothing is sent to the chip, and a read shows 0.")
      .arg(HexWithSuffix(address));
}

QString WriteHint(std::int32_t address, std::int32_t value, const QString& name) {
  if (!IsByte(address)) return AddressHint(address);
  const int row = chip::RowOfAddress(address);
  QString of = name;
  if (of.isEmpty()) {
    of = row < 0 ? QString("an unknown one")
                 : QString::fromStdString(chip::Model.RegisterTable.at(static_cast<std::size_t>(row)).Name);
  }
  const bool readOnly = row >= 0 && chip::Model.RegisterTable.at(static_cast<std::size_t>(row)).ReadOnly;
  return QString::asprintf("Writes %02Xh to register %02Xh, ", static_cast<unsigned>(std::clamp(value, 0, kHighest)),
                           static_cast<unsigned>(address)) +
         of + (readOnly ? ", read only" : "");
}

QString ValueHint(std::int32_t value) {
  if (IsByte(value)) return {};
  const std::int32_t sent = std::clamp(value, 0, kHighest);
  return QString("A register holds 0 to 255: a write sends %1 (%2).").arg(sent).arg(HexWithSuffix(sent));
}

}  // namespace zth::windows
