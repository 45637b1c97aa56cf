#include <QApplication>
#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QRegularExpression>
#include <QStringList>

#include "platform/DesktopParts.h"

namespace zth::platform {
namespace {

QMessageBox::Icon QtIcon(BoxIcon icon) {
  switch (icon) {
    case BoxIcon::Information:
      return QMessageBox::Information;
    case BoxIcon::Warning:
      return QMessageBox::Warning;
    case BoxIcon::Critical:
      return QMessageBox::Critical;
    case BoxIcon::None:
      break;
  }
  return QMessageBox::NoIcon;
}

}  // namespace

BoxAnswer DesktopPrompts::Ask(const BoxQuestion& question) {
  const bool yesNo = question.buttons == BoxButtons::YesNo;
  QMessageBox box(QtIcon(question.icon), question.title, question.text,
                  yesNo ? QMessageBox::Yes | QMessageBox::No : QMessageBox::StandardButtons(QMessageBox::Ok),
                  QApplication::activeWindow());
  // Texts are shown as they stand: with rich text guessed, two blanks would become one.
  box.setTextFormat(Qt::PlainText);
  box.setWindowModality(Qt::ApplicationModal);
  // A short text must not make a box too narrow for its title.
  if (auto* label = box.findChild<QLabel*>("qt_msgbox_label")) {
    label->setMinimumWidth(label->fontMetrics().horizontalAdvance(question.title) * 3 / 2);
  }
  if (yesNo) box.setEscapeButton(QMessageBox::No);
  const int answer = box.exec();
  if (!yesNo) return BoxAnswer::Ok;
  return answer == QMessageBox::Yes ? BoxAnswer::Yes : BoxAnswer::No;
}

QString QtFilter(const QString& filter) {
  const QStringList parts = filter.split('|');
  QStringList entries;
  for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
    static const QRegularExpression brackets(R"(\s*\([^)]*\)\s*$)");
    QString description = parts[i];
    description.remove(brackets);
    entries << description + " (" + QString(parts[i + 1]).replace(';', ' ') + ")";
  }
  return entries.join(";;");
}

QString FilterExtension(const QString& filter) {
  const QString pattern = filter.section('|', 1, 1).section(';', 0, 0).trimmed();
  return pattern.startsWith("*.") && !pattern.contains("*.*") ? pattern.mid(2) : QString();
}

QString DesktopFileDialogs::Ask(const FileQuestion& question, QWidget* parent) {
  QFileDialog dialog(parent, question.caption, question.folder, QtFilter(question.filter));
  dialog.setObjectName(question.name);
  const bool save = question.kind == FileQuestion::Kind::Save;
  dialog.setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
  dialog.setFileMode(save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
  dialog.setDefaultSuffix(FilterExtension(question.filter));
  dialog.setOption(QFileDialog::DontConfirmOverwrite, question.appends);
  if (!question.suggestion.isEmpty()) dialog.selectFile(question.suggestion);
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
  return dialog.selectedFiles().constFirst();
}

}  // namespace zth::platform
