#pragma once

#include <cstdint>
#include <memory>

#include <QTimer>

#include "windows/Desktop.h"

namespace zth::shell {

/// Keeps the journal of the session's changes on disk as it grows, so that the next start can offer to put them back if
/// this session is killed. With two programs of one user at a time, the first one keeps its journal.
class ChangesFile {
 public:
  explicit ChangesFile(const windows::Context& context);

  /// If the last session did not end in order, asks what to do with its changes. Reads and writes the chip only if the
  /// user then says that they are to be put back.
  void Offer();

  /// The user exits: nothing is offered at the next start.
  void End();

 private:
  void Look();
  void Save();
  void Ask();

  windows::Context context_;
  QString path_;  ///< empty if nothing can be kept
  std::shared_ptr<void> claim_;
  std::uint64_t saved_ = 0;  ///< revision of the journal
  QTimer tmrSave_;
  std::shared_ptr<void> listening_;
};

}  // namespace zth::shell
