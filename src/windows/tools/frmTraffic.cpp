#include "windows/tools/frmTraffic.h"

#include <algorithm>
#include <utility>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDateTime>
#include <QEvent>
#include <QFileInfo>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QPushButton>
#include <QScrollBar>
#include <QTableView>

#include "base/Product.h"
#include "link/BoardName.h"
#include "link/Declarations.h"
#include "tasks/TasksState.h"
#include "tasks/TrafficCopies.h"
#include "tasks/TrafficReader.h"
#include "widgets/PopUpMenu.h"
#include "windows/tools/TrafficModel.h"

namespace zth::windows {
namespace {

constexpr char kFilter[] = "Bus Traffic (*.txt)|*.txt|All Files (*)|*";

/// Calls of a file that are held, about 100 MB of memory. Of a longer file the last ones are.
constexpr std::size_t kMostOfFile = 1'000'000;

/// What the program reads by itself is shown at every tenth look only: drawing the table takes some milliseconds. While
/// the user works in another window, every third of these is enough.
constexpr int kCalmLooks = 10;
constexpr int kAsideLooks = 30;

constexpr std::int64_t kPiece = 1024 * 1024;  // bytes read from a file at a time

std::string Utc(const QDateTime& at) {
  return at.toUTC().toString(Qt::ISODateWithMs).toStdString();
}

}  // namespace

void frmTraffic::Form_Load() {
  txtFilter_->setFocus();
}

void frmTraffic::ShowFilter() {
  tasks::TrafficFilter filter;
  filter.text = txtFilter_->text().toStdString();
  filter.writesOnly = chkWrites_->isChecked();
  filter.withoutMonitor = chkNoMonitor_->isChecked();
  filter.failuresOnly = chkFailures_->isChecked();
  if (cmbAsker_->currentIndex() > 0) filter.source = cmbAsker_->currentText().toStdString();
  QScrollBar& bar = *tblTraffic_->verticalScrollBar();
  const bool isAtEnd = bar.value() >= bar.maximum();
  const int row = tblTraffic_->rowAt(0);
  const std::uint64_t top = row < 0 ? 0 : model_->NumberOf(row);
  model_->SetFilter(filter);
  // The same place in the traffic, whatever is shown of it.
  if (isAtEnd) {
    tblTraffic_->scrollToBottom();
  } else {
    bar.setValue(model_->RowFrom(top) * tblTraffic_->verticalHeader()->defaultSectionSize());
  }
  ShowState();
}

void frmTraffic::tmrTraffic_Timer() {
  const QWidget* focus = QApplication::focusWidget();
  const bool isAside = focus != nullptr && !isAncestorOf(focus) && !cmdHold_->isChecked();
  ++looks_;
  if (!isVisible() || (looks_ < (isAside ? kAsideLooks : kCalmLooks) && !model_->HasNewsByUser())) return;
  Refresh();
}

void frmTraffic::Refresh() {
  looks_ = 0;
  QScrollBar& bar = *tblTraffic_->verticalScrollBar();
  const int value = bar.value();
  const bool isAtEnd = value >= bar.maximum();
  const int dropped = model_->Refresh();
  if (isAtEnd) {
    tblTraffic_->scrollToBottom();
  } else if (dropped != 0) {
    bar.setValue(std::max(0, value - dropped * tblTraffic_->verticalHeader()->defaultSectionSize()));
  }
  ShowSources();
  ShowState();
}

void frmTraffic::ShowState() {
  const tasks::Traffic& traffic = model_->Shown();
  const std::uint64_t waiting = model_->Waiting();
  const std::uint64_t held = traffic.End() - traffic.First() - (cmdHold_->isChecked() ? waiting : 0);
  QString state = QString("%1 of %2").arg(model_->rowCount()).arg(held);
  if (cmdHold_->isChecked()) state += QString(", %1 wait").arg(waiting);
  lblState_->setText(state);
}

void frmTraffic::ShowSources() {
  const QStringList& sources = model_->Sources();
  for (auto i = static_cast<qsizetype>(cmbAsker_->count()) - 1; i < sources.size(); ++i) cmbAsker_->addItem(sources[i]);
}

void frmTraffic::ShowLive() {
  model_->Show(*tasks::Work.traffic, [this](double time) { return DateOf(time); });
  file_.reset();
  EnableLive();
}

void frmTraffic::EnableLive() {
  const bool live = file_ == nullptr;
  cmdHold_->setChecked(false);
  if (live && cmdLive_->hasFocus()) tblTraffic_->setFocus();  // or the focus would be lost with the button
  for (QWidget* control : std::initializer_list<QWidget*>{cmdHold_, cmdClear_, txtMark_, cmdMark_}) {
    control->setEnabled(live);
  }
  cmdLive_->setEnabled(!live);
  lblTold_->clear();
  cmbAsker_->setCurrentIndex(0);
  while (cmbAsker_->count() > 1) cmbAsker_->removeItem(1);
  if (live) SetCaption("Bus Traffic");
  ShowSources();
  ShowFilter();
  tblTraffic_->scrollToBottom();
}

void frmTraffic::ShowFile(const QString& path) {
  const QString name = QFileInfo(path).fileName();
  std::int64_t at = 0;
  bool isReadable = true;
  tasks::TrafficReader reader([&] {
    const auto bytes = Services().files.ReadAt(path, at, kPiece);
    isReadable = isReadable && bytes.has_value();
    at += bytes ? bytes->size() : 0;
    return bytes ? bytes->toStdString() : std::string();
  });
  auto read = std::make_unique<tasks::Traffic>(kMostOfFile);
  read->CountFrom(0);
  while (reader.Next()) read->Add(reader.Record(), reader.Text());
  const QString fault = QString::fromStdString(reader.Fault());
  if (!isReadable || (read->End() == 0 && !fault.isEmpty())) {
    lblTold_->setText("Not opened: " + name + (isReadable ? ", " + fault : " could not be read"));
    return;
  }
  const std::unique_ptr<tasks::Traffic> before = std::exchange(file_, std::move(read));
  fileHead_ = reader.Head();
  model_->Show(*file_, [this](double time) { return DateOf(time); });
  EnableLive();
  SetCaption("Bus Traffic - " + name);
  // What stands before a fault is not lost.
  if (!fault.isEmpty()) lblTold_->setText("Read only as far as a fault in " + name + ", " + fault);
  if (file_->First() != 0) lblTold_->setText(QString("Shows the last %1 of %2").arg(kMostOfFile).arg(file_->End()));
}

QString frmTraffic::DateOf(double time) const {
  const QDateTime started = QDateTime::fromString(QString::fromStdString(fileHead_.started), Qt::ISODateWithMs);
  const QDateTime at = file_ != nullptr
                           ? started.addMSecs(qRound64(time * 1000)).toLocalTime()
                           : Services().clock.WallTime().addMSecs(-qRound64((Services().clock.Now() - time) * 1000));
  return at.isValid() ? at.toString("yyyy-MM-dd HH:mm:ss.zzz") : QString();
}

tasks::TrafficHead frmTraffic::Head() const {
  if (file_ != nullptr) return fileHead_;
  const double passed = Services().clock.Now() - tasks::Work.traffic->Began();
  return {Utc(Services().clock.WallTime().addMSecs(-qRound64(passed * 1000))), link::BoardName().toStdString(),
          base::kVersionText, link::Bus.Smbus.SmbusFailures != nullptr};
}

void frmTraffic::Save(bool shownOnly) {
  platform::FileQuestion question;
  question.kind = platform::FileQuestion::Kind::Save;
  question.name = "dlgSaveTraffic";
  question.caption = "Save Bus Traffic";
  question.folder = Services().process.Folder();
  question.filter = kFilter;
  question.suggestion = "traffic.txt";
  const QPointer<frmTraffic> self(this);
  const QString path = Services().fileDialogs.Ask(question, this);
  if (path.isEmpty() || self == nullptr) return;
  // What is there now: calls went on behind the dialog.
  const tasks::Traffic& traffic = model_->Shown();
  std::string text = tasks::TrafficHeadText(Head());
  const auto add = [&](std::uint64_t number) {
    const tasks::TrafficRecord& record = traffic.At(number);
    text += tasks::TrafficLineText(record, traffic.TextOf(record), traffic.Began()) + '\n';
  };
  if (shownOnly) {
    model_->Refresh();
    std::ranges::for_each(model_->Numbers(), add);
  } else {
    for (std::uint64_t number = traffic.First(); number < traffic.End(); ++number) add(number);
  }
  const bool isWritten = Services().files.Replace(path, QByteArray::fromStdString(text));
  const QString name = QFileInfo(path).fileName();
  lblTold_->setText(isWritten ? "Saved as " + name : "Not saved: " + name + " could not be written");
}

void frmTraffic::CopyRows(Copy as) {
  std::vector<std::uint64_t> numbers;
  for (const QModelIndex& index : tblTraffic_->selectionModel()->selectedRows()) {
    numbers.push_back(model_->NumberOf(index.row()));
  }
  std::ranges::sort(numbers);
  if (numbers.empty()) numbers = model_->Numbers();
  const tasks::Traffic& traffic = model_->Shown();
  std::erase_if(numbers, [&](std::uint64_t number) { return number < traffic.First(); });
  const std::string text = as == Copy::Text       ? tasks::AsText(traffic, numbers)
                           : as == Copy::I2cTools ? tasks::AsI2cTools(traffic, numbers)
                                                  : tasks::AsC(traffic, numbers);
  if (!numbers.empty()) Services().clipboard.PutText(QString::fromStdString(text));
}

void frmTraffic::cmdHold_Click() {
  if (cmdHold_->isChecked()) model_->Refresh();
  model_->SetHeld(cmdHold_->isChecked());
  Refresh();
}

void frmTraffic::cmdClear_Click() {
  tasks::Work.traffic->Clear();
  Refresh();
}

void frmTraffic::cmdMark_Click() {
  const QString note = txtMark_->text().simplified();
  tasks::Work.traffic->AddNote((note.isEmpty() ? "Mark" : note).toStdString(), Services().clock.Now());
  txtMark_->clear();
  Refresh();
}

void frmTraffic::cmdCopy_Click() {
  QMenu& menu = widgets::MakePopUpMenu(*this, "mnuCopy");
  AddCopies(menu);
  menu.popup(cmdCopy_->mapToGlobal(QPoint(0, cmdCopy_->height())));
}

void frmTraffic::cmdSave_Click() {
  QMenu& menu = widgets::MakePopUpMenu(*this, "mnuSaveTraffic");
  widgets::AddEntry(menu, *this, "mnuSaveAll", "&All that is held...", [this] { Save(false); });
  widgets::AddEntry(menu, *this, "mnuSaveShown", "Only what is &shown...", [this] { Save(true); });
  menu.popup(cmdSave_->mapToGlobal(QPoint(0, cmdSave_->height())));
}

void frmTraffic::cmdOpen_Click() {
  platform::FileQuestion question;
  question.name = "dlgOpenTraffic";
  question.caption = "Open Bus Traffic";
  question.folder = Services().process.Folder();
  question.filter = kFilter;
  const QPointer<frmTraffic> self(this);
  const QString path = Services().fileDialogs.Ask(question, this);
  if (!path.isEmpty() && self != nullptr) ShowFile(path);
}

void frmTraffic::changeEvent(QEvent* event) {
  ChildWindow::changeEvent(event);
  if (event->type() == QEvent::PaletteChange && lblTold_ != nullptr) model_->SetPalette(palette());
}

}  // namespace zth::windows
