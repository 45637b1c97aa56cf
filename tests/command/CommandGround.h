#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "chip/ChipState.h"
#include "command/Commands.h"
#include "command/Failure.h"
#include "link/Declarations.h"
#include "tasks/TasksState.h"
#include "tests/support/Steps.h"

namespace zth::testing {

/// The command on the fake board, in virtual time, beside the program on the same board.
class CommandTest : public ::testing::Test {
 protected:
  /// Runs the command as a process of its own; `out`, `error` and `traffic` are its output and its transfers.
  int Run(const std::vector<std::string>& arguments) {
    Forget();
    out.clear();
    error.clear();
    const int status = command::Run(
        arguments, desk.services,
        {[this](std::string_view text) { out += text; }, [this](std::string_view text) { error += text; }});
    traffic = desk.board.TakeTraffic();
    return status;
  }

  /// Runs it, and returns its transfers behind those of the start.
  Traffic Sent(const std::vector<std::string>& arguments) {
    EXPECT_EQ(Run({"find"}), command::kDone);
    const auto start = static_cast<std::ptrdiff_t>(traffic.size());
    EXPECT_EQ(Run(arguments), command::kDone) << error;
    return {traffic.begin() + std::min(start, static_cast<std::ptrdiff_t>(traffic.size())), traffic.end()};
  }

  /// Transfers with the chip at 58h on USB, in the notation of Steps.h.
  static Traffic Usb(const std::string& text) {
    link::Bus.InterfaceMode = link::kModeUsb;
    link::Bus.DeviceAddress = 0x58;
    return T(text);
  }

  static void Forget() {
    link::Bus = {};
    chip::Model = {};
    tasks::Work = {};
  }

  std::string File(const std::string& name, const std::string& text) {
    const QString path = folder_.filePath(QString::fromStdString(name));
    desk.files.Replace(path, QByteArray::fromStdString(text));
    return path.toStdString();
  }
  std::string Path(const std::string& name) const {
    return folder_.filePath(QString::fromStdString(name)).toStdString();
  }
  std::string Text(const std::string& path) {
    return desk.files.Read(QString::fromStdString(path), 1 << 20).value_or(QByteArray()).toStdString();
  }

  Desk desk;
  std::string out;
  std::string error;
  Traffic traffic;

 private:
  QTemporaryDir folder_;
};

}  // namespace zth::testing
