#pragma once

#include <cstdint>

#include <QString>

namespace zth::link {

/// Longest name shown, in characters; a longer one is cut.
inline constexpr int kBoardNameLength = 64;

/// The name of the hardware as the link's library reports it, in one line and safe to display. Empty when the library
/// reports none, as a maker's library does, and for a mode without a library. Makes no transfer.
QString BoardNameOf(std::int16_t mode);

/// The same for the link in use.
QString BoardName();

/// What keeps the link's library from its hardware, as the library reports it, in lines that are safe to display; empty
/// when it reports nothing. Makes no transfer.
QString BoardTrouble(std::int16_t mode);

}  // namespace zth::link
