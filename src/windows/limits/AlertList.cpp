#include "windows/limits/AlertList.h"

#include <algorithm>
#include <functional>
#include <numeric>
#include <utility>

#include <QAccessible>
#include <QAccessibleWidget>
#include <QCheckBox>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>

#include "platform/Guard.h"
#include "widgets/Named.h"
#include "windows/Handlers.h"

namespace zth::windows {
namespace {

constexpr char kSoundSetting[] = "AlertSound";
constexpr char kOpenSetting[] = "AlertEvents";
constexpr int kLines = 4;  // visible when the window opens

bool IsSet(const platform::Settings& settings, const char* key, const char* fallback) {
  return settings.Get(key, fallback).trimmed().compare("True", Qt::CaseInsensitive) == 0;
}

/// A list that asks for only a few lines and copies whole rows: a view's own copy takes a single cell.
class EventView final : public QTreeView {
 public:
  EventView(std::function<void()> copy, QWidget* parent) : QTreeView(parent), copy_(std::move(copy)) {}
  QSize sizeHint() const override { return {fontMetrics().averageCharWidth() * 60, HeightOf(kLines)}; }
  QSize minimumSizeHint() const override { return {fontMetrics().averageCharWidth() * 30, HeightOf(2)}; }

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    if (event->matches(QKeySequence::Copy)) return copy_();
    QTreeView::keyPressEvent(event);
  }

 private:
  std::function<void()> copy_;

  int HeightOf(int lines) const {
    return header()->sizeHint().height() + lines * (fontMetrics().height() + 4) + 2 * frameWidth();
  }
};

/// Announces the newest event as a notification, which a screen reader speaks wherever the user is. It does so whether
/// or not the label shows the event.
class NewestLabel final : public QLabel {
 public:
  explicit NewestLabel(QWidget* parent) : QLabel(parent) { QAccessible::installFactory(MakeAccess); }

  void Announce(const QString& event) {
    setAccessibleName(event);
    if (!QAccessible::isActive()) return;
    // As if it appeared anew each time, although the label has been there all along.
    QAccessibleEvent shown(this, QAccessible::ObjectShow);
    QAccessible::updateAccessibility(&shown);
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
  }

 private:
  static QAccessibleInterface* MakeAccess(const QString& /*key*/, QObject* object) {
    auto* label = dynamic_cast<NewestLabel*>(object);
    return label != nullptr ? new QAccessibleWidget(label, QAccessible::Notification) : nullptr;
  }
};

}  // namespace

AlertList::AlertList(const Context& context, QWidget* parent)
    : QWidget(parent),
      context_(context),
      log_(new AlertLog(this)),
      cmdEvents_(widgets::Named<QToolButton>("cmdEvents", this)),
      lblNewest_(widgets::Named<NewestLabel>("lblNewest", this)),
      chkSound_(widgets::Named<QCheckBox>("chkSound", "So&und", this)) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  MakeBar();
  MakeList();
  column->addWidget(list_, 1);
  const bool open = IsSet(context.services.settings, kOpenSetting, "True");
  cmdEvents_->setChecked(open);
  Fold(open);
  OnToggle(*cmdEvents_, [this] {
    Fold(cmdEvents_->isChecked());
    context_.services.settings.Put(kOpenSetting, cmdEvents_->isChecked() ? "True" : "False");
  });
}

void AlertList::MakeBar() {
  cmdEvents_->setText("&Events");
  cmdEvents_->setCheckable(true);
  cmdEvents_->setAutoRaise(true);
  cmdEvents_->setFocusPolicy(Qt::StrongFocus);
  cmdEvents_->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  lblNewest_->setTextFormat(Qt::PlainText);
  chkSound_->setToolTip("Sound when a lamp turns red");
  chkSound_->setChecked(IsSet(context_.services.settings, kSoundSetting, "False"));
  OnToggle(*chkSound_,
           [this] { context_.services.settings.Put(kSoundSetting, chkSound_->isChecked() ? "True" : "False"); });
  auto* bar = new QHBoxLayout;
  bar->addWidget(cmdEvents_);
  bar->addWidget(lblNewest_, 1);
  bar->addWidget(chkSound_);
  const auto add = [&](const char* name, const char* caption, const char* tip, void (AlertList::*click)()) {
    auto* button = widgets::Named<QPushButton>(name, caption, this);
    button->setToolTip(tip);
    OnClick(*button, [this, click] { (this->*click)(); });
    bar->addWidget(button);
  };
  add("cmdCopyEvents", "Co&py", "Copy the selected events, or all (Ctrl+C)", &AlertList::cmdCopyEvents_Click);
  add("cmdSaveEvents", "&Save...", "Save all events as comma-separated values", &AlertList::cmdSaveEvents_Click);
  add("cmdClearEvents", "Clea&r", "Empty the list", &AlertList::cmdClearEvents_Click);
  static_cast<QVBoxLayout*>(layout())->addLayout(bar);
}

void AlertList::MakeList() {
  list_ = widgets::Named<EventView>("lstEvents", platform::Guarded([this] { cmdCopyEvents_Click(); }), this);
  list_->setAccessibleName("Events");
  list_->setModel(log_);
  list_->setRootIsDecorated(false);
  list_->setUniformRowHeights(true);
  list_->setAlternatingRowColors(true);
  list_->setSelectionMode(QAbstractItemView::ExtendedSelection);
  list_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  list_->setColumnHidden(AlertLog::kChip, true);
  list_->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
  list_->header()->setSectionsMovable(false);
}

void AlertList::Fold(bool open) {
  cmdEvents_->setArrowType(open ? Qt::DownArrow : Qt::RightArrow);
  cmdEvents_->setToolTip(open ? "Hide the lamps that have turned" : "Show the lamps that have turned");
  list_->setVisible(open);
  setSizePolicy(QSizePolicy::Preferred, open ? QSizePolicy::Preferred : QSizePolicy::Maximum);
  ShowNewest();
}

void AlertList::ShowNewest() {
  // When the list is open, the event is its last line.
  lblNewest_->setText(cmdEvents_->isChecked() ? QString() : log_->Newest());
}

void AlertList::Add(const AlertEvent& event) {
  const QScrollBar* bar = list_->verticalScrollBar();
  const bool atEnd = bar->value() == bar->maximum();
  log_->Add(event);
  list_->setColumnHidden(AlertLog::kChip, !log_->HasSeveralChips());
  if (atEnd) list_->scrollToBottom();
  ShowNewest();
  static_cast<NewestLabel*>(lblNewest_)->Announce(log_->Newest());
}

void AlertList::Sound() const {
  if (chkSound_->isChecked()) context_.services.shell.Beep();
}

void AlertList::cmdCopyEvents_Click() {
  QList<int> rows;
  for (const QModelIndex& index : list_->selectionModel()->selectedRows()) rows << index.row();
  std::ranges::sort(rows);
  if (rows.isEmpty()) {
    rows.resize(log_->rowCount());
    std::iota(rows.begin(), rows.end(), 0);
  }
  if (!rows.isEmpty()) context_.services.clipboard.PutText(log_->Lines(rows));
}

void AlertList::cmdSaveEvents_Click() {
  platform::FileQuestion question;
  question.kind = platform::FileQuestion::Kind::Save;
  question.name = "dlgSaveEvents";
  question.caption = "Save Events";
  question.folder = context_.services.process.Folder();
  question.filter = "Comma-Separated Values (*.csv)|*.csv";
  question.suggestion = "Alerts.csv";
  const QString path = context_.services.fileDialogs.Ask(question, this);
  if (path.isEmpty()) return;
  // The rows as they are now: monitoring went on behind the dialog.
  const bool written = context_.services.files.Replace(path, log_->Csv().toUtf8());
  const QString name = QFileInfo(path).fileName();
  context_.desktop.Tell(written ? "Events saved as " + name : "Not saved: " + name + " could not be written");
}

void AlertList::cmdClearEvents_Click() {
  log_->Clear();
  list_->setColumnHidden(AlertLog::kChip, true);
  ShowNewest();
}

}  // namespace zth::windows
