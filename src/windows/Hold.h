#pragma once

#include <vector>

#include <QAction>
#include <QPointer>
#include <QWidget>

namespace zth::windows {

/// While it lives, one control of a main window can be used and nothing else of it: neither by mouse or key nor by an
/// assistive tool. Texts and bars keep their looks. The windows may go meanwhile.
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
