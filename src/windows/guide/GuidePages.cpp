#include "windows/guide/GuidePages.h"

#include <algorithm>
#include <array>

#include <QDir>
#include <QRegularExpression>
#include <QResource>
#include <QStringList>

/// The documents are in a static library, and the linker takes only the parts that a program names. Q_INIT_RESOURCE
/// must be used outside any namespace.
static void TakeInDocuments() {
  Q_INIT_RESOURCE(guide);
}

namespace zth::windows {
namespace {

constexpr char kRoot[] = ":/guide/";
constexpr char kFirst[] = "guide.md";

struct Row {
  const char* window;
  const char* place;
};

// Windows whose task has a section of its own in the guide; any other window opens its own page.
constexpr std::array kPlaces{
    Row{"frmAutoGraph", "guide.md#a-fan-curve"},
    Row{"frmDynamicTmin", "guide.md#dynamic-tmin"},
    Row{"frmEasySetup", "guide.md#easy-setup"},
    Row{"frmFanConfig", "guide.md#fans"},
    Row{"frmGraph", "guide.md#graphs"},
    Row{"frmHeaters", "guide.md#manual-control-heaters-switches"},
    Row{"frmLimits", "guide.md#limits-and-alerts"},
    Row{"frmLogging", "guide.md#logging"},
    Row{"frmManualControl", "guide.md#manual-control-heaters-switches"},
    Row{"frmPinConfig", "guide.md#pins"},
    Row{"frmSave", "guide.md#saving-and-recalling-a-configuration"},
    Row{"frmSwitches", "guide.md#manual-control-heaters-switches"},
    Row{"frmTraffic", "guide.md#what-did-the-program-just-send"},
};

QByteArray BytesOf(const QString& path) {
  TakeInDocuments();
  return QResource(kRoot + path).uncompressedData();
}

/// A line of Markdown as plain text: links become their texts; stars and code marks go.
QString Plain(QString line) {
  static const QRegularExpression link(R"(!?\[([^\]]*)\]\([^)]*\))");
  static const QRegularExpression marks(R"([*`|]|^\s*#+ )");
  return line.replace(link, "\\1").remove(marks).simplified();
}

std::vector<GuideSection> SectionsOf(const QString& page) {
  static const QRegularExpression head(R"(^(#+) (.+)$)");
  std::vector<GuideSection> sections;
  bool code = false;
  for (const QString& line : GuideText(page).split('\n')) {
    if (line.startsWith("```")) code = !code;
    const auto found = code ? QRegularExpressionMatch() : head.match(line);
    if (found.hasMatch()) {
      const QString heading = Plain(found.captured(2));
      sections.push_back({page, heading, AnchorOf(heading), static_cast<int>(found.capturedLength(1)), {}});
    }
    if (!sections.empty()) sections.back().text += Plain(line) + ' ';
  }
  return sections;
}

}  // namespace

const QStringList& GuidePages() {
  static const QStringList pages = [] {
    TakeInDocuments();
    QStringList all{kFirst, "windows/README.md"};
    for (const QString& name : QDir(QString(kRoot) + "windows").entryList({"frm*.md"}, QDir::Files, QDir::Name)) {
      all << "windows/" + name;
    }
    for (const QString& name : QDir(kRoot).entryList({"*.md"}, QDir::Files, QDir::Name)) {
      if (!all.contains(name)) all << name;
    }
    return all;
  }();
  return pages;
}

QString GuideText(const QString& page) {
  return QString::fromUtf8(BytesOf(page));
}

QByteArray GuidePicture(const QString& path) {
  return BytesOf(path);
}

const std::vector<GuideSection>& GuideSections() {
  static const std::vector<GuideSection> all = [] {
    std::vector<GuideSection> sections;
    for (const QString& page : GuidePages()) {
      for (GuideSection& section : SectionsOf(page)) sections.push_back(std::move(section));
    }
    return sections;
  }();
  return all;
}

bool GuideHas(const QString& place) {
  const QString page = place.section('#', 0, 0);
  const QString anchor = place.section('#', 1);
  return std::ranges::any_of(GuideSections(), [&](const GuideSection& section) {
    return section.page == page && (anchor.isEmpty() || section.anchor == anchor);
  });
}

QString AnchorOf(const QString& heading) {
  static const QRegularExpression others(R"([^\w\- ])", QRegularExpression::UseUnicodePropertiesOption);
  return heading.trimmed().toLower().remove(others).replace(' ', '-');
}

QString PlaceOf(const QString& link, const QString& page) {
  const QUrl place = QUrl("guide:/" + page).resolved(QUrl(link));
  if (place.scheme() != "guide") return {};
  return place.path().mid(1) + (place.hasFragment() ? '#' + place.fragment() : QString());
}

QString GuidePlaceFor(const QString& window) {
  const auto* row = std::ranges::find_if(kPlaces, [&window](const Row& each) { return window == each.window; });
  if (row != kPlaces.end()) return row->place;
  const QString own = "windows/" + window + ".md";
  return GuideHas(own) ? own : kFirst;
}

}  // namespace zth::windows
