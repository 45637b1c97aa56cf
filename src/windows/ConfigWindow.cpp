#include "windows/ConfigWindow.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

#include "widgets/Named.h"
#include "windows/BoundControls.h"
#include "windows/BoundMarks.h"
#include "windows/Handlers.h"

namespace zth::windows {

ConfigWindow::ConfigWindow(const QString& name, const QString& caption, const Context& context, const Plan& plan)
    : ChildWindow(name, caption, context, kShowsChip), plan_(plan) {}

QPushButton* ConfigWindow::AddButton(const QString& name, const QString& caption, const QString& tip) {
  auto* button = widgets::Named<QPushButton>(name, caption, this);
  button->setToolTip(tip);
  return button;
}

void ConfigWindow::Finish(QWidget* body) {
  // No mnemonic here or in a window may be one of the menu bar's: F, V, C, O, H, W, A.
  auto* cmdOK = AddButton("cmdOK", "OK", "Write all settings of this window to the chip and close it");
  auto* cmdCancel = AddButton("cmdCancel", "Cancel", "Close this window and write nothing");
  auto* cmdApply = AddButton("cmdApply", "A&pply", "Write all settings of this window to the chip");
  OnClick(*cmdApply, [this] { cmdApply_Click(); });
  OnClick(*cmdOK, [this] { cmdOK_Click(); });
  OnClick(*cmdCancel, [this] { cmdCancel_Click(); });
  SetDefaultButton(*cmdOK);
  SetCancelButton(*cmdCancel);

  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  for (QPushButton* button : {cmdOK, cmdCancel, cmdApply}) buttons->addWidget(button);
  auto* column = new QVBoxLayout(this);
  column->addWidget(body);
  column->addStretch(1);
  column->addLayout(buttons);

  controls_ = new BoundControls(*this, plan_.rows);
  new BoundMarks(*this, *controls_);
  findChild<QWidget*>(NameOf(plan_.rows.front().control))->setFocus();
}

void ConfigWindow::Form_Load() {
  controls_->Load(plan_.reads);
}

bool ConfigWindow::HoldsChanges() const {
  return controls_->HoldsChanges();
}

void ConfigWindow::cmdApply_Click() {
  controls_->Apply(plan_.writes);
}

void ConfigWindow::cmdOK_Click() {
  cmdApply_Click();
  Unload();
}

void ConfigWindow::cmdCancel_Click() {
  Unload();
}

}  // namespace zth::windows
