#pragma once

#include <cstdint>

#include <QString>

namespace zth::link {

/// Longest name shown, in characters; the rest of a longer one is left out.
inline constexpr int kBoardNameLength = 64;

/// What the library of a link says that it talks to, in one line and fit to be shown. Empty when it says nothing, as a
/// maker's library, and for a mode without a library. Makes no transfer.
QString BoardNameOf(std::int16_t mode);

/// The same for the link in use.
QString BoardName();

/// What the library of a link says that keeps it from its hardware, in lines fit to be shown; empty when it says
/// nothing. Makes no transfer.
QString BoardTrouble(std::int16_t mode);

}  // namespace zth::link
