#include "windows/regmap/RegisterModel.h"

#include <QFont>

#include "chip/ChipState.h"
#include "chip/ReadEffects.h"
#include "chip/RegMapStuff.h"
#include "windows/PendingMarks.h"
#include "windows/regmap/RegisterTexts.h"
#include "windows/regmap/RegisterTree.h"

namespace zth::windows {
namespace {

constexpr std::array kHeads{"Address", "Name", "Value", "Default", "Change", "Last read", "Fields"};
static_assert(kHeads.size() == RegisterModel::kColumns);

const chip::RegisterEntry& EntryOf(int row) {
  return chip::Model.RegisterTable.at(static_cast<std::size_t>(row));
}

/// All texts have the same width, so that a column of them is easy to compare.
QString ByteText(int value) {
  return QString("%1h").arg(value, 2, 16, QChar('0')).toUpper().replace('H', 'h');
}

}  // namespace

void RegisterModel::Note(std::int32_t address, int value, const QDateTime& at) {
  std::optional<Reading>& reading = readings_.at(address & 0xFF);
  const bool changed = reading && reading->value != value;
  reading = Reading{value, changed ? std::optional(reading->value) : std::nullopt, at};
}

void RegisterModel::ShowNoted() {
  emit dataChanged(index(0, 0), index(rowCount() - 1, kColumns - 1));
}

void RegisterModel::Forget() {
  readings_ = {};
  ShowNoted();
}

void RegisterModel::SetPalette(const QPalette& palette) {
  palette_ = palette;
  emit dataChanged(index(0, 0), index(rowCount() - 1, kColumns - 1), {Qt::ForegroundRole});
}

int RegisterModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(chip::Model.RegisterTable.size());
}

int RegisterModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kColumns;
}

QString RegisterModel::Text(int row, int column) const {
  const chip::RegisterEntry& entry = EntryOf(row);
  const std::optional<Reading>& reading = At(entry.Address);
  switch (column) {
    case kAddress:
      return ByteText(entry.Address);
    case kName:
      return QString::fromStdString(entry.Name);
    case kValue:
      if (reading) return ByteText(reading->value);
      return chip::ReadClears(entry.Address) ? "reading clears" : "";
    case kDefault:
      return ByteText(entry.Default);
    case kChange:
      return reading && reading->before ? "was " + ByteText(*reading->before) : "";
    case kReadAt:
      return reading ? reading->at.toString("HH:mm:ss") : "";
    default:
      return reading ? FieldsText(entry, reading->value) : "";
  }
}

QVariant RegisterModel::SortKey(int row, int column) const {
  const chip::RegisterEntry& entry = EntryOf(row);
  const std::optional<Reading>& reading = At(entry.Address);
  switch (column) {
    case kAddress:
      return entry.Address;
    case kValue:
      return reading ? reading->value : -1;
    case kDefault:
      return entry.Default;
    case kReadAt:
      return reading ? reading->at : QDateTime();
    default:
      return Text(row, column);
  }
}

QVariant RegisterModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const chip::RegisterEntry& entry = EntryOf(index.row());
  const std::optional<Reading>& reading = At(entry.Address);
  const bool changed = reading && reading->before;
  const bool clears = chip::ReadClears(entry.Address);
  switch (role) {
    case Qt::DisplayRole:
      return Text(index.row(), index.column());
    case kSortRole:
      return SortKey(index.row(), index.column());
    case Qt::FontRole:
      if (changed || (!reading && clears && index.column() == kValue)) {
        QFont font;
        font.setBold(changed);
        font.setItalic(!changed);
        font.setResolveMask(QFont::WeightResolved | QFont::StyleResolved);
        return font;
      }
      return {};
    case Qt::ForegroundRole:
      return changed ? QVariant(MarkColour(palette_, false)) : QVariant();
    case Qt::ToolTipRole:
      return clears ? QString("A read clears what is over in this register: it is read when it alone is selected")
                    : QString();
    default:
      return {};
  }
}

QVariant RegisterModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation == Qt::Horizontal && role == Qt::DisplayRole) return kHeads.at(static_cast<std::size_t>(section));
  return QAbstractTableModel::headerData(section, orientation, role);
}

RegisterFilter::RegisterFilter(QObject* parent) : QSortFilterProxyModel(parent) {
  setSortRole(RegisterModel::kSortRole);
  setSortCaseSensitivity(Qt::CaseInsensitive);
  setSortLocaleAware(false);
  // A read does not move rows that the user has sorted; only the next click on a header sorts again.
  setDynamicSortFilter(false);
}

void RegisterFilter::Show(const QString& text, const QString& group, bool outside) {
  text_ = text.trimmed();
  group_ = group;
  outside_ = outside;
  invalidateFilter();
}

bool RegisterFilter::filterAcceptsRow(int row, const QModelIndex&) const {
  const chip::RegisterEntry& entry = EntryOf(row);
  if (!FitsSearch(entry, text_)) return false;
  if (group_.isEmpty() && !outside_) return true;
  return GroupOf(entry.Name) == group_;
}

}  // namespace zth::windows
