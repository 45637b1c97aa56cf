#include "windows/tools/CompareExport.h"

#include <string_view>

#include <QFileInfo>
#include <QMenu>
#include <QPointer>
#include <QWidget>

#include "widgets/PopUpMenu.h"
#include "windows/data/RecentFiles.h"

namespace zth::windows {
namespace {

QString Text(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

std::string TextOf(tasks::ExportForm form, const tasks::ExportSubject& subject, const Context& context) {
  const QDateTime now = context.services.clock.WallTime();
  std::string comment = subject.image.origin;
  if (subject.against) comment += ", where it differs from " + subject.against->origin;
  return tasks::ExportText(form, subject,
                           {now.toString("yyyy-MM-dd").toStdString(), now.toString("HH:mm:ss").toStdString(), comment});
}

/// "C table" -> "C table (*.c)|*.c|All Files (*)|*"
QString FilterOf(const tasks::ExportFormWords& words) {
  return QString("%1 (*.%2)|*.%2|All Files (*)|*").arg(Text(words.name), Text(words.extension));
}

void Save(tasks::ExportForm form, const ExportMenu& exports, const Context& context, QWidget& owner) {
  const tasks::ExportFormWords& words = tasks::WordsOf(form);
  // What is shown now: the dialog takes its time.
  const std::string text = TextOf(form, exports.subject(), context);
  platform::FileQuestion question;
  question.kind = platform::FileQuestion::Kind::Save;
  question.name = "dlgExport";
  question.caption = "Export as " + Text(words.name);
  question.folder = context.services.process.Folder();
  question.filter = FilterOf(words);
  question.suggestion = "configuration." + Text(words.extension);
  const QPointer<QWidget> self(&owner);
  const QString path = context.services.fileDialogs.Ask(question, &owner);
  if (path.isEmpty() || self == nullptr) return;
  const QString name = QFileInfo(path).fileName();
  if (!context.services.files.Replace(path, QByteArray::fromStdString(text))) {
    exports.tell("Not saved: " + name + " could not be written");
    return;
  }
  if (form != tasks::ExportForm::Report) NoteRecentFile(context.services.settings, path);
  exports.tell("Saved as " + name);
}

}  // namespace

void AddExports(QMenu& menu, QWidget& owner, const Context& context, const ExportMenu& exports) {
  QMenu* save = menu.addMenu(exports.save);
  QMenu* copy = menu.addMenu(exports.copy);
  save->setObjectName("mnuSave" + exports.name);
  copy->setObjectName("mnuCopy" + exports.name);
  for (QMenu* each : {save, copy}) each->setEnabled(exports.enabled);
  int number = 0;
  for (const tasks::ExportForm form : tasks::kExportForms) {
    ++number;
    const QString caption = QString("&%1  %2").arg(number).arg(Text(tasks::WordsOf(form).name));
    const QString extension = Text(tasks::WordsOf(form).extension);
    widgets::AddEntry(*save, owner, "mnuSave" + exports.name + "(" + extension + ")", caption + "...",
                      [form, exports, context, &owner] { Save(form, exports, context, owner); });
    widgets::AddEntry(
        *copy, owner, "mnuCopy" + exports.name + "(" + extension + ")", caption, [form, exports, context] {
          context.services.clipboard.PutText(QString::fromStdString(TextOf(form, exports.subject(), context)));
          exports.tell("Copied as " + Text(tasks::WordsOf(form).name));
        });
  }
}

}  // namespace zth::windows
