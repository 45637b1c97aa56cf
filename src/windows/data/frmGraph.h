#pragma once

#include "windows/ChildWindow.h"
#include "windows/data/GraphSubs.h"

class QComboBox;
class QLabel;
class QLineEdit;

namespace zth::windows {

/// Live charts of everything that the monitor measures; one of seven is shown at a time, all are fed.
class frmGraph final : public ChildWindow {
  Q_OBJECT

 public:
  explicit frmGraph(const Context& context);

  void Form_Load() override;
  void Form_Unload() override;

  /// The voltage chart's legend: the names of the channels present, without gaps.
  void SetUpVoltageGraphLabels();

  const Graphs& Charts() const { return stpGraph_; }

  QSize sizeHint() const override;
  /// Two thirds of the desk, so that one minute of twelve traces is readable.
  QSize OpeningSize(const QSize& desk) const override { return (desk * 2 / 3).expandedTo(sizeHint()).boundedTo(desk); }
  QSize minimumSizeHint() const override;

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void BarChanged() override { Arrange(); }
  /// Keeps the selected chart and the rate.
  void Reread() override;

 private:
  void Arrange();
  void MakeHeader();
  void MakeCharts();
  void ShowGraph(int index);
  void Place(widgets::Strip& chart);

  void cmbGraph_Click();
  void txtUpdate_Change();

  Graphs stpGraph_{};
  QWidget* header_ = nullptr;
  QComboBox* cmbGraph_ = nullptr;
  QLineEdit* txtUpdate_ = nullptr;
  QLabel* lblHint_ = nullptr;
  int top_ = 0;  ///< y of the header's top, in pixels
};

}  // namespace zth::windows
