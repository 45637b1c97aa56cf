#pragma once

#include <vector>

#include <QString>
#include <QStringList>

class QWidget;

/// The seams through which the program asks its user something.
namespace zth::platform {

/// A message box.
enum class BoxIcon { None, Information, Warning, Critical };
enum class BoxButtons { Ok, YesNo };
enum class BoxAnswer {
  Ok,
  Yes,
  No,
  TryAgain,   ///< "Try again", only where the question offers it
  Simulated,  ///< "Start with the simulated board", as well
};

struct BoxQuestion {
  QString title;
  QString text;
  BoxIcon icon = BoxIcon::None;
  BoxButtons buttons = BoxButtons::Ok;
  QWidget* asker = nullptr;  ///< in the window that asks, whose closing cancels the box; null for the program itself
  QString details = {};      ///< shown beneath the text, with "Copy details" for the clipboard; empty: none
  std::vector<BoxAnswer> offers = {};  ///< TryAgain, Simulated: a button each beside those of `buttons`
};

/// A box whose answers have captions of their own.
struct ChoiceQuestion {
  QString title;
  QString text;
  QStringList choices;  ///< captions with their mnemonics, from left to right
  int escape = 0;       ///< the choice that Escape, and closing the box, stand for; Enter takes it too
  BoxIcon icon = BoxIcon::Warning;
  QWidget* asker = nullptr;  ///< as of a BoxQuestion
};

class Prompts {
 public:
  virtual ~Prompts() = default;
  /// Shows the box, application-modal, and returns when it has been answered. Closing a box with Yes and No counts as
  /// No, and so does the closing of the window that asks; that window is there until its handler has returned.
  virtual BoxAnswer Ask(const BoxQuestion& question) = 0;
  /// The same with choices; the result is the index of the one taken. Timers go on meanwhile, and so does the monitor:
  /// look anew at what the question was about.
  virtual int Choose(const ChoiceQuestion& question) = 0;
};

/// An open or save file dialog.
struct FileQuestion {
  enum class Kind { Open, Save };
  Kind kind = Kind::Open;
  QString name;          ///< the dialog's objectName, as "CommonDialog1"
  QString caption;       ///< its title
  QString folder;        ///< where it starts, if it can be written; else in the folder used last, or in the documents
  QString filter;        ///< "Log Files (*.csv)|*.csv": description and pattern pairs joined by bars
  QString suggestion;    ///< file name offered at the start; may be empty
  bool appends = false;  ///< the file will be extended, so that choosing an existing one needs no warning
};

class FileDialogs {
 public:
  virtual ~FileDialogs() = default;
  /// The full path chosen, or an empty text when the dialog was cancelled. A Save adds the filter's first extension to
  /// a name without one, and asks before it takes a file that exists, unless the question says that it appends. The
  /// closing of the parent's window cancels it; the window is there until the handler that asks has returned.
  virtual QString Ask(const FileQuestion& question, QWidget* parent) = 0;
};

}  // namespace zth::platform
