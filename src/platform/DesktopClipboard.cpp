#include <QClipboard>
#include <QGuiApplication>
#include <QImage>

#include "platform/DesktopParts.h"

namespace zth::platform {

void DesktopClipboard::PutText(const QString& text) {
  QGuiApplication::clipboard()->setText(text);
}

void DesktopClipboard::PutPicture(const QImage& picture) {
  QGuiApplication::clipboard()->setImage(picture);
}

}  // namespace zth::platform
