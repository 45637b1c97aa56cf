#include "shell/frmSplash.h"

#include <algorithm>

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "base/Product.h"
#include "base/Twips.h"
#include "shell/Icons.h"
#include "widgets/Named.h"

namespace zth::shell {
namespace {

// The bar's full width in twips; one percent of it is a whole number of pixels, so half a percent is one, too.
constexpr int kFullWidthTwips = 6000;
constexpr int kOnePercentTwips = kFullWidthTwips / 100;
constexpr int kBarHeight = 8;

QLabel* MakeLabel(const char* name, const QString& text, double size, bool bold, QWidget* parent) {
  auto* label = widgets::Named<QLabel>(name, text, parent);
  label->setTextFormat(Qt::PlainText);
  QFont font = label->font();
  font.setPointSizeF(font.pointSizeF() * size);
  font.setBold(bold);
  label->setFont(font);
  return label;
}

}  // namespace

frmSplash::frmSplash() : QWidget(nullptr, Qt::SplashScreen | Qt::FramelessWindowHint) {
  setObjectName("frmSplash");
  setWindowTitle(base::kTitle);

  auto* frame = widgets::Named<QFrame>("Frame1", this);
  frame->setFrameStyle(QFrame::Box | QFrame::Plain);
  auto* picture = widgets::Named<QLabel>("imgLogo", frame);
  picture->setPixmap(ProgramIcon().pixmap(72, 72));

  auto* lblProductName = MakeLabel("lblProductName", base::kTitle, 1.6, true, frame);
  auto* lblVersion = MakeLabel("lblVersion", QString("Version ") + base::kVersionText, 1.1, false, frame);
  auto* lblPlatform = MakeLabel("lblPlatform", "Windows Vista/XP", 1.0, false, frame);
  lblProgInfo_ = MakeLabel("lblProgInfo", {}, 1.0, false, frame);

  track_ = widgets::Named<QWidget>("fraProgress", frame);
  track_->setFixedSize(base::PixelsFromTwips(kFullWidthTwips), kBarHeight);
  lblProgress_ = widgets::Named<QLabel>("lblProgress", track_);
  lblProgress_->setAutoFillBackground(true);
  QPalette bar = lblProgress_->palette();
  bar.setColor(QPalette::Window, bar.color(QPalette::Highlight));
  lblProgress_->setPalette(bar);
  lblProgress_->setGeometry(0, 0, 0, kBarHeight);

  auto* texts = new QVBoxLayout;
  texts->addWidget(lblProductName);
  texts->addWidget(lblVersion);
  texts->addWidget(lblPlatform);
  auto* head = new QHBoxLayout;
  head->addWidget(picture, 0, Qt::AlignTop);
  head->addSpacing(16);
  head->addLayout(texts, 1);
  auto* column = new QVBoxLayout(frame);
  column->setContentsMargins(28, 24, 28, 20);
  column->addLayout(head);
  column->addSpacing(24);
  column->addWidget(lblProgInfo_);
  column->addWidget(track_, 0, Qt::AlignLeft);
  auto* all = new QVBoxLayout(this);
  all->setContentsMargins(0, 0, 0, 0);
  all->addWidget(frame);

  lblProgInfo_->setVisible(false);
  track_->setVisible(false);
  move(base::PixelsFromTwips(2000), base::PixelsFromTwips(2000));
}

void frmSplash::SetStep(const QString& text) {
  lblProgInfo_->setText(text);
}

void frmSplash::ShowProgress() {
  lblProgInfo_->setVisible(true);
  track_->setVisible(true);
  adjustSize();
}

void frmSplash::SetProgress(double percent) {
  progress_ = std::clamp(percent, 0.0, 100.0);
  lblProgress_->resize(base::PixelsFromTwips(progress_ * kOnePercentTwips), kBarHeight);
}

}  // namespace zth::shell
