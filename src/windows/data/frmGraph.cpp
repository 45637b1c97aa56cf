#include "windows/data/frmGraph.h"

#include <algorithm>
#include <cstdint>

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>

#include "base/NumberText.h"
#include "base/Rounding.h"
#include "base/Twips.h"
#include "chip/ChipState.h"
#include "chip/PinModel.h"
#include "link/BoardName.h"
#include "widgets/Named.h"
#include "widgets/Strip.h"
#include "widgets/UpDown.h"
#include "windows/BoxHint.h"
#include "windows/Handlers.h"
#include "windows/SharedState.h"

namespace zth::windows {
namespace {

constexpr int kHeaderTwips = 960;
constexpr int kFooterTwips = 500;
constexpr std::int32_t kLongestPeriodMs = 32767;

int VoltagesPresent() {
  return static_cast<int>(std::count(chip::Model.VoltagePresent.begin(), chip::Model.VoltagePresent.end(), true));
}

}  // namespace

frmGraph::frmGraph(const Context& context) : ChildWindow("frmGraph", "Graphing", context, kShowsPins | kShowsDuties) {
  MakeHeader();
  MakeCharts();
  lblHint_ =
      new QLabel("Drag the arrows, or turn the wheel, to zoom; drag the plot to move it; End: back to live", this);
  lblHint_->setObjectName("lblHint");
  lblHint_->setAlignment(Qt::AlignCenter);
  lblHint_->setForegroundRole(QPalette::PlaceholderText);
  OnSelect(
      *cmbGraph_, [this] { cmbGraph_Click(); }, Wheel::WithFocus);
  OnChange(*txtUpdate_, [this] { txtUpdate_Change(); });
}

void frmGraph::MakeHeader() {
  header_ = new QWidget(this);
  auto* lblGraph = widgets::Named<QLabel>("lblGraph", "Select &Graph", header_);
  cmbGraph_ = widgets::Named<QComboBox>("cmbGraph", header_);
  for (const char* name : kGraphNames) cmbGraph_->addItem(name);
  lblGraph->setBuddy(cmbGraph_);
  auto* lblUpdate = widgets::Named<QLabel>("lblUpdate", "&Update Rate(ms)", header_);
  txtUpdate_ = widgets::Named<QLineEdit>("txtUpdate", header_);
  lblUpdate->setBuddy(txtUpdate_);
  txtUpdate_->setMaximumWidth(fontMetrics().averageCharWidth() * 7);
  auto* upDown = widgets::Named<widgets::UpDown>("UpDown1", txtUpdate_, widgets::UpDown::Range{10, 10000, 10}, header_);

  auto* row = new QHBoxLayout(header_);
  row->addWidget(lblGraph);
  row->addWidget(cmbGraph_);
  // Gives way in a narrow window, where the texts need the room.
  row->addItem(new QSpacerItem(fontMetrics().averageCharWidth() * 4, 0, QSizePolicy::Maximum));
  row->addWidget(lblUpdate);
  row->addLayout(upDown->Row());
  row->addStretch();
}

void frmGraph::MakeCharts() {
  const platform::Clock& clock = Services().clock;
  for (int i = 0; i < kGraphs; ++i) {
    auto* chart = widgets::Named<widgets::Strip>(QString("stpGraph(%1)").arg(i), clock, this,
                                                 widgets::StripOutlets(Services(), link::BoardName));
    chart->setToolTip("Drag the arrows at the edges of this graph to zoom in and out");
    chart->SetUp(GraphSetup(i, VoltagesPresent()));
    chart->hide();
    stpGraph_.at(static_cast<std::size_t>(i)) = chart;
  }
  widgets::ShareTimeOfDay(stpGraph_);
}

void frmGraph::Form_Load() {
  cmbGraph_->setCurrentIndex(3);
  ShowGraph(3);
  txtUpdate_->setText(QString::number(Shared.GraphPeriodMs));
  SetUpVoltageGraphLabels();
  Shared.GraphOpen = true;
}

void frmGraph::Reread() {
  const int graph = cmbGraph_->currentIndex();
  const QString period = txtUpdate_->text();
  stpGraph_[5]->SetUp(GraphSetup(5, VoltagesPresent()));
  Load();
  cmbGraph_->setCurrentIndex(graph);
  txtUpdate_->setText(period);
}

void frmGraph::Form_Unload() {
  Shared.GraphOpen = false;
}

QSize frmGraph::sizeHint() const {
  // Large enough to read the legend and both zones, but small enough for a maximised main window on a small screen.
  const int line = fontMetrics().height();
  return {std::min(fontMetrics().averageCharWidth() * 120, 1200), std::min(line * 33, 580)};
}

QSize frmGraph::minimumSizeHint() const {
  QSize chart;
  for (const widgets::Strip* each : stpGraph_) chart = chart.expandedTo(each->minimumSizeHint());
  const int around = top_ + base::PixelsFromTwips(kHeaderTwips + kFooterTwips);
  return {std::max(header_->minimumSizeHint().width(), chart.width()), chart.height() + around};
}

void frmGraph::cmbGraph_Click() {
  ShowGraph(cmbGraph_->findText(cmbGraph_->currentText()));
}

void frmGraph::ShowGraph(int index) {
  for (widgets::Strip* chart : stpGraph_) chart->hide();
  widgets::Strip& chosen = *stpGraph_.at(static_cast<std::size_t>(index));
  Place(chosen);
  chosen.show();
}

void frmGraph::Place(widgets::Strip& chart) {
  chart.SetLeft(0);
  const int top = base::TwipsFromPixels(top_) + kHeaderTwips;
  chart.SetTop(top);
  chart.SetWidth(base::TwipsFromPixels(width()));
  chart.SetHeight(base::TwipsFromPixels(height()) - top - kFooterTwips);
}

void frmGraph::resizeEvent(QResizeEvent* event) {
  ChildWindow::resizeEvent(event);
  Arrange();
}

void frmGraph::Arrange() {
  top_ = PlaceBar();
  header_->setGeometry(0, top_, width(), base::PixelsFromTwips(kHeaderTwips));
  const int footer = base::PixelsFromTwips(kFooterTwips);
  lblHint_->setGeometry(0, height() - footer, width(), footer);
  lblHint_->setVisible(lblHint_->sizeHint().width() <= width());  // hide the hint unless it fits completely
  for (widgets::Strip* chart : stpGraph_) {
    if (!chart->isHidden()) Place(*chart);
  }
}

void frmGraph::SetUpVoltageGraphLabels() {
  widgets::Strip& chart = *stpGraph_[5];
  for (int slot = 1; slot <= std::max(kVoltageTraces, VoltagesPresent()); ++slot) {
    chart.SetLabelIndex(slot);
    chart.SetCaption({});
  }
  int slot = 1;
  for (std::size_t channel = 0; channel < chip::Model.VoltagePresent.size(); ++channel) {
    if (!chip::Model.VoltagePresent[channel]) continue;
    chart.SetLabelIndex(slot++);
    chart.SetCaption(QString::fromStdString(chip::Model.VoltageName[channel]));
  }
}

void frmGraph::txtUpdate_Change() {
  const double typed = base::LeadingDecimal(txtUpdate_->text().toStdString());
  const std::int32_t period = std::min(base::RoundToInt(typed), kLongestPeriodMs);
  const bool taken = typed > 0 && period > 0;
  if (taken) Shared.GraphPeriodMs = static_cast<std::int16_t>(period);
  const bool inForce = taken && base::RoundToInt(typed) <= kLongestPeriodMs;
  ShowHint(*txtUpdate_,
           inForce ? QString() : QString("Not in force: the charts are fed every %1 ms").arg(Shared.GraphPeriodMs),
           "Milliseconds between two samples of the charts");
}

}  // namespace zth::windows
