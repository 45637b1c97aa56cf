#include "windows/limits/AlertLog.h"

#include <algorithm>

namespace zth::windows {
namespace {

QString TextOf(const AlertEvent& event, int column, const char* timeFormat = "HH:mm:ss.zzz") {
  switch (column) {
    case AlertLog::kTime:
      return event.time.toString(timeFormat);
    case AlertLog::kChip:
      return event.chip;
    case AlertLog::kChannel:
      return event.channel;
    case AlertLog::kValue:
      return event.value;
    case AlertLog::kLimit:
      return event.limit;
    default:
      return event.raised ? "raised" : "cleared";
  }
}

QString CsvField(QString text) {
  const bool plain = std::ranges::none_of(text, [](QChar c) { return c == ',' || c == '"' || c == '\n' || c == '\r'; });
  return plain ? text : '"' + text.replace('"', "\"\"") + '"';
}

constexpr const char* kHeadings[] = {"Time", "Chip", "Channel", "Value", "Limit", "Event"};

}  // namespace

void AlertLog::Add(const AlertEvent& event) {
  if (std::ssize(events_) == kKept) {
    beginRemoveRows({}, 0, 0);
    events_.pop_front();
    endRemoveRows();
  }
  const int row = rowCount();
  beginInsertRows({}, row, row);
  events_.push_back(event);
  endInsertRows();
}

void AlertLog::Clear() {
  beginResetModel();
  events_.clear();
  endResetModel();
}

bool AlertLog::HasSeveralChips() const {
  return std::ranges::any_of(events_, [this](const AlertEvent& event) { return event.chip != events_.front().chip; });
}

QString AlertLog::Newest() const {
  if (events_.empty()) return {};
  const AlertEvent& newest = events_.back();
  return QStringList{TextOf(newest, kTime), newest.channel.simplified(), TextOf(newest, kEvent)}.join(' ');
}

QString AlertLog::Lines(const QList<int>& rows) const {
  QStringList lines;
  for (const int row : rows) {
    QStringList fields;
    for (int column = 0; column < kColumns; ++column) {
      fields << TextOf(events_.at(static_cast<std::size_t>(row)), column);
    }
    lines << fields.join('\t');
  }
  return lines.join('\n');
}

QString AlertLog::Csv() const {
  QString csv;
  for (int column = 0; column < kColumns; ++column) csv += (column == 0 ? "" : ",") + CsvField(kHeadings[column]);
  csv += '\n';
  for (const AlertEvent& event : events_) {
    for (int column = 0; column < kColumns; ++column) {
      csv += (column == 0 ? "" : ",") + CsvField(TextOf(event, column, "yyyy-MM-dd HH:mm:ss.zzz"));
    }
    csv += '\n';
  }
  return csv;
}

int AlertLog::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(events_.size());
}

int AlertLog::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kColumns;
}

QVariant AlertLog::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const AlertEvent& event = events_.at(static_cast<std::size_t>(index.row()));
  if (role == Qt::DisplayRole) return TextOf(event, index.column());
  if (role == Qt::ToolTipRole && index.column() == kTime) return event.time.toString("yyyy-MM-dd HH:mm:ss.zzz");
  return {};
}

QVariant AlertLog::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  return kHeadings[section];
}

}  // namespace zth::windows
