#pragma once

#include <QDir>
#include <QString>
#include <QWidget>

namespace zth::gallery {

/// Takes pictures of widgets into one folder.
class Camera {
 public:
  explicit Camera(const QString& folder) : folder_(folder) {}

  /// Writes `name` ("pictures/main") as a PNG below the folder and prints its name; throws std::runtime_error if it
  /// cannot be written.
  void Take(QWidget& widget, const QString& name) const;

 private:
  QDir folder_;
};

}  // namespace zth::gallery
