#include "platform/EndWatch.h"

#include <utility>

#include <QEvent>
#include <QGuiApplication>

namespace zth::platform {

EndWatch::EndWatch(EndOrders orders) : orders_(std::move(orders)), signals_([this] { orders_.end(); }) {
  qApp->installEventFilter(this);
  // Direct connection: the session continues as soon as this returns.
  connect(
      qGuiApp, &QGuiApplication::commitDataRequest, this, [this] { orders_.save(); }, Qt::DirectConnection);
}

EndWatch::~EndWatch() = default;

bool EndWatch::eventFilter(QObject* watched, QEvent* event) {
  if (watched == qApp && event->type() == QEvent::Quit) orders_.end();
  return QObject::eventFilter(watched, event);
}

}  // namespace zth::platform
