#pragma once

#include <cstdint>
#include <vector>

#include <QObject>

class QWidget;

namespace zth::windows {

class BoundControls;
struct Binding;
struct Bound;

/// Tells on the controls of a table where their bits stand, and marks by colour and weight what has been changed and
/// not applied yet, on the tab of a page as well. A text box that the chip would read back as another value than it
/// shows is marked in a warning colour, and its tool tip tells the value that would go out; it is not refused. So is a
/// control that nobody has changed and that would not give back what the chip holds, since its texts have no exact one
/// for that: its tool tip names both.
class BoundMarks final : public QObject {
 public:
  /// Both must outlive this; the window owns it.
  BoundMarks(QWidget& window, BoundControls& controls);

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  struct Mark {
    bool pending = false;
    bool odd = false;
    bool operator==(const Mark&) const = default;
  };

  /// Looks at the controls of a row's register again, or at all of them.
  void Judge(const Binding* row);
  void JudgeOne(const Bound& bound, Mark& mark);
  void Paint(const Bound& bound, const Mark& mark) const;
  void PaintTabs() const;
  void Repaint();

  QWidget& window_;
  const BoundControls& controls_;
  std::vector<Mark> marks_;  ///< in the table's order
};

}  // namespace zth::windows
