#pragma once

#include "windows/ChildWindow.h"

namespace zth::shell {

class WebLink;

/// The program's name and version, and a link to its maker.
class frmAbout final : public windows::ChildWindow {
  Q_OBJECT

 public:
  explicit frmAbout(const windows::Context& context);

  void Form_Load() override;

 private:
  void Label6_Click();

  WebLink* label6_;
};

}  // namespace zth::shell
