#pragma once

#include <QProxyStyle>

namespace zth::widgets {

/// The style that the desktop gives, but for boxes and rings to tick on a dark palette: there some styles draw their
/// edges darker than the dark ground, and an unticked one is a hole. They get an edge that stands out by 3 to 1.
class ClearBoxes final : public QProxyStyle {
  Q_OBJECT

 public:
  /// Makes it the program's style. Doing it twice is harmless.
  static void Install();
  /// The name of the style beneath, by which it can be made again.
  static QString NameBeneath();

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;

 private:
  explicit ClearBoxes(const QString& beneath) : QProxyStyle(beneath) {}
};

}  // namespace zth::widgets
