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

/// The built-in user's guide: contents with a search on the left, the page on the right. Needs no chip and reads none.
class frmGuide final : public ChildWindow {
  Q_OBJECT

 public:
  explicit frmGuide(const Context& context);

  /// Shows the beginning.
  void Form_Load() override;

  /// Shows a place of the guide, for example "guide.md#graphs", and saves the previous one for Back. If there is no
  /// such place, a message below the contents says so.
  void Go(const QString& place);

  QSize sizeHint() const override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  QWidget* MakeContents();
  QWidget* MakePage();
  void FillContents();
  /// Colours the current section in the contents so that it stands out and stays readable: not every desktop's own
  /// colours do that.
  void ColourContents();
  void Show(const QString& place);
  void PickInContents(const QString& place);

  void treContents_Picked(const QTreeWidgetItem& item);
  void txtSearch_Change();
  /// Goes to the next match on this page or a later one, then continues from the first page.
  void txtSearch_Enter();
  void cmdBack_Click();
  void FollowLink(const QString& link);

  QLineEdit* txtSearch_ = nullptr;
  QTreeWidget* treContents_ = nullptr;
  QLabel* lblTold_ = nullptr;
  QPushButton* cmdBack_ = nullptr;
  GuideView* txtPage_ = nullptr;
  std::vector<QString> before_;  ///< the places for Back, latest first
};

}  // namespace zth::windows
