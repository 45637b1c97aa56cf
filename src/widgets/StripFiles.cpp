#include "widgets/StripFiles.h"

#include <QBuffer>
#include <QFileInfo>
#include <QImage>

#include "widgets/Drawings.h"
#include "widgets/Strip.h"

namespace zth::widgets {
namespace {

/// A file name from the chart's title: "Fan Speed (RPM)" gives "Fan Speed".
QString SuggestedName(const QString& title, const QString& ending) {
  QString name = title.section(QLatin1Char('('), 0, 0).trimmed();
  for (const QChar bad : QStringLiteral("/\\:*?\"<>|%")) name.remove(bad);
  return (name.isEmpty() ? QStringLiteral("Chart") : name) + ending;
}

}  // namespace

void StripFiles::CopyPicture() {
  if (!outlets_) return;
  outlets_->clipboard.PutPicture(strip_.Picture(Caption()));
  strip_.Tell(QStringLiteral("Picture copied"));
}

void StripFiles::CopyData() {
  if (!outlets_) return;
  outlets_->clipboard.PutText(strip_.VisibleData());
  strip_.Tell(QStringLiteral("Visible data copied"));
}

bool StripFiles::SaveTo(const QString& path) {
  if (!outlets_) return false;
  QByteArray content;
  const QString ending = QFileInfo(path).suffix().toLower();
  if (ending == QStringLiteral("svg") && !WritesSvg()) {
    strip_.Tell(QStringLiteral("Not saved: this version writes no SVG, save it as PNG"));
    return false;
  }
  if (ending == QStringLiteral("svg")) {
    content = strip_.PictureSvg(Caption());
  } else if (ending == QStringLiteral("csv")) {
    content = strip_.VisibleData().toUtf8();
  } else {
    QBuffer buffer(&content);
    strip_.Picture(Caption()).save(&buffer, "PNG");
  }
  const bool written = outlets_->files.Replace(path, content);
  strip_.Tell((written ? QStringLiteral("Saved as %1") : QStringLiteral("Not saved: %1 could not be written"))
                  .arg(QFileInfo(path).fileName()));
  return written;
}

void StripFiles::AskAndSave(File kind) {
  if (!outlets_) return;
  platform::FileQuestion question;
  question.kind = platform::FileQuestion::Kind::Save;
  question.name = QStringLiteral("dlgSaveChart");
  question.caption = kind == File::Csv ? QStringLiteral("Save Visible Data") : QStringLiteral("Save Picture");
  const QString ending = kind == File::Csv   ? QStringLiteral(".csv")
                         : kind == File::Svg ? QStringLiteral(".svg")
                                             : QStringLiteral(".png");
  question.folder = outlets_->start;
  question.filter = (kind == File::Csv   ? QStringLiteral("Comma-Separated Values (*.csv)|*")
                     : kind == File::Svg ? QStringLiteral("Scalable Pictures (*.svg)|*")
                                         : QStringLiteral("Pictures (*.png)|*")) +
                    ending;
  question.suggestion = SuggestedName(strip_.Title(), ending);
  const QString path = outlets_->dialogs.Ask(question, &strip_);
  if (!path.isEmpty()) SaveTo(path);
}

}  // namespace zth::widgets
