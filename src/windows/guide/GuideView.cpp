#include "windows/guide/GuideView.h"

#include <algorithm>

#include <QAbstractTextDocumentLayout>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextTable>

#include "widgets/Colours.h"
#include "windows/guide/GuidePages.h"

namespace zth::windows {
namespace {

constexpr int kMargin = 12;  // pixels around the text
constexpr double kCellPadding = 4;

/// Visits the block of each heading in the page.
template <typename Visit>
void EachHeading(const QTextDocument& document, Visit visit) {
  for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
    if (block.blockFormat().headingLevel() > 0) visit(block);
  }
}

}  // namespace

GuideView::GuideView(QWidget* parent) : QTextBrowser(parent) {
  setOpenLinks(false);
  // Nearly every page needs it. If it came with the text, the lines would be laid out for the wrong width first, and in
  // a window that is not shown yet they would stay so, with a horizontal scroll bar.
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  document()->setUndoRedoEnabled(false);
  document()->setDocumentMargin(kMargin);
  connect(this, &QTextBrowser::anchorClicked, this, [this](const QUrl& link) { emit LinkFollowed(link.toString()); });
}

void GuideView::ShowPlace(const QString& place) {
  const QString page = place.section('#', 0, 0);
  if (page != page_) {
    page_ = page;
    Render();
  }
  // A search continues from the text being read, not from the last match.
  setTextCursor(QTextCursor(BlockOf(place.section('#', 1))));
  place_ = place;
  ScrollToPlace();
}

void GuideView::ScrollToPlace() {
  const QTextBlock block = BlockOf(place_.section('#', 1));
  const double top = block.blockNumber() == 0 ? 0 : document()->documentLayout()->blockBoundingRect(block).top();
  verticalScrollBar()->setValue(static_cast<int>(top) - kMargin / 2);
  placeTop_ = verticalScrollBar()->value();
}

QTextBlock GuideView::BlockOf(const QString& anchor) const {
  QTextBlock found = document()->begin();
  EachHeading(*document(), [&](const QTextBlock& block) {
    if (found == document()->begin() && AnchorOf(block.text()) == anchor) found = block;
  });
  return found;
}

QString GuideView::PlaceInSight() const {
  // A short section at the end of a page cannot scroll up to the top.
  if (verticalScrollBar()->value() == placeTop_) return place_;
  QString place = page_;
  const int line = verticalScrollBar()->value() + kMargin;
  EachHeading(*document(), [&](const QTextBlock& block) {
    const bool above = document()->documentLayout()->blockBoundingRect(block).top() <= line;
    if (above && block.blockFormat().headingLevel() > 1) place = page_ + '#' + AnchorOf(block.text());
  });
  return place;
}

void GuideView::Render() {
  pictures_.clear();
  document()->setMarkdown(GuideText(page_), QTextDocument::MarkdownDialectGitHub);
  // As one edit: otherwise each change would lay out the whole page again.
  QTextCursor whole(document());
  whole.beginEditBlock();
  DressTables();
  DressHeadings();
  whole.endEditBlock();
  MarkFound(marked_);
}

void GuideView::DressTables() {
  const QPalette& colours = palette();
  const QColor line = widgets::Blend(colours.color(QPalette::Base), colours.color(QPalette::Text), 0.25);
  const QColor head = widgets::Blend(colours.color(QPalette::Base), colours.color(QPalette::Text), 0.08);
  for (QTextFrame* frame : document()->rootFrame()->childFrames()) {
    auto* table = qobject_cast<QTextTable*>(frame);
    if (table == nullptr) continue;
    QTextTableFormat format = table->format();
    format.setBorder(1);
    format.setBorderBrush(line);
    format.setBorderCollapse(true);
    format.setBorderStyle(QTextFrameFormat::BorderStyle_Solid);
    format.setCellPadding(kCellPadding);
    format.setCellSpacing(0);
    format.setTopMargin(kMargin / 2.0);
    format.setBottomMargin(kMargin);
    table->setFormat(format);
    for (int column = 0; column < table->columns(); ++column) {
      QTextTableCell cell = table->cellAt(0, column);
      QTextCharFormat shade = cell.format();
      shade.setBackground(head);
      cell.setFormat(shade);
    }
  }
}

void GuideView::DressHeadings() {
  EachHeading(*document(), [](const QTextBlock& block) {
    QTextBlockFormat format = block.blockFormat();
    format.setTopMargin(kMargin * (block.blockNumber() == 0 ? 0 : 1.5));
    format.setBottomMargin(kMargin / 2.0);
    QTextCursor(block).setBlockFormat(format);
  });
}

QImage GuideView::Fitted(const QImage& picture) const {
  const int room = viewport()->width() - 2 * kMargin;
  if (picture.width() <= room || room < 1) return picture;
  return picture.scaledToWidth(room, Qt::SmoothTransformation);
}

QVariant GuideView::loadResource(int type, const QUrl& name) {
  if (type != QTextDocument::ImageResource) return {};
  const QString path = PlaceOf(name.toString(), page_);
  if (!pictures_.contains(path)) pictures_[path] = QImage::fromData(GuidePicture(path));
  return Fitted(pictures_[path]);
}

void GuideView::FitPictures() {
  for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
    for (auto part = block.begin(); !part.atEnd(); ++part) {
      const QTextImageFormat image = part.fragment().charFormat().toImageFormat();
      if (!image.isValid()) continue;
      const QUrl name(image.name());
      document()->addResource(QTextDocument::ImageResource, name, loadResource(QTextDocument::ImageResource, name));
    }
  }
  document()->markContentsDirty(0, document()->characterCount());
}

void GuideView::resizeEvent(QResizeEvent* event) {
  // The text being read stays visible however the lines break.
  const QTextCursor top = cursorForPosition({kMargin, kMargin});
  const bool unmoved = verticalScrollBar()->value() == placeTop_;
  const bool shows = !page_.isEmpty() && event->size().width() != event->oldSize().width();
  // Before the lines are laid out again: that is when the scrollable width is calculated.
  if (shows) FitPictures();
  QTextBrowser::resizeEvent(event);
  if (!shows) return;
  if (unmoved) {
    ScrollToPlace();
  } else {
    verticalScrollBar()->setValue(verticalScrollBar()->value() + cursorRect(top).top() - kMargin);
  }
}

void GuideView::MarkFound(const QString& text) {
  marked_ = text;
  QList<ExtraSelection> marks;
  const bool dark = widgets::IsDark(palette(), QPalette::Base);
  QTextCursor at(document());
  while (!text.isEmpty() && !(at = document()->find(text, at)).isNull()) {
    QTextCharFormat format;
    format.setBackground(dark ? QColor(0x6B, 0x52, 0x00) : QColor(0xFF, 0xE4, 0x7A));
    format.setForeground(dark ? QColor(0xFF, 0xFF, 0xFF) : QColor(0x1A, 0x1A, 0x1A));
    marks.push_back({at, format});
  }
  setExtraSelections(marks);
}

bool GuideView::FindNext(const QString& text) {
  const QTextCursor found = document()->find(text, textCursor());
  if (found.isNull()) return false;
  setTextCursor(found);
  ensureCursorVisible();
  return true;
}

void GuideView::changeEvent(QEvent* event) {
  QTextBrowser::changeEvent(event);
  if (page_.isEmpty() || (event->type() != QEvent::PaletteChange && event->type() != QEvent::FontChange)) return;
  const int at = verticalScrollBar()->value();
  Render();
  verticalScrollBar()->setValue(at);
}

}  // namespace zth::windows
