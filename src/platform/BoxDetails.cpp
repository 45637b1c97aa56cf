#include "platform/BoxDetails.h"

#include <algorithm>

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>

#include "platform/DesktopParts.h"

namespace zth::platform {
namespace {

constexpr int kCharacters = 96;
constexpr int kLines = 18;
constexpr int kWidest = 900;  // pixels: Qt makes no message box wider than 1000

QPlainTextEdit* MakeText(QMessageBox& box, const QString& details) {
  auto* text = new QPlainTextEdit(details, &box);
  text->setObjectName("txtDetails");
  text->setAccessibleName("Details");
  text->setReadOnly(true);
  // Text can be selected with the keyboard too, and Tab moves on to the buttons.
  text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  text->setTabChangesFocus(true);
  const QFontMetrics metrics = text->fontMetrics();
  const QSize screen = box.screen()->availableSize();
  text->setMinimumSize(std::min({metrics.averageCharWidth() * kCharacters, screen.width() * 3 / 5, kWidest}),
                       std::min(metrics.lineSpacing() * kLines, screen.height() * 2 / 5));
  return text;
}

QPushButton* MakeCopy(QMessageBox& box, const QString& details) {
  auto* copy = new QPushButton("&Copy details", &box);
  copy->setObjectName("cmdCopyDetails");
  copy->setAutoDefault(false);
  QObject::connect(copy, &QPushButton::clicked, &box, [details] { DesktopClipboard().PutText(details); });
  return copy;
}

}  // namespace

void AddDetails(QMessageBox& box, const QString& details) {
  auto* grid = qobject_cast<QGridLayout*>(box.layout());
  auto* buttons = box.findChild<QDialogButtonBox*>();
  if (grid == nullptr || buttons == nullptr) return;
  // Not one of the box's own buttons: any of those would close it.
  grid->removeWidget(buttons);
  const int row = grid->rowCount();
  grid->addWidget(MakeText(box, details), row, 0, 1, grid->columnCount());
  grid->addWidget(MakeCopy(box, details), row + 1, 0, 1, grid->columnCount(), Qt::AlignLeft);
  grid->addWidget(buttons, row + 2, 0, 1, grid->columnCount());
}

}  // namespace zth::platform
