#pragma once

#include <optional>

#include <QString>

#include "widgets/StripOutlets.h"

namespace zth::widgets {

class Strip;

/// Copies and saves what a chart shows, and tells on the chart how that went. Without outlets it does nothing.
class StripFiles {
 public:
  enum class File { Png, Svg, Csv };

  StripFiles(Strip& strip, const std::optional<StripOutlets>& outlets) : strip_(strip), outlets_(outlets) {}

  bool HasOutlets() const { return outlets_.has_value(); }
  void CopyPicture();
  void CopyData();
  /// By the ending of the path: .png, .svg or .csv. False when it cannot be written.
  bool SaveTo(const QString& path);
  void AskAndSave(File kind);

 private:
  /// What stands beneath a picture taken now.
  QString Caption() const { return outlets_->dataSource ? outlets_->dataSource() : QString(); }

  Strip& strip_;
  const std::optional<StripOutlets> outlets_;
};

}  // namespace zth::widgets
