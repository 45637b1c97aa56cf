#pragma once

#include <cstdint>
#include <optional>

#include "link/Declarations.h"

/// How many transfers there have been, and how many of them failed.
namespace zth::link {

/// Each transfer passes here once as it goes out, whatever its form and its link: a byte over SMBus, a request of the
/// USB adapter.
inline void NoteTransfer() {
  ++Bus.transfers;
}

/// Failed transfers since the start, with the chip in use on SMBus, of any kind on USB. Nothing when the library of the
/// link does not tell, or without a link. Makes no transfer.
std::optional<std::int32_t> FailedTransfers();

/// Tells whether a transfer has failed since it was made. Where that cannot be known it says no: what such a library
/// gives is taken as it is.
class FailureWatch {
 public:
  FailureWatch() : before_(FailedTransfers()) {}

  bool Failed() const;

 private:
  std::optional<std::int32_t> before_;
};

}  // namespace zth::link
