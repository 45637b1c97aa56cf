#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "tasks/ImageText.h"
#include "tasks/RegisterImage.h"

/// Configurations as text to hand over, and back. Makes no transfer. The forms are described in docs/handover.md.
namespace zth::tasks {

enum class ExportForm : std::uint8_t {
  Saved,   ///< what frmSave recalls; whole registers
  C,       ///< a table of writes with the registers' names, for C99 and C++
  Script,  ///< a shell script of i2cset lines
  Csv,     ///< RFC 4180
  Report,  ///< aligned text to read
};
inline constexpr std::array kExportForms{ExportForm::Saved, ExportForm::C, ExportForm::Script, ExportForm::Csv,
                                         ExportForm::Report};

/// For a file dialog: "C table", "c".
struct ExportFormWords {
  std::string_view name;       ///< for people
  std::string_view extension;  ///< without the point: "sav", "c", "sh", "csv", "txt"
};
const ExportFormWords& WordsOf(ExportForm form);

/// The form that a file name's extension stands for, in either case; nothing for another one.
std::optional<ExportForm> FormOfFileName(std::string_view fileName);

/// What is handed over: an image, or only the fields in which it differs from another one.
struct ExportSubject {
  RegisterImage image;
  std::optional<RegisterImage> against = {};
};

/// The text of a configuration, in UTF-8; in ASCII but for names and comments. Saved and Csv have CR LF line ends, the
/// others LF.
///
/// C and Script hold what can be written, in an order that the chip takes: "Configuration 1", with setup complete and
/// the lock if the image has it, comes last. The software reset and the ready bit are never written; what is left out
/// is told in the head. A register of which only some bits are to be written has a mask.
std::string ExportText(ExportForm form, const ExportSubject& subject, const TextNotes& notes);

/// Reads an export again; `origin` becomes the image's origin. The errors name the line, from 1. Any input is taken:
/// foreign and damaged texts give an error, and never an image of a part.
ImageOrError ImageOfC(std::string_view text, const std::string& origin);
ImageOrError ImageOfScript(std::string_view text, const std::string& origin);
ImageOrError ImageOfCsv(std::string_view text, const std::string& origin);

/// Reads any of them by its beginning; what is none of the others counts as a saved configuration. A report is refused
/// with an error that says so. Read at most SavedReader::kMostBytes of a file.
ImageOrError ImageOfText(std::string_view text, const std::string& origin);

}  // namespace zth::tasks
