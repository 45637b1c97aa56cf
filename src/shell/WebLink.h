#pragma once

#include <QLabel>

namespace zth::shell {

/// A web address that is opened by a click, Space or Enter.
class WebLink final : public QLabel {
  Q_OBJECT

 public:
  WebLink(const QString& address, QWidget* parent);

  /// Marks the link as visited, in purple.
  void MarkVisited();

 signals:
  void Click();

 protected:
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void ShowColour();

  bool visited_ = false;
};

}  // namespace zth::shell
