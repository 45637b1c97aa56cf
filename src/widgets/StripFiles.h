#pragma once

#include <optional>

#include <QString>

#include "widgets/StripOutlets.h"

namespace zth::widgets {

class Strip;

/// Copies and saves a chart's contents and reports the outcome on the chart. Does nothing without outlets.
class StripFiles {
 public:
  enum class File { Png, Svg, Csv };

  StripFiles(Strip& strip, const std::optional<StripOutlets>& outlets) : strip_(strip), outlets_(outlets) {}

  bool HasOutlets() const { return outlets_.has_value(); }
  void CopyPicture();
  void CopyData();
  /// The format follows the file extension: .png, .svg or .csv. False if writing fails.
  bool SaveTo(const QString& path);
  void AskAndSave(File kind);

 private:
  /// The caption for a picture taken now.
  QString Caption() const { return outlets_->dataSource ? outlets_->dataSource() : QString(); }

  Strip& strip_;
  const std::optional<StripOutlets> outlets_;
};

}  // namespace zth::widgets
