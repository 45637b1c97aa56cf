#include "widgets/TwipsWidget.h"

#include <algorithm>

#include "base/Twips.h"

namespace zth::widgets {

int TwipsWidget::Left() const {
  return base::TwipsFromPixels(x());
}
void TwipsWidget::SetLeft(int twips) {
  move(base::PixelsFromTwips(twips), y());
}
int TwipsWidget::Top() const {
  return base::TwipsFromPixels(y());
}
void TwipsWidget::SetTop(int twips) {
  move(x(), base::PixelsFromTwips(twips));
}
int TwipsWidget::Width() const {
  return base::TwipsFromPixels(width());
}
void TwipsWidget::SetWidth(int twips) {
  resize(std::max(0, base::PixelsFromTwips(twips)), height());
}
int TwipsWidget::Height() const {
  return base::TwipsFromPixels(height());
}
void TwipsWidget::SetHeight(int twips) {
  resize(width(), std::max(0, base::PixelsFromTwips(twips)));
}

}  // namespace zth::widgets
