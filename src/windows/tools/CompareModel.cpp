#include "windows/tools/CompareModel.h"

#include <bit>
#include <utility>

#include <QFont>

#include "windows/PendingMarks.h"

namespace zth::windows {
namespace {

constexpr char kSign[] = "\u2260 ";  // "differs from"

QString HexWithSuffix(unsigned byte) {
  return QString("%1h").arg(byte, 2, 16, QChar('0')).toUpper().replace('H', 'h');
}

/// "7:5", "3", and of bits that are not side by side the highest and the lowest one.
QString BitsText(std::uint8_t mask) {
  if (mask == 0) return {};
  const int high = std::bit_width(mask) - 1;
  const int low = std::countr_zero(mask);
  return high == low ? QString("bit %1").arg(high) : QString("bits %1:%2").arg(high).arg(low);
}

}  // namespace

void CompareModel::Show(std::vector<tasks::ComparedRow> rows, const QStringList& titles) {
  beginResetModel();
  rows_ = std::move(rows);
  titles_ = titles;
  Rebuild();
  endResetModel();
}

void CompareModel::SetFilter(const tasks::ComparisonFilter& filter, bool allFields) {
  beginResetModel();
  filter_ = filter;
  allFields_ = allFields;
  Rebuild();
  endResetModel();
}

void CompareModel::Rebuild() {
  lines_.clear();
  for (std::size_t row = 0; row < rows_.size(); ++row) {
    if (!tasks::Shows(filter_, rows_[row])) continue;
    lines_.push_back({row, {}});
    if (!allFields_ && !rows_[row].Differs()) continue;
    for (tasks::ComparedField& field : tasks::FieldsOf(rows_[row])) {
      if (allFields_ || field.differs) lines_.push_back({row, std::move(field)});
    }
  }
}

void CompareModel::SetPalette(const QPalette& palette) {
  palette_ = palette;
  if (rowCount() != 0) emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1), {Qt::ForegroundRole});
}

tasks::Wanted CompareModel::WantedOf(int row) const {
  const Line& line = lines_[static_cast<std::size_t>(row)];
  return {rows_[line.row].reg, line.field ? line.field->mask : std::uint8_t{0xFF}};
}

int CompareModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(lines_.size());
}

int CompareModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : DifferenceColumn() + 1;
}

bool CompareModel::Differs(const Line& line, std::size_t value) const {
  const tasks::ComparedRow& row = rows_[line.row];
  const unsigned mask = line.field ? line.field->mask : 0xFFU;
  return (row.differing[value] & mask) != 0;
}

QString CompareModel::ValueText(const Line& line, std::size_t value) const {
  if (!line.field) return QString::fromStdString(tasks::HeldWords(rows_[line.row].held[value]));
  const auto& held = line.field->values[value];
  return held ? QString::number(*held) : "-";
}

QString CompareModel::DifferenceText(const tasks::ComparedRow& row) const {
  QStringList texts;
  for (std::size_t value = 0; value < row.differing.size(); ++value) {
    const QString words = QString::fromStdString(tasks::DifferenceWords(row, value));
    if (words.isEmpty()) continue;
    const QString title = titles_[static_cast<qsizetype>(value)];
    texts << (row.differing.size() > 2 ? title.section(' ', 0, 0) + ' ' + words : words);
  }
  return texts.join("; ");
}

QString CompareModel::Text(const Line& line, int column) const {
  const tasks::ComparedRow& row = rows_[line.row];
  if (column == kName)
    return line.field ? "    " + QString::fromStdString(line.field->name) : QString::fromStdString(row.name);
  if (column == kPlace) return line.field ? BitsText(line.field->mask) : HexWithSuffix(row.reg);
  if (column == DifferenceColumn()) return line.field ? QString() : DifferenceText(row);
  const auto value = static_cast<std::size_t>(column - kFirstValue);
  return (Differs(line, value) ? kSign : "") + ValueText(line, value);
}

QVariant CompareModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const Line& line = lines_[static_cast<std::size_t>(index.row())];
  const int column = index.column();
  const bool isValue = column >= kFirstValue && column < DifferenceColumn();
  const bool differs = isValue && Differs(line, static_cast<std::size_t>(column - kFirstValue));
  switch (role) {
    case Qt::DisplayRole:
      return Text(line, column);
    case Qt::AccessibleTextRole:
      if (!differs) return Text(line, column).trimmed();
      return ValueText(line, static_cast<std::size_t>(column - kFirstValue)) + ", differs from " +
             ValueText(line, rows_[line.row].reference);
    case Qt::ToolTipRole:
      return column == DifferenceColumn() ? Text(line, column) : QString();
    case Qt::ForegroundRole:
      return differs ? QVariant(MarkColour(palette_, false)) : QVariant();
    case Qt::FontRole:
      if (differs) {
        QFont font;
        font.setBold(true);
        font.setResolveMask(QFont::WeightResolved);
        return font;
      }
      return {};
    default:
      return {};
  }
}

QVariant CompareModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
    return QAbstractTableModel::headerData(section, orientation, role);
  }
  if (section == kName) return "Register";
  if (section == kPlace) return "Address";
  if (section == DifferenceColumn()) return "Difference";
  return titles_.value(section - kFirstValue);
}

}  // namespace zth::windows
