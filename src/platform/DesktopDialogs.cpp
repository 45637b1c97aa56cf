#include <algorithm>
#include <vector>

#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QStringList>

#include "platform/BoxDetails.h"
#include "platform/DesktopParts.h"
#include "platform/Questions.h"

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

/// Keeps a box with a short text wide enough for its title. A separate layout row sets the width: a minimum width on
/// the label would replace the label's own and cut off long texts.
void WidenForTitle(QMessageBox& box) {
  auto* grid = qobject_cast<QGridLayout*>(box.layout());
  if (grid == nullptr) return;
  const int width = box.fontMetrics().horizontalAdvance(box.windowTitle()) * 3 / 2;
  grid->addItem(new QSpacerItem(width, 0), grid->rowCount(), 0, 1, grid->columnCount());
}

/// On the heap, as a child of the asker: if that window is deleted after all, its boxes go with it.
QMessageBox* MakeBox(BoxIcon icon, const QString& title, const QString& text, QWidget* asker) {
  auto* box = new QMessageBox(QtIcon(icon), title, text, QMessageBox::NoButton,
                              asker != nullptr ? asker : QApplication::activeWindow());
  // Texts are shown literally: if Qt guessed rich text, two blanks would become one.
  box->setTextFormat(Qt::PlainText);
  box->setWindowModality(Qt::ApplicationModal);
  WidenForTitle(*box);
  return box;
}

/// Adds the question's extra buttons and returns each with its answer.
std::vector<std::pair<QAbstractButton*, BoxAnswer>> AddOffers(QMessageBox& box, const BoxQuestion& question) {
  std::vector<std::pair<QAbstractButton*, BoxAnswer>> buttons;
  for (const BoxAnswer offer : question.offers) {
    const bool again = offer == BoxAnswer::TryAgain;
    auto* button = box.addButton(again ? "&Try again" : "&Start with the simulated board", QMessageBox::ActionRole);
    button->setObjectName(again ? "cmdTryAgain" : "cmdSimulated");
    buttons.emplace_back(button, offer);
  }
  return buttons;
}

constexpr char kLastFolder[] = "FileFolder";

bool TakesFiles(const QString& folder) {
  const QFileInfo info(folder);
  return info.isDir() && info.isWritable();
}

}  // namespace

BoxAnswer DesktopPrompts::Ask(const BoxQuestion& question) {
  const bool yesNo = question.buttons == BoxButtons::YesNo;
  const BoxAnswer cancelled = yesNo ? BoxAnswer::No : BoxAnswer::Ok;
  if (IsClosed(question.asker)) return cancelled;
  const OpenQuestion open;
  const QPointer box = MakeBox(question.icon, question.title, question.text, question.asker);
  box->setStandardButtons(yesNo ? QMessageBox::Yes | QMessageBox::No : QMessageBox::StandardButtons(QMessageBox::Ok));
  box->setEscapeButton(yesNo ? QMessageBox::No : QMessageBox::Ok);
  if (!yesNo) box->setDefaultButton(QMessageBox::Ok);
  const auto offers = AddOffers(*box, question);
  if (!question.details.isEmpty()) AddDetails(*box, question.details);
  const int answer = box->exec();
  if (box == nullptr) return cancelled;
  const auto offer = std::ranges::find(offers, box->clickedButton(), &std::pair<QAbstractButton*, BoxAnswer>::first);
  const BoxAnswer other = offer == offers.end() ? cancelled : offer->second;
  delete box;
  return answer == QMessageBox::Yes ? BoxAnswer::Yes : other;
}

int DesktopPrompts::Choose(const ChoiceQuestion& question) {
  if (IsClosed(question.asker)) return question.escape;
  const OpenQuestion open;
  const QPointer box = MakeBox(question.icon, question.title, question.text, question.asker);
  std::vector<QAbstractButton*> buttons;
  // All buttons have the same role; otherwise the desktop would reorder them.
  for (const QString& caption : question.choices) {
    buttons.push_back(box->addButton(caption, QMessageBox::ActionRole));
    buttons.back()->setObjectName(QString("choice(%1)").arg(buttons.size() - 1));
  }
  auto* escape = qobject_cast<QPushButton*>(buttons.at(static_cast<std::size_t>(question.escape)));
  box->setEscapeButton(escape);
  box->setDefaultButton(escape);
  box->exec();
  if (box == nullptr) return question.escape;
  const auto clicked = std::ranges::find(buttons, box->clickedButton());
  const auto answer = clicked == buttons.end() ? question.escape : static_cast<int>(clicked - buttons.begin());
  delete box;
  return answer;
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

QString DesktopFileDialogs::StartFolder(const QString& wanted) const {
  // The same folder for saving and opening, so that a file just saved is found by the next dialog.
  using Paths = QStandardPaths;
  for (const QString& folder :
       {wanted, settings_.Get(kLastFolder, {}), Paths::writableLocation(Paths::DocumentsLocation),
        Paths::writableLocation(Paths::HomeLocation)}) {
    if (TakesFiles(folder)) return folder;
  }
  return wanted;
}

QString DesktopFileDialogs::Ask(const FileQuestion& question, QWidget* parent) {
  if (IsClosed(parent)) return {};
  const OpenQuestion open;
  const QPointer dialog =
      new QFileDialog(parent, question.caption, StartFolder(question.folder), QtFilter(question.filter));
  dialog->setObjectName(question.name);
  const bool save = question.kind == FileQuestion::Kind::Save;
  dialog->setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
  dialog->setFileMode(save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
  dialog->setDefaultSuffix(FilterExtension(question.filter));
  dialog->setOption(QFileDialog::DontConfirmOverwrite, question.appends);
  if (!question.suggestion.isEmpty()) dialog->selectFile(question.suggestion);
  const bool accepted = dialog->exec() == QDialog::Accepted;
  if (dialog == nullptr) return {};
  const QString file = accepted ? dialog->selectedFiles().value(0) : QString();
  delete dialog;
  if (!file.isEmpty()) settings_.Put(kLastFolder, QFileInfo(file).absolutePath());
  return file;
}

}  // namespace zth::platform
