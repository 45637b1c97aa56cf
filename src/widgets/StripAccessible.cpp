#include "widgets/StripAccessible.h"

#include "widgets/ActionAccess.h"
#include "widgets/Strip.h"

namespace zth::widgets {
namespace {

class StripAccessible final : public ActionAccess {
 public:
  explicit StripAccessible(Strip* strip)
      : ActionAccess(strip, QAccessible::Chart,
                     {{Strip::tr("Start Ranges"), [strip] { strip->ResetRanges(); }},
                      {Strip::tr("Fit to Data"), [strip] { strip->FitAll(); }},
                      {Strip::tr("Back to Live"), [strip] { strip->GoLive(); }},
                      {showMenuAction(), [strip] { strip->OpenMenu(strip->mapToGlobal(strip->rect().center())); }}}),
        strip_(strip) {}

  QString text(QAccessible::Text kind) const override {
    if (kind == QAccessible::Value) return strip_->Summary();
    const QString own = ActionAccess::text(kind);
    // Some desktops pass on only numeric values: there, screen readers get the traces from the description.
    if (kind == QAccessible::Description) return own.isEmpty() ? strip_->Summary() : own + ". " + strip_->Summary();
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
  QAccessible::installFactory(Make);  // installs the same function only once
}

}  // namespace zth::widgets
