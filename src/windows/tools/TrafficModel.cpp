#include "windows/tools/TrafficModel.h"

#include <algorithm>
#include <array>
#include <utility>

#include <QFont>

#include "chip/RegisterRows.h"
#include "tasks/TrafficWords.h"
#include "windows/PendingMarks.h"

namespace zth::windows {
namespace {

constexpr std::array kHeads{"Time (s)", "Bus",   "Address", "R/W",      "Register",
                            "Name",     "Bytes", "Change",  "Asked by", "Fields"};
static_assert(kHeads.size() == TrafficModel::kColumns);

// Longer ones are shortened in the table, with the rest in the tool tip.
constexpr std::size_t kMostBytes = 8;
constexpr std::size_t kMostChanges = 2;
constexpr std::size_t kMostName = 26;
constexpr std::size_t kMostFields = 80;

std::string Shortened(std::string text, std::size_t most) {
  if (text.size() <= most) return text;
  return text.substr(0, text.find_last_of(",;", most - 10)) + " ...";
}

/// One name alone, if there are two and they are long.
std::string ShortenedName(const std::string& name) {
  if (name.size() <= kMostName) return name;
  const std::size_t end = std::min(name.find(" to "), name.find(" / "));
  return end == std::string::npos ? name : name.substr(0, end) + " ...";
}

}  // namespace

QString TrafficModel::WidestText(int column) {
  switch (column) {
    case kTime:
      return "00000.000000";
    case kBus:
      return "SMBus";
    case kAddress:
      return kHeads[kAddress];
    case kCall:
      return "R block, failed";
    case kRegister:
      return "88h-9Bh";
    case kName:
      return "PWM1 Config to PWM4 Config WW";
    case kBytes:
      return "00 00 00 00 00 00 00 00";
    case kChange:
      return QString::fromUtf8("00 \u2192 00: Bhvr 0 \u2192 0, Inv 0 \u2192 0, 0 more");
    case kAsker:
      return "frmAutoGraph cmbControl(0), pins";
    default:
      return "GIO8 = 0, GIO7 = 0, GIO6 = 0, GIO5 = 0, GIO4 = 0, DIO3 = 0, GIO2 = 0, GIO1 = 0";
  }
}

void TrafficModel::Show(const tasks::Traffic& traffic, std::function<QString(double time)> dateOf) {
  traffic_ = &traffic;
  dateOf_ = std::move(dateOf);
  held_ = false;
  sources_.clear();
  known_.clear();
  Rebuild();
}

void TrafficModel::SetFilter(const tasks::TrafficFilter& filter) {
  if (filter == filter_) return;
  filter_ = filter;
  Rebuild();
}

void TrafficModel::Rebuild() {
  beginResetModel();
  const std::uint64_t end = held_ ? seen_ : traffic_->End();
  matcher_.reset();
  if (!filter_.ShowsAll()) matcher_.emplace(*traffic_, filter_);
  rows_.clear();
  seen_ = traffic_->First();
  for (const std::uint64_t number : Find(end)) rows_.push_back(number);
  endResetModel();
}

std::vector<std::uint64_t> TrafficModel::Find(std::uint64_t end) {
  std::vector<std::uint64_t> found;
  for (seen_ = std::max(seen_, traffic_->First()); seen_ < end; ++seen_) {
    const tasks::TrafficRecord& record = traffic_->At(seen_);
    NoteSource(record);
    if (!matcher_ || matcher_->Matches(record)) found.push_back(seen_);
  }
  return found;
}

std::uint64_t TrafficModel::Waiting() const {
  return traffic_->End() - std::min(std::max(seen_, traffic_->First()), traffic_->End());
}

bool TrafficModel::HasNewsByUser() const {
  for (std::uint64_t number = std::max(seen_, traffic_->First()); !held_ && number < traffic_->End(); ++number) {
    const tasks::TrafficRecord& record = traffic_->At(number);
    if (record.isNote || !tasks::IsOfMonitor(traffic_->TextOf(record))) return true;
  }
  return false;
}

int TrafficModel::Refresh() {
  const int dropped = DropGone();
  if (held_) return dropped;
  const std::vector<std::uint64_t> found = Find(traffic_->End());
  if (found.empty()) return dropped;
  beginInsertRows({}, rowCount(), rowCount() + static_cast<int>(found.size()) - 1);
  rows_.insert(rows_.end(), found.begin(), found.end());
  endInsertRows();
  return dropped;
}

int TrafficModel::DropGone() {
  const auto kept = std::ranges::lower_bound(rows_, traffic_->First());
  const auto gone = static_cast<int>(kept - rows_.begin());
  if (gone == 0) return 0;
  beginRemoveRows({}, 0, gone - 1);
  rows_.erase(rows_.begin(), kept);
  endRemoveRows();
  return gone;
}

int TrafficModel::RowFrom(std::uint64_t number) const {
  return static_cast<int>(std::ranges::lower_bound(rows_, number) - rows_.begin());
}

void TrafficModel::NoteSource(const tasks::TrafficRecord& record) {
  if (record.isNote) return;
  if (record.text >= known_.size()) known_.resize(record.text + 1U);
  if (known_[record.text]) return;
  known_[record.text] = true;
  const std::string_view source = tasks::SourceOf(traffic_->TextOf(record));
  const QString name = QString::fromUtf8(source.data(), static_cast<qsizetype>(source.size()));
  if (!name.isEmpty() && !sources_.contains(name)) sources_ << name;
}

void TrafficModel::SetPalette(const QPalette& palette) {
  palette_ = palette;
  if (rowCount() != 0) emit dataChanged(index(0, 0), index(rowCount() - 1, kColumns - 1), {Qt::ForegroundRole});
}

int TrafficModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int TrafficModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kColumns;
}

std::string TrafficModel::Text(const tasks::TrafficRecord& record, int column) const {
  switch (column) {
    case kTime:
      return tasks::SecondsText(record.time - traffic_->Began());
    case kBus:
      return tasks::BusText(record);
    case kAddress:
      return tasks::AddressText(record);
    case kCall:
      return tasks::CallText(record);
    case kRegister:
      return tasks::RegisterText(record);
    case kName:
      return record.isNote ? traffic_->TextOf(record) : ShortenedName(tasks::NameText(record));
    case kBytes:
      return tasks::BytesText(record, record.count > kMostBytes ? kMostBytes - 1 : kMostBytes);
    case kChange:
      return tasks::ChangeText(record, kMostChanges);
    case kAsker:
      return record.isNote ? "" : traffic_->TextOf(record);
    default:
      return Shortened(tasks::FieldsText(record), kMostFields);
  }
}

QString TrafficModel::ToolTip(const tasks::TrafficRecord& record, int column) const {
  if (column == kTime) return dateOf_(record.time);
  if (column == kName && record.isNote) return QString::fromStdString(traffic_->TextOf(record));
  const std::string whole = column == kName     ? tasks::NameText(record)
                            : column == kBytes  ? tasks::BytesText(record)
                            : column == kChange ? tasks::ChangeText(record)
                            : column == kFields ? tasks::FieldsText(record)
                                                : "";
  return whole == Text(record, column) ? QString() : QString::fromStdString(whole);
}

QVariant TrafficModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const std::uint64_t number = NumberOf(index.row());
  // Its row goes at the next refresh.
  if (number < traffic_->First()) return {};
  const tasks::TrafficRecord& record = traffic_->At(number);
  switch (role) {
    case Qt::DisplayRole:
      return QString::fromStdString(Text(record, index.column()));
    case Qt::ToolTipRole:
      return ToolTip(record, index.column());
    case Qt::ForegroundRole:
      return record.isNote || !record.succeeded ? QVariant(MarkColour(palette_, !record.isNote)) : QVariant();
    case Qt::FontRole:
      if (record.isNote) {
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

QVariant TrafficModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation == Qt::Horizontal && role == Qt::DisplayRole) return kHeads.at(static_cast<std::size_t>(section));
  return QAbstractTableModel::headerData(section, orientation, role);
}

}  // namespace zth::windows
