#pragma once

#include <QWidget>

namespace zth::widgets {

/// A two-state lamp: a green disc with a check mark if Value is false, a red octagon with an exclamation mark if it is
/// true, so that the states do not depend on colour. Display only: it takes no focus and no clicks.
class Toggle : public QWidget {
  Q_OBJECT
  Q_PROPERTY(bool Value READ Value WRITE SetValue USER true)
  Q_PROPERTY(bool Stale READ Stale WRITE SetStale)
  Q_PROPERTY(bool Visible READ Visible WRITE setVisible)

 public:
  explicit Toggle(QWidget* parent = nullptr);

  bool Value() const { return value_; }
  void SetValue(bool value);

  /// Whether the state is old because it could not be read. The lamp is then grey with a question mark, in the shape of
  /// its state.
  bool Stale() const { return stale_; }
  void SetStale(bool stale);

  /// False if the lamp itself was hidden, regardless of its window. A hidden lamp keeps its place in a layout.
  bool Visible() const;

  /// "alert" or "no alert"; followed by ", not read" when stale.
  QString StateText() const;

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void TellState();

  bool value_ = false;
  bool stale_ = false;
};

}  // namespace zth::widgets
