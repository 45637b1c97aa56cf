#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "tasks/ImageText.h"
#include "tasks/RegisterImage.h"

/// Saved configurations (tasks/SavedConfig.h) as images.
namespace zth::tasks {

/// Which registers of an image a saved configuration lists.
enum class SavedRows : std::uint8_t {
  Writable,  ///< those that frmSave saves: each row of the register table that can be written
  All,       ///< everything that the image holds
};

/// The whole text of a saved configuration, byte for byte as frmSave writes it. Of a register that the image knows only
/// in part, the other bits have their defaults.
std::string SavedText(const RegisterImage& image, const TextNotes& notes, SavedRows rows = SavedRows::Writable);

/// The values that a recall of the text would leave in the registers. An error if the text has no start, breaks off
/// before its "}", is in a wide encoding, or has neither the head of a saved configuration nor its lines.
ImageOrError ImageOfSaved(std::string_view text, const std::string& origin);

/// The comment in the head of a saved configuration; empty if there is none.
std::string SavedComment(std::string_view text);

/// The text with another comment, which must be one line; all else stays as it is.
std::string WithSavedComment(std::string_view text, std::string_view comment);

}  // namespace zth::tasks
