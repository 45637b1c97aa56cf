#pragma once

#include <vector>

#include <QAction>
#include <QPointer>
#include <QWidget>

namespace zth::windows {

/// While it exists, only one control of a main window can be used. Everything else ignores mouse, keys and assistive
/// tools, but texts and bars keep their appearance. The windows may be deleted meanwhile.
class Hold {
 public:
  explicit Hold(QWidget& only);
  ~Hold();
  Hold(const Hold&) = delete;
  Hold& operator=(const Hold&) = delete;

 private:
  std::vector<QPointer<QWidget>> held_;
  std::vector<QPointer<QAction>> actions_;
};

}  // namespace zth::windows
