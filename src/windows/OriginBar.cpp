#include "windows/OriginBar.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include "platform/Guard.h"
#include "widgets/Colours.h"
#include "windows/Handlers.h"

namespace zth::windows {

OriginBar::OriginBar(QWidget* window)
    : QFrame(window), lblOrigin_(new QLabel(this)), cmdReadAgain_(new QPushButton("Read Again", this)) {
  setObjectName("fraOrigin");
  setAutoFillBackground(true);
  lblOrigin_->setObjectName("lblOrigin");
  lblOrigin_->setTextFormat(Qt::PlainText);
  lblOrigin_->setWordWrap(true);
  cmdReadAgain_->setObjectName("cmdReadAgain");
  cmdReadAgain_->setFocusPolicy(Qt::NoFocus);
  cmdReadAgain_->setToolTip("Read this window from the chip in use (F5)");
  OnClick(*cmdReadAgain_, [this] { emit ReadAgain(); });
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(9, 4, 9, 4);
  row->addWidget(lblOrigin_, 1);
  row->addWidget(cmdReadAgain_);
  hide();
}

void OriginBar::SetText(const QString& text) {
  if (lblOrigin_->text() == text) return;
  lblOrigin_->setText(text);
  // A window that opens gives the focus to the first control that accepts it, even a hidden one.
  cmdReadAgain_->setFocusPolicy(text.isEmpty() ? Qt::NoFocus : Qt::StrongFocus);
  cmdReadAgain_->setAccessibleDescription(text);
  setAccessibleName(text);
  if (text.isEmpty()) return;
  QAccessibleEvent alert(this, QAccessible::Alert);
  QAccessible::updateAccessibility(&alert);
}

void OriginBar::Recolour() {
  const bool dark = widgets::IsDark(parentWidget()->palette());
  QPalette colours;
  colours.setColor(QPalette::Window, dark ? QColor(0x6B, 0x35, 0x12) : QColor(0xFF, 0xD5, 0x8A));
  colours.setColor(QPalette::WindowText, dark ? QColor(0xFF, 0xF1, 0xE0) : QColor(0x3D, 0x1D, 0x00));
  setPalette(colours);
}

}  // namespace zth::windows
