#pragma once

#include <functional>
#include <utility>

#include <QString>

#include "platform/Services.h"

namespace zth::widgets {

/// The services that a chart exports its picture and data through. All of them outlive the chart.
struct StripOutlets {
  explicit StripOutlets(platform::Services& services, std::function<QString()> source = {})
      : StripOutlets(services.fileDialogs, services.files, services.clipboard, services.process.Folder(),
                     std::move(source)) {}
  StripOutlets(platform::FileDialogs& fileDialogs, platform::Files& writtenFiles, platform::Clipboard& pasteboard,
               QString folder, std::function<QString()> source = {})
      : dialogs(fileDialogs),
        files(writtenFiles),
        clipboard(pasteboard),
        start(std::move(folder)),
        dataSource(std::move(source)) {}

  platform::FileDialogs& dialogs;
  platform::Files& files;
  platform::Clipboard& clipboard;
  QString start;  ///< initial folder of a dialog
  /// Returns the source of the data, to be written below a picture when it is taken. Nothing is written when this is
  /// not set or returns an empty text.
  std::function<QString()> dataSource;
};

}  // namespace zth::widgets
