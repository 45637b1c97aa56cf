#include "windows/regmap/RegisterTexts.h"

#include <algorithm>

#include <QStringList>

#include "base/NumberText.h"

namespace zth::windows {
namespace {

/// The whole text as an address, or -1.
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

/// The names that say more than a bit's number or that it is reserved.
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

QString RowText(const chip::RegisterEntry& entry, int value) {
  return QStringList{QString::fromStdString(entry.Name),    HexWithSuffix(entry.Address),
                     value < 0 ? "" : HexWithSuffix(value), HexWithSuffix(entry.Default),
                     entry.ReadOnly ? "Yes" : "No",         QString::fromStdString(entry.BitNames)}
      .join('\t');
}

QString HexWithSuffix(int value) {
  return QString::fromStdString(base::HexText(value)) + 'h';
}

}  // namespace zth::windows
