#include "widgets/StripAccessible.h"

#include <QAccessible>
#include <QAccessibleWidget>

#include "widgets/Strip.h"

namespace zth::widgets {
namespace {

class StripAccessible final : public QAccessibleWidget {
 public:
  explicit StripAccessible(Strip* strip) : QAccessibleWidget(strip, QAccessible::Chart), strip_(strip) {}

  QString text(QAccessible::Text kind) const override {
    if (kind == QAccessible::Value) return strip_->Summary();
    const QString own = QAccessibleWidget::text(kind);
    if (kind == QAccessible::Name && own.isEmpty()) return strip_->Title();
    return own;
  }

 private:
  Strip* strip_;
};

QAccessibleInterface* Make(const QString&, QObject* object) {
  auto* strip = qobject_cast<Strip*>(object);
  return strip != nullptr ? new StripAccessible(strip) : nullptr;
}

}  // namespace

void InstallStripAccessibility() {
  QAccessible::installFactory(Make);  // installs the same function once only
}

}  // namespace zth::widgets
