#include "link/BoardName.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "link/Declarations.h"

namespace zth::link {
namespace {

constexpr std::size_t kTroubleLength = 2000;  // characters

using Words = const char*(ZTH_LIBRARY_CALL*)();

/// A character that is not visible itself but changes the line or the direction of writing.
bool ShowsNothing(char32_t character) {
  constexpr std::array kKinds{QChar::Other_Control,   QChar::Other_Format,   QChar::Other_NotAssigned,
                              QChar::Other_Surrogate, QChar::Separator_Line, QChar::Separator_Paragraph};
  return character != U'\n' && std::ranges::find(kKinds, QChar::category(character)) != kKinds.end();
}

/// Text from a foreign library, limited in length and split into lines.
QString Said(Words entry, std::size_t most) {
  const char* text = entry == nullptr ? nullptr : entry();
  if (text == nullptr) return {};
  // A UTF-8 character has at most four bytes. No byte beyond these is looked at, even if the text does not end there.
  const std::size_t mostBytes = 4 * most;
  const void* end = std::memchr(text, 0, mostBytes);
  const auto size = end == nullptr ? mostBytes : static_cast<std::size_t>(static_cast<const char*>(end) - text);
  std::u32string characters = QString::fromUtf8(text, static_cast<qsizetype>(size)).toStdU32String();
  std::erase_if(characters, ShowsNothing);
  characters.resize(std::min(characters.size(), most));
  return QString::fromStdU32String(characters);
}

/// The entry of the given link.
Words Of(std::int16_t mode, Words usb, Words smbus) {
  if (mode == kModeUsb) return usb;
  return mode == kModeSmbus ? smbus : nullptr;
}

}  // namespace

QString BoardNameOf(std::int16_t mode) {
  return Said(Of(mode, Bus.UsbFunctions.BoardName, Bus.Smbus.BoardName), kBoardNameLength).simplified();
}

QString BoardName() {
  return BoardNameOf(Bus.InterfaceMode);
}

QString BoardTrouble(std::int16_t mode) {
  return Said(Of(mode, Bus.UsbFunctions.BoardTrouble, Bus.Smbus.BoardTrouble), kTroubleLength).trimmed();
}

}  // namespace zth::link
