#include "shell/frmAbout.h"

#include <algorithm>

#include <QLabel>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QVBoxLayout>

#include "base/Product.h"
#include "base/Twips.h"
#include "platform/Guard.h"
#include "shell/Icons.h"
#include "shell/WebLink.h"
#include "widgets/Named.h"
#include "windows/Handlers.h"

namespace zth::shell {

frmAbout::frmAbout(const windows::Context& context) : ChildWindow("frmAbout", "About the  ZTH4718 Software", context) {
  auto* picture = widgets::Named<QLabel>("Image1", this);
  picture->setPixmap(ProgramIcon().pixmap(64, 64));
  auto* label1 = widgets::Named<QLabel>("Label1", QString(base::kTitle) + " Version " + base::kVersionText, this);
  QFont bold = label1->font();
  bold.setBold(true);
  label1->setFont(bold);
  auto* label5 = widgets::Named<QLabel>("Label5", "Visit the Tarnwell Silicon website at", this);

  label6_ = widgets::Named<WebLink>("Label6", base::kMakerAddress, this);
  connect(label6_, &WebLink::Click, this, platform::Guarded([this] { Label6_Click(); }));

  auto* cmdOK = widgets::Named<QPushButton>("cmdOK", "OK", this);
  windows::OnClick(*cmdOK, [this] { Unload(); });
  SetDefaultButton(*cmdOK);
  SetCancelButton(*cmdOK);

  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(32, 24, 32, 20);
  column->setSpacing(8);
  for (QWidget* widget : {static_cast<QWidget*>(picture), static_cast<QWidget*>(label1), static_cast<QWidget*>(label5),
                          static_cast<QWidget*>(label6_)}) {
    column->addWidget(widget, 0, Qt::AlignHCenter);
  }
  column->addSpacing(12);
  column->addWidget(cmdOK, 0, Qt::AlignHCenter);
  cmdOK->setFocus();
}

void frmAbout::Form_Load() {
  QWidget& frame = TheDesktop().Frame();
  QWidget* window = parentWidget() != nullptr ? parentWidget() : this;
  const QSize size = window->sizeHint();
  // A main window that is small must not put the top of this one out of reach.
  window->move(std::max(0, (frame.width() - size.width()) / 2),
               std::max(0, frame.height() / 2 - base::PixelsFromTwips(1500)));
}

void frmAbout::Label6_Click() {
  Services().shell.Open(base::kMakerAddress);
  label6_->MarkVisited();
}

}  // namespace zth::shell
