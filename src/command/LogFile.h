#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include <QString>

#include "platform/Services.h"

namespace zth::command {

/// A file of samples that grows by whole lines. Nothing is touched before the first line.
class LogFile {
 public:
  enum class Mode : std::uint8_t {
    New,      ///< there must be no such file
    Append,   ///< goes on with a file of the same columns
    Replace,  ///< takes the place of a file
  };

  LogFile(platform::Files& files, QString path, Mode mode) : files_(files), path_(std::move(path)), mode_(mode) {}

  /// Adds a line, behind the head if it is the first of the file. Throws Failure if that fails, and if a file to go on
  /// with has another head.
  void Add(const std::string& head, const std::string& line);

 private:
  void Begin(const std::string& head);
  void GoOn(const std::string& head);
  void Put(const std::string& text);

  platform::Files& files_;
  QString path_;
  Mode mode_;
  bool hasBegun_ = false;
  std::optional<platform::FileState> state_;
};

}  // namespace zth::command
