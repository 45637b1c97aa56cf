#include "windows/fancontrol/LiveWindow.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>

namespace zth::windows {

LiveWindow::LiveWindow(const QString& name, const QString& caption, const Context& context, unsigned shows)
    : ChildWindow(name, caption, context, shows) {
  SelectOnEnter();
}

Handler LiveWindow::WhenReady(Handler handler) {
  return [this, handler = std::move(handler)] {
    if (ready_) handler();
  };
}

void LiveWindow::Reread() {
  SetReady(false);
  Load();
}

ControlRows::ControlRows(QWidget& parent) : parent_(parent), grid_(*new QGridLayout(&parent)) {
  grid_.setColumnStretch(0, 1);
}

void ControlRows::AddLabel(const QString& name, const QString& caption, QWidget& buddy) {
  auto* label = new QLabel(caption, &parent_);
  label->setObjectName("lbl" + name.mid(3));
  label->setBuddy(&buddy);
  grid_.addWidget(label, row_, 0);
}

QCheckBox* ControlRows::AddCheck(const QString& name, const QString& caption, Handler handler) {
  auto* box = new QCheckBox(caption, &parent_);
  box->setObjectName(name);
  OnToggle(*box, std::move(handler));
  grid_.addWidget(box, row_++, 0, 1, 2, Qt::AlignLeft);
  return box;
}

QComboBox* ControlRows::AddList(const QString& name, const QString& caption, const QStringList& items,
                                Handler handler) {
  auto* list = new QComboBox(&parent_);
  list->setObjectName(name);
  list->addItems(items);
  OnSelect(*list, std::move(handler));
  AddLabel(name, caption, *list);
  grid_.addWidget(list, row_++, 1);
  return list;
}

QLineEdit* ControlRows::AddText(const QString& name, const QString& caption, const QString& upDown,
                                const widgets::UpDown::Range& range, Handler handler) {
  return AddText(name, caption, upDown, range, std::move(handler), nullptr);
}

QLineEdit* ControlRows::AddText(const QString& name, const QString& caption, const QString& upDown,
                                const widgets::UpDown::Range& range, Handler handler, QLabel*& beside) {
  return AddText(name, caption, upDown, range, std::move(handler), &beside);
}

QLineEdit* ControlRows::AddText(const QString& name, const QString& caption, const QString& upDown,
                                const widgets::UpDown::Range& range, Handler handler, QLabel** beside) {
  auto* box = new QLineEdit(&parent_);
  box->setObjectName(name);
  OnChange(*box, std::move(handler));
  auto* pair = new widgets::UpDown(box, range, &parent_);
  pair->setObjectName(upDown);
  AddLabel(name, caption, *box);
  QHBoxLayout* row = pair->Row();
  if (beside != nullptr) {
    *beside = new QLabel(&parent_);
    (*beside)->setObjectName("lblChip" + name.mid(3));
    // Its room is there whether it says something or not, so that nothing moves.
    (*beside)->setMinimumWidth((*beside)->fontMetrics().horizontalAdvance("chip: -188"));
    (*beside)->setIndent((*beside)->fontMetrics().horizontalAdvance(' '));
    row->insertWidget(row->count() - 1, *beside);
  }
  grid_.addLayout(row, row_++, 1);
  return box;
}

QString ElementName(const char* array, int index) {
  return QString("%1(%2)").arg(array).arg(index);
}

void ModifyRegister(std::int32_t number, std::uint8_t keep, std::int32_t set) {
  const std::int16_t before = link::ReadRegister(link::DeviceAddress, number);
  link::WriteRegisterValue(link::DeviceAddress, number, (before & keep) | set);
}

}  // namespace zth::windows
