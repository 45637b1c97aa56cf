#include "windows/data/frmSave.h"

#include <optional>

#include <QCheckBox>
#include <QDir>
#include <QFileInfo>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMenu>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "base/NumberText.h"
#include "chip/ChipState.h"
#include "chip/RegMapStuff.h"
#include "link/Declarations.h"
#include "link/Transfers.h"
#include "link/USBStuff.h"
#include "tasks/SavedConfig.h"
#include "widgets/Named.h"
#include "widgets/PopUpMenu.h"
#include "windows/FileDrops.h"
#include "windows/Handlers.h"
#include "windows/Hold.h"
#include "windows/SharedState.h"
#include "windows/data/RecentFiles.h"

namespace zth::windows {
namespace {

using tasks::kSavedEnd;
using tasks::SavedHead;
using tasks::SavedLine;
using tasks::SavedReader;

constexpr char kFilter[] = "Text Files (*.sav)|*.sav";

/// A recall shorter than this many seconds runs without interruption, so that no window flickers.
constexpr double kTooShortToCancel = 0.2;

/// The user's short formats, but with a four-digit year and with seconds, which distinguish files of the same
/// afternoon.
QString DateText(const QDate& date) {
  QString format = QLocale().dateFormat(QLocale::ShortFormat);
  if (!format.contains("yyyy")) format.replace("yy", "yyyy");
  return QLocale().toString(date, format);
}

QString TimeText(const QTime& time) {
  QString format = QLocale().timeFormat(QLocale::ShortFormat);
  if (!format.contains('s')) format.replace("mm", "mm:ss");
  return QLocale().toString(time, format);
}

QString Registers(int count) {
  return QString("%1 %2").arg(count).arg(count == 1 ? "register" : "registers");
}

QString RegisterName(int address) {
  const int row = chip::RowOfAddress(address);
  const QString number = QString::fromStdString("0x" + base::HexText(address));
  if (row < 0) return number;
  return number + "  " + QString::fromStdString(chip::Model.RegisterTable.at(static_cast<std::size_t>(row)).Caption);
}

}  // namespace

class frmSave::CancelPossible {
 public:
  explicit CancelPossible(frmSave& window) : window_(&window) {
    // Otherwise the focus would move to the only enabled button, and a second Enter would press it.
    window.setFocus();
    window.cmdCancel_->setEnabled(true);
    window.SetCancelButton(*window.cmdCancel_);
    hold_.emplace(*window.cmdCancel_);
  }
  ~CancelPossible() {
    hold_.reset();
    if (!window_) return;
    window_->SetCancelButton(*window_->cmdClose_);
    window_->cmdRecall_->setFocus();
    window_->cmdCancel_->setEnabled(false);
  }
  CancelPossible(const CancelPossible&) = delete;
  CancelPossible& operator=(const CancelPossible&) = delete;

 private:
  QPointer<frmSave> window_;
  std::optional<Hold> hold_;
};

frmSave::frmSave(const Context& context) : ChildWindow("frmSave", "Save/Recall Settings", context) {
  QGroupBox* frame = MakeFrame();
  cmdClose_ = widgets::Named<QPushButton>("cmdClose", "C&lose", this);
  OnClick(*cmdClose_, [this] { cmdClose_Click(); });
  SetCancelButton(*cmdClose_);
  // A drop writes nothing: it asks as the button does, with the file chosen.
  TakeFiles(*this, 1, [this](const QStringList& paths, const QPoint&) { RecallChosen(paths.first()); });

  auto* column = new QVBoxLayout(this);
  column->addWidget(frame);
  column->addStretch();
  auto* row = new QHBoxLayout;
  row->addStretch();
  row->addWidget(cmdClose_);
  column->addLayout(row);
}

QGroupBox* frmSave::MakeFrame() {
  auto* frame = widgets::Named<QGroupBox>("Frame2", "File I/O", this);
  auto* save = widgets::Named<QPushButton>("cmdsave", "&Save  Current Configuration", frame);
  OnClick(*save, [this] { cmdsave_Click(); });
  cmdRecall_ = widgets::Named<QPushButton>("cmdRecall", "&Recall Previous Configuration", frame);
  OnClick(*cmdRecall_, [this] { cmdRecall_Click(); });
  cmdRecent_ = widgets::Named<QPushButton>("cmdRecent", "Used &Before...", frame);
  cmdRecent_->setToolTip("Recalls one of the files used last. A file dropped on this window can be recalled as well");
  OnClick(*cmdRecent_, [this] { cmdRecent_Click(); });
  chkNotDefaults_ =
      widgets::Named<QCheckBox>("chkNotDefaults", "O&nly save registers that differ from their defaults ", frame);
  auto* label = widgets::Named<QLabel>("Label2", "Add Co&mment", frame);
  txtComment_ = widgets::Named<QLineEdit>("txtComment", frame);
  txtComment_->setMinimumWidth(fontMetrics().averageCharWidth() * 40);
  label->setBuddy(txtComment_);

  prgWork_ = widgets::Named<QProgressBar>("prgWork", frame);
  prgWork_->setRange(0, 100);
  prgWork_->setTextVisible(false);
  prgWork_->setAccessibleName("Progress");
  cmdCancel_ = widgets::Named<QPushButton>("cmdCancel", "Canc&el", frame);
  cmdCancel_->setToolTip("Ends a recall behind the register that is being written (Escape)");
  cmdCancel_->setEnabled(false);
  OnClick(*cmdCancel_, [this] { cmdCancel_Click(); });
  lblState_ = widgets::Named<QLabel>("lblState", frame);
  lblState_->setTextFormat(Qt::PlainText);
  // Two lines, because a path may be long.
  lblState_->setWordWrap(true);
  lblState_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  lblState_->setMinimumHeight(fontMetrics().lineSpacing() * 2);

  auto* column = new QVBoxLayout(frame);
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(save, 1);
  buttons->addWidget(cmdRecall_, 1);
  buttons->addWidget(cmdRecent_);
  column->addLayout(buttons);
  column->addWidget(chkNotDefaults_);
  auto* comment = new QHBoxLayout;
  comment->addWidget(label);
  comment->addWidget(txtComment_, 1);
  column->addLayout(comment);
  column->addSpacing(fontMetrics().height() / 2);
  auto* work = new QHBoxLayout;
  work->addWidget(prgWork_, 1);
  work->addWidget(cmdCancel_);
  column->addLayout(work);
  column->addWidget(lblState_);
  return frame;
}

void frmSave::Form_Load() {
  EndProgress(Shared.LastFileWork);
  adjustSize();
}

void frmSave::Form_Unload() {
  stop_ = true;
}

bool frmSave::ShowProgress(int percent, const QString& reg) {
  // Paint only when the bar moves: painting must not slow down a long file.
  if (percent == prgWork_->value() && !lblState_->text().isEmpty()) return false;
  prgWork_->setValue(percent);
  lblState_->setText(reg);
  return true;
}

void frmSave::EndProgress(const QString& outcome, const QString& toolTip) {
  prgWork_->setValue(0);
  lblState_->setText(outcome);
  lblState_->setToolTip(toolTip);
}

void frmSave::Remember(const QString& outcome, Desktop& desktop) {
  Shared.LastFileWork = outcome;
  desktop.Tell(outcome);
}

QString frmSave::AskForFile(bool save, const QString& chosen) {
  using Kind = platform::FileQuestion::Kind;
  const QString folder = chosen.isEmpty() ? Services().process.Folder() : QFileInfo(chosen).absolutePath();
  return Services().fileDialogs.Ask(
      {save ? Kind::Save : Kind::Open, "CommonDialog1",
       save ? "Save Current Configuration" : "Recall Previous Configuration", folder, kFilter, chosen, false},
      this);
}

std::string frmSave::ReadChip(int& lines) {
  std::string text;
  for (std::size_t row = 0; row < chip::Model.RegisterTable.size(); ++row) {
    const chip::RegisterEntry& entry = chip::Model.RegisterTable[row];
    if (entry.ReadOnly) continue;
    if (ShowProgress(static_cast<int>((row + 1) * 100 / chip::Model.RegisterTable.size()),
                     "Reading " + QString::fromStdString(entry.Caption))) {
      Services().events.PumpPaint();
    }
    const std::int16_t value = link::ReadRegister(link::Bus.DeviceAddress, entry.Address);
    if (!chkNotDefaults_->isChecked() || value != entry.Default) {
      text += SavedLine(entry.Address, value, entry.Caption);
      ++lines;
    }
  }
  return text;
}

void frmSave::cmdsave_Click() {
  Desktop& desktop = TheDesktop();
  const QDateTime now = Services().clock.WallTime();
  std::string text = SavedHead(DateText(now.date()).toStdString(), TimeText(now.time()).toStdString(),
                               txtComment_->text().toStdString());
  desktop.EnableTimer(false);
  int lines = 0;
  const link::FailureWatch watch;
  text += ReadChip(lines);
  text += kSavedEnd;
  const QString failed = watch.Failed() ? "; transfers failed: a value of 0xFF may not be the chip's" : "";

  EndProgress("");
  const QString file = AskForFile(true);
  if (!file.isEmpty()) {
    if (Services().files.Replace(file, QByteArray::fromStdString(text))) {
      NoteRecentFile(Services().settings, file);
      Remember("Saved " + Registers(lines) + " to " + QDir::toNativeSeparators(file) + failed, desktop);
      Unload();
    } else {
      EndProgress("Not saved: " + QFileInfo(file).fileName() + " could not be written");
    }
  }
  desktop.EnableTimer(true);
}

void frmSave::cmdRecall_Click() {
  RecallChosen({});
}

void frmSave::RecallChosen(const QString& chosen) {
  if (Shared.RecallRunning) return;
  const QString file = AskForFile(false, chosen);
  if (!file.isEmpty()) RecallFile(file);
}

void frmSave::cmdRecent_Click() {
  QMenu& menu = widgets::MakePopUpMenu(*this, "mnuRecent");
  AddRecentFiles(menu, *this, Services().settings,
                 [this](const QString& path) { ByUser(*cmdRecall_, [this, path] { RecallFile(path); })(); });
  menu.popup(cmdRecent_->mapToGlobal(QPoint(0, cmdRecent_->height())));
}

void frmSave::RecallFile(const QString& file) {
  if (Shared.RecallRunning) return;
  EndProgress("");
  const auto bytes = Services().files.Read(file, SavedReader::kMostBytes);
  if (!bytes) {
    ForgetRecentFile(Services().settings, file);
    EndProgress("Nothing written: " + QFileInfo(file).fileName() + " could not be opened");
    return;
  }
  NoteRecentFile(Services().settings, file);
  Recall({bytes->constData(), static_cast<std::size_t>(bytes->size())}, file);
}

void frmSave::Recall(std::string_view text, const QString& file) {
  if (const char* encoding = tasks::WideEncoding(text)) {
    EndProgress(QString("Nothing written: %1 is in %2; save it as plain text or in UTF-8")
                    .arg(QFileInfo(file).fileName(), encoding));
    return;
  }
  Desktop& desktop = TheDesktop();
  platform::Events& events = Services().events;
  const platform::Clock& clock = Services().clock;
  const QPointer<frmSave> self(this);
  SavedReader reader(text);
  auto result = reader.FindStart() ? SavedReader::Result::Line : SavedReader::Result::Broken;
  int written = 0;
  const link::FailureWatch watch;
  stop_ = false;
  Shared.RecallRunning = true;
  desktop.EnableTimer(false);
  std::optional<CancelPossible> cancelPossible;
  const double began = clock.Now();
  while (result == SavedReader::Result::Line) {
    int address = 0;
    int value = 0;
    result = reader.Next(address, value);
    if (result != SavedReader::Result::Line) break;
    ShowProgress(reader.Percent(), "Writing " + RegisterName(address));
    if (clock.Now() - began >= kTooShortToCancel) {
      if (!cancelPossible) cancelPossible.emplace(*this);
      // User actions are handled here, between two registers; afterwards the window may be gone.
      events.Pump();
      if (!self || stop_) break;
    }
    link::WriteRegisterValue(link::Bus.DeviceAddress, address, value);
    ++written;
  }
  cancelPossible.reset();
  Shared.RecallRunning = false;
  desktop.EnableTimer(true);
  const bool cancelled = result == SavedReader::Result::Line;
  QString outcome = (cancelled ? "Cancelled after " : "") + Registers(written) + " written";
  if (result == SavedReader::Result::Broken) outcome += "; the file breaks off before its \"}\"";
  if (watch.Failed()) outcome += "; transfers failed: not all of them have reached the chip";
  const QString path = QDir::toNativeSeparators(file);
  if (self) EndProgress(outcome, path);
  Remember(outcome + " (" + path + ")", desktop);
}

void frmSave::cmdClose_Click() {
  Unload();
}

void frmSave::cmdCancel_Click() {
  stop_ = true;
}

}  // namespace zth::windows
