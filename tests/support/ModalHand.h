#pragma once

#include <functional>
#include <utility>

#include <QApplication>
#include <QTimer>
#include <QVariant>
#include <QWidget>

namespace zth::testing {

/// The user's hand on real boxes and dialogs: acts once on each that comes up, from within its own event loop, also on
/// one that comes up over another.
class ModalHand final : public QObject {
 public:
  using Act = std::function<void(QWidget& modal)>;
  explicit ModalHand(Act act) : act_(std::move(act)) { Wait(); }

  int Seen() const { return seen_; }

 private:
  void Wait() {
    // A timer a turn: one that repeats is not fired again from within its own handler.
    QTimer::singleShot(1, this, [this] {
      Wait();
      QWidget* modal = QApplication::activeModalWidget();
      if (modal == nullptr || !modal->isVisible() || modal->property(kDone).toBool()) return;
      modal->setProperty(kDone, true);
      ++seen_;
      act_(*modal);
    });
  }

  static constexpr char kDone[] = "modalHandDone";

  Act act_;
  int seen_ = 0;
};

}  // namespace zth::testing
