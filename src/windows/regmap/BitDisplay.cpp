#include "windows/regmap/BitDisplay.h"

#include <algorithm>
#include <utility>

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStringList>
#include <QStyle>
#include <QStyleOptionGroupBox>

#include "base/BitField.h"
#include "base/Twips.h"
#include "widgets/ActionAccess.h"
#include "widgets/Named.h"
#include "windows/BoxHint.h"

namespace zth::windows {
namespace {

constexpr int kTopTwips = 240;
constexpr int kSideTwips = 100;
constexpr int kGap = 2;  // pixels between two digits' boxes, half on each side

// The longest names of the table, so that no register makes the window grow.
constexpr const char* kWidestName = "LCAL";
constexpr const char* kLongestName = "F2Max";

/// The ground of a 1: the accent colour, away from that of its text as far as reading takes it.
QColor GroundOfOne(const QPalette& colours) {
  const QColor accent = colours.color(QPalette::Highlight);
  return colours.color(QPalette::HighlightedText).lightnessF() > 0.5 ? accent.darker(130) : accent.lighter(130);
}

class BitAccess final : public widgets::ActionAccess {
 public:
  explicit BitAccess(BitLabel* bit)
      : ActionAccess(bit, QAccessible::CheckBox, {{toggleAction(), [bit] { emit bit->Click(); }}}), bit_(bit) {}

  QAccessible::State state() const override {
    QAccessible::State state = ActionAccess::state();
    state.checkable = true;
    state.checked = bit_->IsOne();
    return state;
  }

 private:
  BitLabel* bit_;
};

QAccessibleInterface* Make(const QString&, QObject* object) {
  auto* bit = qobject_cast<BitLabel*>(object);
  return bit != nullptr ? new BitAccess(bit) : nullptr;
}

}  // namespace

BitLabel::BitLabel(int bit, QWidget* parent) : QLabel("0", parent), bit_(bit) {
  QAccessible::installFactory(Make);
  setObjectName(QString("lblBit(%1)").arg(bit));
  setAlignment(Qt::AlignCenter);
  setFocusPolicy(Qt::StrongFocus);
  setCursor(Qt::PointingHandCursor);
  QFont heavy = font();
  heavy.setBold(true);
  setFont(heavy);
  SetBitName("X");
}

void BitLabel::SetDigit(bool one) {
  if (one == IsOne()) return;
  setText(one ? "1" : "0");
  update();
  if (!QAccessible::isActive()) return;
  QAccessible::State changed;
  changed.checked = true;
  QAccessibleStateChangeEvent event(this, changed);
  QAccessible::updateAccessibility(&event);
}

void BitLabel::SetBitName(const QString& name) {
  setAccessibleName(QString("Bit %1, %2").arg(bit_).arg(name));
}

void BitLabel::TellFlip(const QString& hint, bool foreign) {
  setToolTip(hint);
  setAccessibleDescription(hint);
  if (std::exchange(foreign_, foreign) != foreign) update();
}

QSize BitLabel::sizeHint() const {
  const QFontMetrics metrics(font());
  return {metrics.horizontalAdvance("0") * 3, metrics.height() * 3 / 2};
}

void BitLabel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const bool live = underMouse() || hasFocus();
  const QPalette& colours = palette();
  const QRectF box = QRectF(rect()).adjusted(kGap + 0.5, 0.5, -kGap - 0.5, -0.5);
  painter.setPen(QPen(colours.color(live ? QPalette::Highlight : QPalette::Mid), hasFocus() ? 2 : 1));
  QColor ground = IsOne() ? GroundOfOne(colours) : colours.color(QPalette::Base);
  QColor digit = colours.color(IsOne() ? QPalette::HighlightedText : QPalette::Text);
  if (foreign_) {
    const HintColours hinted = HintColoursOn(window()->palette());
    ground = IsOne() ? hinted.text : hinted.ground;
    digit = IsOne() ? hinted.ground : hinted.text;
  }
  painter.setBrush(ground);
  painter.drawRoundedRect(box, 4, 4);
  if (hasFocus()) {
    painter.setPen(QPen(IsOne() || foreign_ ? digit : colours.color(QPalette::Highlight), 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(box.adjusted(2.5, 2.5, -2.5, -2.5), 2, 2);
  }
  painter.setPen(digit);
  painter.drawText(rect(), Qt::AlignCenter, text());
}

void BitLabel::mousePressEvent(QMouseEvent* event) {
  event->setAccepted(event->button() == Qt::LeftButton);
}

void BitLabel::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint())) emit Click();
}

void BitLabel::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Space:
    case Qt::Key_Return:
    case Qt::Key_Enter:
      // A key held down must not make the bit flutter in the chip.
      if (!event->isAutoRepeat()) emit Click();
      return;
    case Qt::Key_Left:
      if (bit_ < BitDisplay::kBits - 1) focusPreviousChild();
      return;
    case Qt::Key_Right:
      if (bit_ > 0) focusNextChild();
      return;
    default:
      QLabel::keyPressEvent(event);
  }
}

void BitLabel::enterEvent(QEnterEvent* event) {
  QLabel::enterEvent(event);
  update();
}

void BitLabel::leaveEvent(QEvent* event) {
  QLabel::leaveEvent(event);
  update();
}

BitDisplay::BitDisplay(QWidget* parent) : QGroupBox("Bit Display", parent) {
  setObjectName("fraBits");
  for (int bit = kBits - 1; bit >= 0; --bit) {  // in the order of Tab
    auto* digit = new BitLabel(bit, this);
    bits_.at(static_cast<std::size_t>(bit)) = digit;
    connect(digit, &BitLabel::Click, this, [this, bit] { emit lblBit_Click(bit); });
    const int place = kBits - 1 - bit;
    auto* name = widgets::Named<QLabel>(QString("lblInfo(%1)").arg(place), "X", this);
    name->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    names_.at(static_cast<std::size_t>(place)) = name;
  }
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void BitDisplay::ShowRegisterBits(int value) {
  for (int bit = kBits - 1; bit >= 0; --bit) Bit(bit).SetDigit(base::GetBit(static_cast<unsigned>(value), bit));
}

void BitDisplay::ShowBitNames(const QString& names) {
  const QStringList parts = names.split(':');
  for (int place = 0; place < kBits && place < parts.size(); ++place) {
    names_.at(static_cast<std::size_t>(place))->setText(parts[place]);
    Bit(kBits - 1 - place).SetBitName(parts[place]);
  }
}

void BitDisplay::Flip(int bit) {
  Bit(bit).SetDigit(!Bit(bit).IsOne());
}

int BitDisplay::Value() const {
  unsigned value = 0;
  for (int bit = 0; bit < kBits; ++bit) value = base::PutBit(value, bit, Bit(bit).IsOne());
  return static_cast<int>(value);
}

int BitDisplay::LabelsTop() const {
  // The digits keep clear of the frame's title, however large the font.
  QStyleOptionGroupBox option;
  initStyleOption(&option);
  const QRect inside = style()->subControlRect(QStyle::CC_GroupBox, &option, QStyle::SC_GroupBoxContents, this);
  return std::max(base::PixelsFromTwips(kTopTwips), inside.top() + kGap);
}

QSize BitDisplay::minimumSizeHint() const {
  const int name =
      std::max(fontMetrics().horizontalAdvance(kWidestName), fontMetrics().horizontalAdvance(kLongestName));
  const int cell = std::max(name + fontMetrics().averageCharWidth(), Bit(0).sizeHint().width());
  const int height = LabelsTop() + Bit(0).sizeHint().height() + kGap + fontMetrics().height() + 4 * kGap;
  return {kBits * cell + base::PixelsFromTwips(2 * kSideTwips), height};
}

void BitDisplay::LayoutBitLabels() {
  const int whole = base::TwipsFromPixels(width());
  const int cell = (whole - 2 * kSideTwips) / kBits;
  const int top = LabelsTop();
  const int digitHeight = Bit(0).sizeHint().height();
  for (int bit = kBits - 1; bit >= 0; --bit) {
    const int left = base::PixelsFromTwips(whole - ((bit + 1) * cell + kSideTwips));
    // Up to where the next bit begins: the rounding of a width of its own would let neighbours overlap.
    const int right = base::PixelsFromTwips(whole - (bit * cell + kSideTwips));
    const QRect digit(left, top, right - left, digitHeight);
    Bit(bit).setGeometry(digit);
    QLabel* name = names_.at(static_cast<std::size_t>(kBits - 1 - bit));
    name->setGeometry(digit.left(), digit.bottom() + 1 + kGap, digit.width(), fontMetrics().height() + kGap);
  }
}

void BitDisplay::resizeEvent(QResizeEvent* event) {
  QGroupBox::resizeEvent(event);
  LayoutBitLabels();
}

void BitDisplay::changeEvent(QEvent* event) {
  QGroupBox::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
    updateGeometry();
    LayoutBitLabels();
  }
}

}  // namespace zth::windows
