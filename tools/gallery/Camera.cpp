#include "Camera.h"

#include <cstdio>
#include <stdexcept>

#include <QFileInfo>

namespace zth::gallery {

void Camera::Take(QWidget& widget, const QString& name) const {
  const QString file = folder_.filePath(name + ".png");
  QDir().mkpath(QFileInfo(file).path());
  if (!widget.grab().save(file, "PNG")) throw std::runtime_error("cannot write " + file.toStdString());
  std::printf("%s\n", qPrintable(file));
}

}  // namespace zth::gallery
