#pragma once

#include <QFrame>

class QLabel;
class QPushButton;

namespace zth::windows {

/// The bar at the top of a window that shows a chip other than the one in use: it says so, and its button reads the
/// window again.
class OriginBar final : public QFrame {
  Q_OBJECT

 public:
  explicit OriginBar(QWidget* window);

  void SetText(const QString& text);
  /// Updates the bar's colours to match the window's palette.
  void Recolour();

 signals:
  void ReadAgain();

 private:
  QLabel* lblOrigin_;
  QPushButton* cmdReadAgain_;
};

}  // namespace zth::windows
