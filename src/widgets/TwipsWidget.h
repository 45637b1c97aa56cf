#pragma once

#include <QWidget>

namespace zth::widgets {

/// A widget that can be shown and placed by name, in twips.
class TwipsWidget : public QWidget {
  Q_OBJECT
  Q_PROPERTY(bool Visible READ isVisible WRITE setVisible)
  Q_PROPERTY(int Left READ Left WRITE SetLeft)
  Q_PROPERTY(int Top READ Top WRITE SetTop)
  Q_PROPERTY(int Width READ Width WRITE SetWidth)
  Q_PROPERTY(int Height READ Height WRITE SetHeight)

 public:
  using QWidget::QWidget;

  int Left() const;
  void SetLeft(int twips);
  int Top() const;
  void SetTop(int twips);
  int Width() const;
  void SetWidth(int twips);
  int Height() const;
  void SetHeight(int twips);
};

}  // namespace zth::widgets
