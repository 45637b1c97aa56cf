// The events of a Strip, its pictures and its files.
#include <algorithm>

#include <QApplication>
#include <QBuffer>
#include <QContextMenuEvent>
#include <QFileInfo>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPaintEngine>
#include <QPainter>
#include <QSvgGenerator>
#include <QToolTip>
#include <QWheelEvent>

#include "widgets/StripExport.h"
#include "widgets/StripMenu.h"
#include "widgets/StripPrivate.h"

namespace zth::widgets {
namespace {

constexpr double kWheelNotch = 120;

/// A file name made of the chart's title: "Fan Speed (RPM)" gives "Fan Speed".
QString SuggestedName(const QString& title, const QString& ending) {
  QString name = title.section(QLatin1Char('('), 0, 0).trimmed();
  for (const QChar bad : QStringLiteral("/\\:*?\"<>|%")) name.remove(bad);
  return (name.isEmpty() ? QStringLiteral("Chart") : name) + ending;
}

}  // namespace

bool Strip::event(QEvent* event) {
  if (event->type() == QEvent::ToolTip) {
    // Over the plot the read-out speaks; a tip would lie in its way.
    p_->LayOut(*this);
    const StripPart part = p_->painter.Layout().PartAt(static_cast<QHelpEvent*>(event)->pos(), Held());
    if (part.kind == StripPart::Kind::Plot) {
      QToolTip::hideText();
      return true;
    }
  }
  return QWidget::event(event);
}

void Strip::paintEvent(QPaintEvent*) {
  p_->waiting = false;
  QPainter painter(this);
  if (painter.paintEngine()->type() == QPaintEngine::Raster) {
    p_->painter.Paint(painter, p_->scene, size(), devicePixelRatioF(), palette());
  } else {
    p_->painter.PaintVector(painter, p_->scene, size(), palette());
  }
}

void Strip::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  emit Strip2_LayoutChanged(Index());
}

void Strip::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  p_->painter.ResetColumns();
  emit Strip2_LayoutChanged(Index());
}

void Strip::changeEvent(QEvent* event) {
  if (event->type() == QEvent::FontChange) p_->painter.SetFont(font());
  QWidget::changeEvent(event);
  update();
}

void Strip::mousePressEvent(QMouseEvent* event) {
  p_->LayOut(*this);
  p_->input.Press(event->position().toPoint(), event->button());
}

void Strip::mouseMoveEvent(QMouseEvent* event) {
  p_->LayOut(*this);
  p_->input.Move(event->position().toPoint(), event->buttons(), event->modifiers());
}

void Strip::mouseReleaseEvent(QMouseEvent* event) {
  p_->LayOut(*this);
  if (p_->input.Release(event->position().toPoint(), event->button())) OpenMenu(event->globalPosition().toPoint());
}

void Strip::mouseDoubleClickEvent(QMouseEvent* event) {
  p_->LayOut(*this);
  if (event->button() == Qt::LeftButton) p_->input.DoubleClick(event->position().toPoint());
}

void Strip::leaveEvent(QEvent* event) {
  QWidget::leaveEvent(event);
  p_->input.Leave();
}

void Strip::wheelEvent(QWheelEvent* event) {
  // Alt, and Shift on some desktops, turn the wheel sideways.
  const QPoint turn = event->angleDelta();
  const int delta = turn.y() != 0 ? turn.y() : turn.x();
  p_->LayOut(*this);
  if (delta != 0) p_->input.Wheel(event->position().toPoint(), delta / kWheelNotch, event->modifiers());
  event->accept();
}

void Strip::keyPressEvent(QKeyEvent* event) {
  p_->LayOut(*this);
  if (!p_->input.Key(event->key(), event->modifiers())) QWidget::keyPressEvent(event);
}

void Strip::focusInEvent(QFocusEvent* event) {
  p_->scene.overlay.focus = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason ||
                            event->reason() == Qt::ShortcutFocusReason;
  update();
}

void Strip::focusOutEvent(QFocusEvent*) {
  p_->scene.overlay.focus = false;
  update();
}

// By the mouse the menu comes on the release of a click: a press may begin a box.
void Strip::contextMenuEvent(QContextMenuEvent* event) {
  if (event->reason() != QContextMenuEvent::Mouse) OpenMenu(event->globalPos());
  event->accept();
}

void Strip::OpenMenu(QPoint globalAt) {
  MakeStripMenu(*this).popup(globalAt);
}

void Strip::Tell(const QString& notice) {
  p_->scene.overlay.notice = notice;
  update();
}

QImage Strip::Picture() const {
  StripScene::Overlay overlay;
  std::swap(overlay, p_->scene.overlay);
  const double ratio = devicePixelRatioF();
  QImage image(size() * ratio, QImage::Format_RGB32);
  image.setDevicePixelRatio(ratio);
  QPainter painter(&image);
  p_->painter.Paint(painter, p_->scene, size(), ratio, palette());
  painter.end();
  std::swap(overlay, p_->scene.overlay);
  return image;
}

QByteArray Strip::PictureSvg() const {
  QByteArray svg;
  QBuffer buffer(&svg);
  QSvgGenerator generator;
  generator.setOutputDevice(&buffer);
  generator.setSize(size());
  generator.setViewBox(rect());
  generator.setTitle(Title());
  generator.setDescription(Summary());
  QPainter painter(&generator);
  p_->painter.PaintVector(painter, p_->scene, size(), palette());
  painter.end();
  return svg;
}

QString Strip::VisibleData() const {
  return StripCsv(p_->scene);
}

void Strip::CopyPicture() {
  if (!outlets_) return;
  outlets_->clipboard.PutPicture(Picture());
  Tell(QStringLiteral("Picture copied"));
}

void Strip::CopyData() {
  if (!outlets_) return;
  outlets_->clipboard.PutText(VisibleData());
  Tell(QStringLiteral("Visible data copied"));
}

bool Strip::SaveTo(const QString& path) {
  if (!outlets_) return false;
  QByteArray content;
  const QString ending = QFileInfo(path).suffix().toLower();
  if (ending == QStringLiteral("svg")) {
    content = PictureSvg();
  } else if (ending == QStringLiteral("csv")) {
    content = VisibleData().toUtf8();
  } else {
    QBuffer buffer(&content);
    Picture().save(&buffer, "PNG");
  }
  const bool written = outlets_->files.Replace(path, content);
  Tell((written ? QStringLiteral("Saved as %1") : QStringLiteral("Not saved: %1 could not be written"))
           .arg(QFileInfo(path).fileName()));
  return written;
}

void Strip::AskAndSave(File kind) {
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
  question.suggestion = SuggestedName(Title(), ending);
  const QString path = outlets_->dialogs.Ask(question, this);
  if (!path.isEmpty()) SaveTo(path);
}

QSize Strip::sizeHint() const {
  return {fontMetrics().averageCharWidth() * 110, fontMetrics().height() * 28};
}

QSize Strip::minimumSizeHint() const {
  // Every row of the legend, the title above it and the texts of the x axis under it; a few lines of plot without one.
  constexpr int kLeastLines = 12;
  const auto rows = std::count_if(p_->scene.labels.begin(), p_->scene.labels.end(), [](const StripLabel& label) {
    return label.slot != 0 && label.place == StripPlace::Legend;
  });
  const int lines = std::max(kLeastLines, static_cast<int>(rows) + 4);
  return {fontMetrics().averageCharWidth() * 40, fontMetrics().height() * lines};
}

}  // namespace zth::widgets
