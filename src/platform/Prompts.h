#pragma once

#include <vector>

#include <QString>
#include <QStringList>

class QWidget;

/// The seams through which the program asks the user something.
namespace zth::platform {

/// A message box.
enum class BoxIcon { None, Information, Warning, Critical };
enum class BoxButtons { Ok, YesNo };
enum class BoxAnswer {
  Ok,
  Yes,
  No,
  TryAgain,   ///< "Try again", only where the question offers it
  Simulated,  ///< "Start with the simulated board", likewise
};

struct BoxQuestion {
  QString title;
  QString text;
  BoxIcon icon = BoxIcon::None;
  BoxButtons buttons = BoxButtons::Ok;
  QWidget* asker = nullptr;  ///< a widget in the asking window, whose closing cancels the box; null for the program
                             ///< itself
  QString details = {};      ///< shown below the text, with a "Copy details" button; empty: none
  std::vector<BoxAnswer> offers = {};  ///< TryAgain, Simulated: one button each, next to those of `buttons`
};

/// A box with its own button captions.
struct ChoiceQuestion {
  QString title;
  QString text;
  QStringList choices;  ///< captions with mnemonics, left to right
  int escape = 0;       ///< index of the choice taken by Escape, by closing the box, and by Enter
  BoxIcon icon = BoxIcon::Warning;
  QWidget* asker = nullptr;  ///< as in BoxQuestion
};

class Prompts {
 public:
  virtual ~Prompts() = default;
  /// Shows the box, application-modal, and returns the answer. Closing a Yes/No box counts as No, and so does closing
  /// the asking window; that window exists until its handler has returned.
  virtual BoxAnswer Ask(const BoxQuestion& question) = 0;
  /// Like Ask, with choices; returns the index of the choice. Timers and the monitor keep running meanwhile, so check
  /// again whatever the question was about.
  virtual int Choose(const ChoiceQuestion& question) = 0;
};

/// An open or save file dialog.
struct FileQuestion {
  enum class Kind { Open, Save };
  Kind kind = Kind::Open;
  QString name;          ///< the dialog's objectName, for example "CommonDialog1"
  QString caption;       ///< its title
  QString folder;        ///< initial folder, if writable; otherwise the last used folder, or the documents folder
  QString filter;        ///< "Log Files (*.csv)|*.csv": pairs of description and pattern, separated by bars
  QString suggestion;    ///< initial file name; may be empty
  bool appends = false;  ///< the file will be appended to, so choosing an existing one needs no warning
};

class FileDialogs {
 public:
  virtual ~FileDialogs() = default;
  /// Returns the full path, or an empty text if the dialog was cancelled. Saving adds the filter's first extension to a
  /// name without one, and asks before choosing an existing file unless `appends` is set. Closing the parent's window
  /// cancels the dialog; the window exists until the asking handler has returned.
  virtual QString Ask(const FileQuestion& question, QWidget* parent) = 0;
};

}  // namespace zth::platform
