#include "windows/tools/CompareColumns.h"

#include <algorithm>
#include <utility>

#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTimer>

#include "tasks/Exports.h"
#include "tasks/SavedConfig.h"
#include "tasks/Snapshots.h"
#include "tasks/TasksState.h"
#include "widgets/Named.h"
#include "windows/Handlers.h"
#include "windows/data/RecentFiles.h"

namespace zth::windows {
namespace {

// What a column shows, as a key: its kind, and what it is.
constexpr char kNone[] = "";
constexpr char kDefaults[] = "defaults";
constexpr char kChip[] = "chip:";
constexpr char kFile[] = "file:";
constexpr char kSnapshot[] = "snapshot:";

constexpr char kFilter[] = "Configurations (*.sav;*.c;*.sh;*.csv)|*.sav;*.c;*.sh;*.csv|All Files (*)|*";

constexpr int kChooserLetters = 16;

QString After(const QString& key, const char* kind) {
  return key.startsWith(kind) ? key.mid(static_cast<qsizetype>(qstrlen(kind))) : QString();
}

QString InUse() {
  return kChip + link::TextOf(link::ChipInUse());
}

}  // namespace

QString SnapshotFolder(const platform::Process& process) {
  const QString folder = process.StateFolder();
  return folder.isEmpty() ? QString() : folder + "/snapshots";
}

CompareColumns::CompareColumns(const Context& context, QWidget* parent)
    : QWidget(parent), context_(context), keys_{kDefaults, InUse(), kNone, kNone} {
  images_[kDefaults] = tasks::DefaultImage();
  auto* grid = new QGridLayout(this);
  grid->setContentsMargins({});
  for (std::size_t place = 0; place < kMost; ++place) MakePlace(place);
  grid->setColumnStretch(1, 1);
  grid->setColumnStretch(4, 1);
  ShowSources();
  following_ = tasks::Work.traffic->Listen([this](const tasks::TrafficRecord& record, const std::string&) {
    if (!record.isNote && record.succeeded) Follow(record);
  });
}

void CompareColumns::MakePlace(std::size_t place) {
  auto* grid = static_cast<QGridLayout*>(layout());
  const auto number = static_cast<int>(place) + 1;
  auto* list = widgets::Named<QComboBox>(QString("cmbColumn(%1)").arg(place), this);
  list->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  list->setMinimumContentsLength(kChooserLetters);
  list->setToolTip("What this column shows. A chip is read when you press Read");
  auto* label = widgets::Named<QLabel>(QString("lblColumn(%1)").arg(place), QString("Column &%1").arg(number), this);
  label->setBuddy(list);
  auto* open = widgets::Named<QPushButton>(QString("cmdOpen(%1)").arg(place), "...", this);
  open->setToolTip(QString("Shows a file in column %1. Files can be dropped here as well").arg(number));
  open->setAccessibleName(QString("Open a file in column %1").arg(number));
  const int row = static_cast<int>(place) / 2;
  const int column = static_cast<int>(place) % 2 * 3;
  grid->addWidget(label, row, column);
  grid->addWidget(list, row, column + 1);
  grid->addWidget(open, row, column + 2);
  OnSelect(*list, [this, place] { cmbColumn_Select(place); });
  OnClick(*open, [this, place] { cmdOpen_Click(place); });
  cmbColumn_[place] = list;
  cmdOpen_[place] = open;
}

std::vector<CompareColumns::Source> CompareColumns::Sources() const {
  std::vector<Source> sources{{kDefaults, "Defaults", "What the chip holds after a reset"}};
  const QStringList devices = context_.desktop.Devices();
  for (const QString& device : devices) sources.push_back({kChip + device, device, "This chip, as Read has found it"});
  const tasks::Snapshots snapshots(context_.services.files, SnapshotFolder(context_.services.process));
  for (const tasks::Snapshot& snapshot : snapshots.List()) {
    if (!snapshot.trouble.isEmpty()) continue;
    sources.push_back({kSnapshot + snapshot.name, "Snapshot: " + snapshot.name, snapshot.name});
  }
  QStringList files = RecentFiles(context_.services.settings);
  for (const QString& key : keys_) {
    const QString path = After(key, kFile);
    if (!path.isEmpty() && !files.contains(path)) files << path;
  }
  for (const QString& path : std::as_const(files)) {
    sources.push_back({kFile + path, "File: " + ShortName(path, files), QDir::toNativeSeparators(path)});
  }
  return sources;
}

void CompareColumns::ShowSources() {
  const std::vector<Source> sources = Sources();
  for (std::size_t place = 0; place < kMost; ++place) {
    const bool isThere = std::ranges::find(sources, keys_[place], &Source::key) != sources.end();
    if (!isThere && !keys_[place].startsWith(kChip)) keys_[place] = place < 2 ? kDefaults : kNone;
    FillList(place, sources);
  }
}

void CompareColumns::FillList(std::size_t place, const std::vector<Source>& sources) {
  QComboBox& list = *cmbColumn_[place];
  const QSignalBlocker quiet(list);
  list.clear();
  if (place >= 2) list.addItem("None", QString(kNone));
  for (const Source& source : sources) {
    list.addItem(source.text, source.key);
    list.setItemData(list.count() - 1, source.tip, Qt::ToolTipRole);
  }
  list.setCurrentIndex(list.findData(keys_[place]));
}

std::vector<CompareColumns::Column> CompareColumns::Columns() const {
  static const tasks::RegisterImage kUnread;
  std::vector<Column> columns;
  for (std::size_t place = 0; place < kMost; ++place) {
    const QString& key = keys_[place];
    if (key.isEmpty()) continue;
    const auto image = images_.find(key);
    const bool isRead = image != images_.end();
    const auto written = written_.find(key);
    const bool isWritten = written != written_.end() && !written->second.empty();
    columns.push_back({place,
                       NameOf(key) + (!isRead     ? ", not read"
                                      : isWritten ? ", written since"
                                                  : ""),
                       isRead ? &image->second : &kUnread});
  }
  return columns;
}

QString CompareColumns::NameOf(const QString& key) const {
  if (key == kDefaults) return "Defaults";
  for (const char* kind : {kChip, kSnapshot}) {
    if (key.startsWith(kind)) return After(key, kind);
  }
  return QFileInfo(After(key, kFile)).fileName();
}

QString CompareColumns::Read() {
  QStringList read;
  QStringList told;
  for (const QString& key : keys_) {
    const QString device = After(key, kChip);
    if (device.isEmpty() || read.contains(key)) continue;
    read << key;
    const link::Meanwhile other(link::ChipOf(device));
    const tasks::ImageReading reading = tasks::ReadImage(tasks::ComparableRegisters());
    // What a failed transfer did not bring keeps no old value: it would look like the chip's.
    images_[key] = reading.image;
    written_.erase(key);
    told << device + ": " + QString::fromStdString(tasks::ReadingWords(reading));
  }
  emit Changed();
  return read.isEmpty() ? "No column shows a chip: choose one, then read." : told.join(' ');
}

tasks::RegisterImage CompareColumns::ImageOf(const link::ChipId& chip) const {
  const auto image = images_.find(kChip + link::TextOf(chip));
  return image != images_.end() ? image->second : tasks::RegisterImage();
}

// Most windows do not read back what they write, and nothing is read here that nobody has asked for: the column's name
// says that it is older than a write.
void CompareColumns::Follow(const tasks::TrafficRecord& record) {
  const bool isWrite = record.form == link::Form::Write;
  if (!isWrite && record.form != link::Form::Read) return;
  const QString key = kChip + link::TextOf({record.mode, record.address});
  const auto image = images_.find(key);
  if (image == images_.end() || std::ranges::count(tasks::ComparableRegisters(), record.reg) == 0) return;
  const tasks::HeldByte before = image->second.bytes.at(record.reg);
  const std::size_t unread = written_[key].size();
  if (isWrite) {
    written_[key].insert(record.reg);
  } else {
    image->second.Put(record.reg, record.bytes[0]);
    written_[key].erase(record.reg);
  }
  if (image->second.bytes.at(record.reg) == before && written_[key].size() == unread) return;
  if (std::exchange(isTelling_, true)) return;
  QTimer::singleShot(0, this, [this] {
    isTelling_ = false;
    emit Changed();
  });
}

void CompareColumns::cmbColumn_Select(std::size_t place) {
  if (!Take(place, cmbColumn_[place]->currentData().toString())) ShowSources();
}

void CompareColumns::cmdOpen_Click(std::size_t place) {
  platform::FileQuestion question;
  question.name = "dlgOpenConfiguration";
  question.caption = "Open Configuration";
  question.folder = context_.services.process.Folder();
  question.filter = kFilter;
  const QPointer<CompareColumns> self(this);
  const QString path = context_.services.fileDialogs.Ask(question, this);
  if (!path.isEmpty() && self != nullptr) Take(place, kFile + QFileInfo(path).absoluteFilePath());
}

void CompareColumns::Open(const QStringList& paths, const QPoint& at) {
  std::size_t place = kMost;
  for (std::size_t i = 0; i < kMost; ++i) {
    const QRect chooser = cmbColumn_[i]->geometry().united(cmdOpen_[i]->geometry());
    if (chooser.contains(mapFrom(window(), at))) place = i;
  }
  for (const QString& path : paths) {
    if (place == kMost) {
      const auto* free = std::ranges::find_if(keys_, &QString::isEmpty);
      place = free == keys_.end() ? 1 : static_cast<std::size_t>(free - keys_.begin());
    }
    Take(place, kFile + QFileInfo(path).absoluteFilePath());
    place = kMost;
  }
}

bool CompareColumns::Take(std::size_t place, const QString& key) {
  const QString path = After(key, kFile);
  const QString snapshot = After(key, kSnapshot);
  if (!path.isEmpty() && !LoadFile(path)) return false;
  if (!snapshot.isEmpty() && !LoadSnapshot(snapshot)) return false;
  keys_[place] = key;
  ShowSources();
  emit Changed();
  return true;
}

bool CompareColumns::LoadFile(const QString& path) {
  const QString name = QFileInfo(path).fileName();
  const auto bytes = context_.services.files.Read(path, tasks::SavedReader::kMostBytes);
  if (!bytes) {
    ForgetRecentFile(context_.services.settings, path);
    emit Told("Not opened: " + name + " could not be read");
    return false;
  }
  const tasks::ImageOrError read =
      tasks::ImageOfText({bytes->constData(), static_cast<std::size_t>(bytes->size())}, name.toStdString());
  if (!read) {
    emit Told("Not opened: " + name + ", " + QString::fromStdString(read.error));
    return false;
  }
  images_[kFile + path] = *read.image;
  NoteRecentFile(context_.services.settings, path);
  emit Told({});
  return true;
}

bool CompareColumns::LoadSnapshot(const QString& name) {
  const tasks::Snapshots snapshots(context_.services.files, SnapshotFolder(context_.services.process));
  for (const tasks::Snapshot& snapshot : snapshots.List()) {
    if (snapshot.name != name) continue;
    images_[kSnapshot + name] = snapshot.image;
    emit Told(snapshot.trouble.isEmpty() ? QString() : "Not shown: " + name + ", " + snapshot.trouble);
    return snapshot.trouble.isEmpty();
  }
  emit Told("Not shown: the snapshot " + name + " is gone");
  return false;
}

}  // namespace zth::windows
