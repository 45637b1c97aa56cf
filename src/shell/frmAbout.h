#pragma once

#include "windows/ChildWindow.h"

class QLabel;

namespace zth::shell {

/// Name and version of the program, and the way to its maker.
class frmAbout final : public windows::ChildWindow {
  Q_OBJECT

 public:
  explicit frmAbout(const windows::Context& context);

  void Form_Load() override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Label6_Click();
  void SetLinkColour(const QColor& colour);

  QLabel* label6_;
};

}  // namespace zth::shell
