#include "windows/FileDrops.h"

#include <algorithm>
#include <utility>

#include <QDropEvent>
#include <QMetaObject>
#include <QMimeData>
#include <QUrl>
#include <QWidget>

#include "windows/Handlers.h"

namespace zth::windows {
namespace {

using Take = std::function<void(const QStringList&, const QPoint&)>;

class FileDrops final : public QObject {
 public:
  FileDrops(QWidget& window, int most, Take take)
      : QObject(&window), window_(window), most_(most), take_(std::move(take)) {
    window.setAcceptDrops(true);
    window.installEventFilter(this);
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    const QEvent::Type type = event->type();
    if (type != QEvent::DragEnter && type != QEvent::DragMove && type != QEvent::Drop) {
      return QObject::eventFilter(watched, event);
    }
    auto& drop = *static_cast<QDropEvent*>(event);
    const QStringList paths = PathsOf(drop);
    if (paths.isEmpty()) return QObject::eventFilter(watched, event);
    drop.acceptProposedAction();
    if (type == QEvent::Drop) {
      // The program that the files come from waits until the drop has ended.
      const auto taken = ByUser(window_, [this, paths, at = drop.position().toPoint()] { take_(paths, at); });
      QMetaObject::invokeMethod(this, taken, Qt::QueuedConnection);
    }
    return true;
  }

 private:
  /// Empty if not all of them are files here, or if there are too many.
  QStringList PathsOf(const QDropEvent& drop) const {
    const QList<QUrl> urls = drop.mimeData()->urls();
    if (urls.isEmpty() || urls.size() > most_ || !std::ranges::all_of(urls, &QUrl::isLocalFile)) return {};
    QStringList paths;
    for (const QUrl& url : urls) paths << url.toLocalFile();
    return paths;
  }

  QWidget& window_;
  qsizetype most_;
  Take take_;
};

}  // namespace

void TakeFiles(QWidget& window, int most, Take take) {
  new FileDrops(window, most, std::move(take));
}

}  // namespace zth::windows
