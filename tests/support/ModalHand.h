#pragma once

#include <functional>
#include <utility>

#include <QApplication>
#include <QTimer>
#include <QVariant>
#include <QWidget>

namespace zth::testing {

/// Acts as the user on real boxes and dialogs: once on each that opens, from within its own event loop, even on one
/// that opens above another.
class ModalHand final : public QObject {
 public:
  using Act = std::function<void(QWidget& modal)>;
  explicit ModalHand(Act act) : act_(std::move(act)) { Wait(); }

  int Seen() const { return seen_; }

 private:
  void Wait() {
    // A new timer each time: a repeating one does not fire again from within its own handler.
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
