#pragma once

#include <cstdint>
#include <vector>

#include <QObject>

class QWidget;

namespace zth::windows {

class BoundControls;
struct Binding;
struct Bound;

/// Shows in the controls' tool tips where their bits are, and marks unapplied changes by colour and weight, on the
/// page's tab as well. A text box that would read back from the chip as a different value is marked in a warning
/// colour, and its tool tip gives the value that would be written; the text is not rejected. An unchanged control is
/// marked too if it would not write the value that the chip holds, because no text of its own matches that exactly: its
/// tool tip gives both values.
class BoundMarks final : public QObject {
 public:
  /// Both must outlive this object, which the window owns.
  BoundMarks(QWidget& window, BoundControls& controls);

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  struct Mark {
    bool pending = false;
    bool odd = false;
    bool operator==(const Mark&) const = default;
  };

  /// Judges the controls of a row's register again, or all controls if null.
  void Judge(const Binding* row);
  void JudgeOne(const Bound& bound, Mark& mark);
  void Paint(const Bound& bound, const Mark& mark) const;
  void PaintTabs() const;
  void Repaint();

  QWidget& window_;
  const BoundControls& controls_;
  std::vector<Mark> marks_;  ///< in table order
};

}  // namespace zth::windows
