#pragma once

#include <vector>

#include <QString>
#include <QUrl>

/// The documents that are built into the program: the user's guide, a page for each window, the pages on hardware and
/// simulator, with their pictures.
namespace zth::windows {

/// A part of a page from a heading to the next.
struct GuideSection {
  QString page;     ///< "guide.md", "windows/frmTherm.md"
  QString heading;  ///< as it is read, without marks
  QString anchor;   ///< of its heading, "a-fan-curve"
  int level;        ///< 1 for a page's own title
  QString text;     ///< its words, for the search, without marks and in one line

  /// "guide.md#a-fan-curve"; the page alone for its title.
  QString Place() const { return level == 1 ? page : page + '#' + anchor; }
};

/// The pages as the guide's contents have them.
const QStringList& GuidePages();
/// A page's text in Markdown; empty when there is none of that name.
QString GuideText(const QString& page);
/// The bytes of a picture by its path below docs; empty when it is not there.
QByteArray GuidePicture(const QString& path);
/// All sections of all pages, in the order of reading.
const std::vector<GuideSection>& GuideSections();
/// Whether a place, "guide.md#graphs" or a page alone, is there.
bool GuideHas(const QString& place);
/// The anchor of a heading: its letters and digits in lower case, blanks as hyphens.
QString AnchorOf(const QString& heading);
/// The place that a link on a page leads to, "windows/frmTherm.md" for "frmTherm.md" on one of its neighbours.
QString PlaceOf(const QString& link, const QString& page);

/// Where the guide opens for a window: the section of the task that the window serves, or else the window's own page.
/// For no window, or one without a page, the beginning.
QString GuidePlaceFor(const QString& window);

}  // namespace zth::windows
