#pragma once

#include <QHash>
#include <QImage>
#include <QStringList>
#include <QTextBlock>
#include <QTextBrowser>

namespace zth::windows {

/// Shows a page of the built-in documents, with pictures no wider than the view and in the window's colours.
class GuideView final : public QTextBrowser {
  Q_OBJECT

 public:
  explicit GuideView(QWidget* parent);

  /// The current page; empty before the first one.
  const QString& Page() const { return page_; }
  /// Shows a page from its top, or from the heading in `place`.
  void ShowPlace(const QString& place);
  /// The place that was asked for. Once the user has scrolled, the place of the heading whose section is at the top of
  /// the view.
  QString PlaceInSight() const;

  /// Highlights all matches. An empty text removes the highlights.
  void MarkFound(const QString& text);
  /// Goes to the next match after the last one. False when there is none further down the page.
  bool FindNext(const QString& text);

  QVariant loadResource(int type, const QUrl& name) override;

 signals:
  /// The user clicked a link; `link` is its text in the page's source.
  void LinkFollowed(const QString& link);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void Render();
  void DressTables();
  void DressHeadings();
  void FitPictures();
  QImage Fitted(const QImage& picture) const;
  /// The block of the heading with that anchor; the first block if there is none.
  QTextBlock BlockOf(const QString& anchor) const;
  void ScrollToPlace();

  QString page_;
  QString place_;      ///< as last requested
  int placeTop_ = -1;  ///< scroll position of `place_`
  QString marked_;
  QHash<QString, QImage> pictures_;  ///< the page's pictures by path, in their original size
};

}  // namespace zth::windows
