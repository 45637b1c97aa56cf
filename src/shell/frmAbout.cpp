#include "shell/frmAbout.h"

#include <QApplication>
#include <QFrame>
#include <QKeyEvent>
#include <QLabel>
#include <QMdiSubWindow>
#include <QMouseEvent>
#include <QPushButton>
#include <QVBoxLayout>

#include "base/Product.h"
#include "base/Twips.h"
#include "shell/Icons.h"
#include "windows/Handlers.h"

namespace zth::shell {

frmAbout::frmAbout(const windows::Context& context) : ChildWindow("frmAbout", "About the  ZTH4718 Software", context) {
  auto* picture = new QLabel(this);
  picture->setObjectName("Image1");
  picture->setPixmap(ProgramIcon().pixmap(64, 64));
  auto* label1 = new QLabel(QString(base::kTitle) + " Version " + base::kVersionText, this);
  label1->setObjectName("Label1");
  QFont bold = label1->font();
  bold.setBold(true);
  label1->setFont(bold);
  auto* label5 = new QLabel("Visit the Tarnwell Silicon website at", this);
  label5->setObjectName("Label5");

  label6_ = new QLabel(base::kMakerAddress, this);
  label6_->setObjectName("Label6");
  label6_->setCursor(Qt::PointingHandCursor);
  label6_->setFocusPolicy(Qt::TabFocus);
  label6_->setFrameStyle(QFrame::NoFrame);
  label6_->setToolTip("Open the web site");
  label6_->setAccessibleName(QString("Web site ") + base::kMakerAddress);
  QFont underlined = label6_->font();
  underlined.setUnderline(true);
  label6_->setFont(underlined);
  SetLinkColour(palette().color(QPalette::Link));
  label6_->installEventFilter(this);

  auto* cmdOK = new QPushButton("OK", this);
  cmdOK->setObjectName("cmdOK");
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

bool frmAbout::eventFilter(QObject* watched, QEvent* event) {
  if (watched == label6_) {
    if (event->type() == QEvent::MouseButtonRelease && static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) {
      Label6_Click();
      return true;
    }
    if (event->type() == QEvent::KeyPress) {
      const int key = static_cast<QKeyEvent*>(event)->key();
      if (key == Qt::Key_Space || key == Qt::Key_Return || key == Qt::Key_Enter) {
        Label6_Click();
        return true;
      }
    }
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) {
      label6_->setFrameStyle(event->type() == QEvent::FocusIn ? QFrame::Box | QFrame::Plain : int{QFrame::NoFrame});
    }
  }
  return ChildWindow::eventFilter(watched, event);
}

void frmAbout::Label6_Click() {
  Services().shell.Open(base::kMakerAddress);
  SetLinkColour(QColor(0x80, 0x00, 0x80));
}

void frmAbout::SetLinkColour(const QColor& colour) {
  QPalette palette = label6_->palette();
  palette.setColor(QPalette::WindowText, colour);
  label6_->setPalette(palette);
}

}  // namespace zth::shell
