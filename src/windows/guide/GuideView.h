#pragma once

#include <QHash>
#include <QImage>
#include <QStringList>
#include <QTextBlock>
#include <QTextBrowser>

namespace zth::windows {

/// A page of the built-in documents as it is read: pictures no wider than the view, in the window's colours.
class GuideView final : public QTextBrowser {
  Q_OBJECT

 public:
  explicit GuideView(QWidget* parent);

  /// The page that shows; empty before the first.
  const QString& Page() const { return page_; }
  /// Shows a page from its top, or from the heading that the place names.
  void ShowPlace(const QString& place);
  /// The place that was asked for, or once the user has scrolled that of the heading that the top of the view stands
  /// in.
  QString PlaceInSight() const;

  /// Marks all that fits. Empty text takes the marks away.
  void MarkFound(const QString& text);
  /// Goes to the next place that fits, from where the last one stands. False when the page has none further down.
  bool FindNext(const QString& text);

  QVariant loadResource(int type, const QUrl& name) override;

 signals:
  /// The user follows a link, as it stands on the page.
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
  /// The block of a heading; the first one for none.
  QTextBlock BlockOf(const QString& anchor) const;
  void ScrollToPlace();

  QString page_;
  QString place_;      ///< as last asked for
  int placeTop_ = -1;  ///< where that stands
  QString marked_;
  QHash<QString, QImage> pictures_;  ///< of the page, by their paths, in their own size
};

}  // namespace zth::windows
