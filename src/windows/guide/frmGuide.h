#pragma once

#include <vector>

#include "windows/ChildWindow.h"

class QLabel;
class QLineEdit;
class QSplitter;
class QTreeWidget;
class QTreeWidgetItem;

namespace zth::windows {

class GuideView;
struct GuideSection;

/// The user's guide, built into the program: contents with a search at the left, the page at the right. Reads no chip
/// and asks for none.
class frmGuide final : public ChildWindow {
  Q_OBJECT

 public:
  explicit frmGuide(const Context& context);

  /// Shows the beginning.
  void Form_Load() override;

  /// Shows a place of the guide, "guide.md#graphs", and keeps the one before for Back. One that is not there is told of
  /// below the contents.
  void Go(const QString& place);

  QSize sizeHint() const override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  QWidget* MakeContents();
  QWidget* MakePage();
  void FillContents();
  /// The section that shows stands out in the contents and can still be read: not all desktops' own colours give that.
  void ColourContents();
  void Show(const QString& place);
  void PickInContents(const QString& place);

  void treContents_Picked(const QTreeWidgetItem& item);
  void txtSearch_Change();
  /// The next place that holds the text, on this page or on one behind it, and from the first page again.
  void txtSearch_Enter();
  void cmdBack_Click();
  void FollowLink(const QString& link);

  QLineEdit* txtSearch_ = nullptr;
  QTreeWidget* treContents_ = nullptr;
  QLabel* lblTold_ = nullptr;
  QPushButton* cmdBack_ = nullptr;
  GuideView* txtPage_ = nullptr;
  std::vector<QString> before_;  ///< the places that Back goes to, the last one first
};

}  // namespace zth::windows
