#pragma once

#include <set>
#include <string>

#include <QWidget>

namespace zth::testing {

/// Looks at a widget and everything in it as a user does: each visible widget is drawn, and the texts that it draws are
/// caught. It finds texts that are cut, elided, too small beside the application's font or drawn over one another,
/// widgets that cover a neighbour, stick out of their parent or are smaller than they can be, and lists whose widest
/// item is wider than they are. What scrolls may hold more than it shows.
class Audit {
 public:
  void Look(const QWidget& root, const std::string& where);

  /// One line a fault, each told once: the first place that showed it.
  const std::set<std::string>& Faults() const { return faults_; }
  int Widgets() const { return widgets_; }
  int Texts() const { return texts_; }

 private:
  void LookAt(QWidget& widget);
  void LookAtTexts(QWidget& widget);
  void LookAtPlace(const QWidget& widget);
  void Tell(const QWidget& widget, const std::string& fault);

  std::string where_;
  std::set<std::string> faults_;
  int widgets_ = 0;
  int texts_ = 0;
};

}  // namespace zth::testing
