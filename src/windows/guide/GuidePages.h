#pragma once

#include <vector>

#include <QString>
#include <QUrl>

/// The documents built into the program: the user's guide, a page for each window and the pages on hardware and the
/// simulator, with their pictures.
namespace zth::windows {

/// A part of a page, from one heading to the next.
struct GuideSection {
  QString page;     ///< "guide.md", "windows/frmTherm.md"
  QString heading;  ///< as plain text
  QString anchor;   ///< of the heading, for example "a-fan-curve"
  int level;        ///< 1 for a page's own title
  QString text;     ///< its words for the search, as plain text in one line

  /// "guide.md#a-fan-curve"; the page alone for its title.
  QString Place() const { return level == 1 ? page : page + '#' + anchor; }
};

/// The pages, in the order of the guide's contents.
const QStringList& GuidePages();
/// A page's Markdown text; empty when there is no such page.
QString GuideText(const QString& page);
/// A picture's bytes, by its path below docs; empty when there is no such picture.
QByteArray GuidePicture(const QString& path);
/// All sections of all pages, in reading order.
const std::vector<GuideSection>& GuideSections();
/// Whether a place exists: "guide.md#graphs", or a page alone.
bool GuideHas(const QString& place);
/// The anchor of a heading: its letters and digits in lower case, blanks as hyphens.
QString AnchorOf(const QString& heading);
/// The place that a link on a page leads to: "windows/frmTherm.md" for a link to "frmTherm.md" on another window's
/// page.
QString PlaceOf(const QString& link, const QString& page);

/// Where the guide opens for a window: the section on the window's task, or else the window's own page. The beginning
/// for no window or one without a page.
QString GuidePlaceFor(const QString& window);

}  // namespace zth::windows
