#include "shell/ChangesFile.h"

#include <QStringList>

#include "base/Counted.h"
#include "base/Product.h"
#include "link/BoardName.h"
#include "link/ChipId.h"
#include "platform/Guard.h"
#include "tasks/JournalText.h"
#include "tasks/TasksState.h"
#include "windows/tools/frmChanges.h"

namespace zth::shell {
namespace {

/// Between two writes of the file, so that the drag of a slider does not wait for the disk.
constexpr int kPauseMs = 250;
constexpr std::int64_t kMostBytes = 16LL * 1024 * 1024;

tasks::Journal& TheJournal() {
  return *tasks::Work.journal;
}

}  // namespace

ChangesFile::ChangesFile(const windows::Context& context) : context_(context) {
  const QString folder = context.services.process.StateFolder();
  if (folder.isEmpty()) return;
  path_ = folder + "/changes.txt";
  claim_ = context.services.files.Claim(path_);
  if (claim_ == nullptr) path_.clear();
  tmrSave_.setSingleShot(true);
  context.services.clock.Adopt(tmrSave_);
  QObject::connect(&tmrSave_, &QTimer::timeout, &tmrSave_, platform::Guarded([this] { Save(); }));
  listening_ = tasks::Work.traffic->Listen([this](const tasks::TrafficRecord&, const std::string&) { Look(); });
}

void ChangesFile::Look() {
  // After the handler that has made the change, and with all of its changes.
  if (!path_.isEmpty() && TheJournal().Revision() != saved_ && !tmrSave_.isActive()) tmrSave_.start(kPauseMs);
}

void ChangesFile::Save() {
  saved_ = TheJournal().Revision();
  if (TheJournal().Actions().empty()) return context_.services.files.Remove(path_);
  const QDateTime now = context_.services.clock.WallTime().toUTC();
  const tasks::TrafficHead head{now.toString("yyyy-MM-ddTHH:mm:ss.zzzZ").toStdString(), link::BoardName().toStdString(),
                                base::kVersionText, true};
  const std::string text = tasks::JournalText(TheJournal().Actions(), head);
  context_.services.files.Replace(path_, QByteArray::fromStdString(text));
}

void ChangesFile::Offer() {
  if (path_.isEmpty()) return;
  const auto bytes = context_.services.files.Read(path_, kMostBytes);
  if (!bytes) return;
  TheJournal().Adopt(tasks::ActionsOf(bytes->toStdString()));
  saved_ = TheJournal().Revision();
  const link::ChipId chip = link::ChipInUse();
  const auto changes = TheJournal().ChangesOf({chip.mode, static_cast<std::uint8_t>(chip.address)});
  const bool isBoardSet = !TheJournal().BoardChangesOf(chip.mode).empty();
  if (changes.empty() && !isBoardSet) return;
  const QString count = QString::fromStdString(base::Counted(static_cast<std::int64_t>(changes.size()), "registers"));
  QStringList told;
  if (!changes.empty()) told << "It had changed " + count + " of " + link::TextOf(chip) + ".";
  if (isBoardSet) told << "It had set heaters or switches of the board.";
  enum { kShow, kPutBack, kForget };
  const int answer = context_.services.prompts.Choose({base::kTitle,
                                                       "The last session was not ended in order. " + told.join(' '),
                                                       {"&Show them", "&Put them back", "&Forget them"},
                                                       kShow,
                                                       platform::BoxIcon::Warning,
                                                       nullptr});
  if (answer == kForget) {
    TheJournal().ForgetAll({chip.mode, static_cast<std::uint8_t>(chip.address)});
    TheJournal().ForgetBoard(chip.mode);
    return Save();
  }
  auto* window = qobject_cast<windows::frmChanges*>(context_.desktop.OpenWindow("frmChanges"));
  if (answer == kPutBack && window != nullptr) window->PutBackAsFound();
}

void ChangesFile::End() {
  tmrSave_.stop();
  listening_.reset();
  if (!path_.isEmpty()) context_.services.files.Remove(path_);
}

}  // namespace zth::shell
