#pragma once

#include <QProxyStyle>

namespace zth::widgets {

/// The desktop's style, with better check boxes and radio buttons on a dark palette. Some styles draw their edges
/// darker than the dark background, so that an unticked one looks like a hole. This style gives them an edge with a
/// contrast of 3 to 1.
class ClearBoxes final : public QProxyStyle {
  Q_OBJECT

 public:
  /// Makes it the program's style. Calling it twice is harmless.
  static void Install();
  /// The name of the style underneath, so that it can be created again.
  static QString NameBeneath();

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;

 private:
  explicit ClearBoxes(const QString& beneath) : QProxyStyle(beneath) {}
};

}  // namespace zth::widgets
