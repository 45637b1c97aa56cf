#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include <QString>

#include "windows/ChildWindow.h"

class QCheckBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTabWidget;
class QTreeWidget;
class QTreeWidgetItem;

namespace zth::windows {

class AllRegisters;
class BitDisplay;

/// The raw view of the chip: any register can be read, written and flipped bit by bit, bypassing all feature logic and
/// regardless of the table.
class frmRegMap final : public ChildWindow {
  Q_OBJECT

 public:
  explicit frmRegMap(const Context& context);

  void Form_Load() override;
  void Form_Unload() override;

  /// The user wants the read repeated once a second.
  bool ContinuousRead() const;

  /// Reads the typed address and shows its register.
  void cmdRead_Click();
  /// The same as a job of the master timer; does not change a box that the user is typing into.
  void RepeatRead();

 protected:
  /// Repeats the read of the register shown, if there is one. On the other page it repeats the reads of that page.
  void Reread() override;
  void OriginChanged() override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  QWidget* MakeFirstPage();
  QGroupBox* MakeTreeFrame();
  QGroupBox* MakeReadWriteFrame();
  QGroupBox* MakeDetailsFrame();
  void ConnectTree();
  void ConnectBoxes();

  void TreeView1_NodeClick(const QTreeWidgetItem& node);
  void cmdWrite_Click();
  void lblBit_Click(int bit);
  void txtReadAddr_Change();
  void txtDec_Change();
  void txtHex_Change();
  void txtFind_Change();
  /// Goes to the first register that the search shows. For one that is not in the tree, goes to the button that reads
  /// its address.
  void txtFind_Enter();

  void ShowRegisterDetails(int row);
  void ShowUnknown(std::int32_t address);
  /// Reads the selected register and shows its value.
  int ReadShown();
  /// Sets the hints on the bits, the value boxes and the button: what each would write, and where.
  void TellWrites();
  /// Shows below the bits what the control under the pointer would write, or else the focused one.
  void ShowWrite();
  void SetAddressBox(const QString& text);
  /// Sets bold for a register that differs from its default, in all nodes of the address just read.
  void MarkNodes(std::int32_t address, int value);
  void ClearMarks();
  void CopyRows();

  QTabWidget* tabPages_ = nullptr;
  AllRegisters* all_ = nullptr;
  QLineEdit* txtFind_ = nullptr;
  QLabel* lblNoMatch_ = nullptr;
  QTreeWidget* TreeView1_ = nullptr;
  QLineEdit* txtReadAddr_ = nullptr;
  QPushButton* cmdRead_ = nullptr;
  QCheckBox* chkContRead_ = nullptr;
  QLineEdit* txtHex_ = nullptr;
  QLineEdit* txtDec_ = nullptr;
  QPushButton* cmdWrite_ = nullptr;
  QGroupBox* fraDetails_ = nullptr;
  QLabel* lblRegDescription_ = nullptr;
  QLabel* lblCurrentAddr_ = nullptr;
  QLabel* lblHexVal_ = nullptr;
  QLabel* lblDecVal_ = nullptr;
  QLabel* lblReadOnly_ = nullptr;
  BitDisplay* fraBits_ = nullptr;
  QLabel* lblWrites_ = nullptr;

  /// The register whose bits are shown; none before the first read.
  struct Shown {
    std::int32_t address;
    int row;  ///< in the table, or -1
  };
  std::optional<Shown> shown_;
  std::vector<QWidget*> writers_;  ///< the controls described by TellWrites

  link::ChipId marksOf_;       ///< the chip that the tree's marks belong to
  bool UpdatingValue = false;  ///< one value box is being updated from the other
  bool keepsAddress_ = false;  ///< a read does not change the address box
  bool treePressed_ = false;   ///< a mouse button is pressed on the tree
  bool shownByPress_ = false;  ///< that press has already shown the node
};

}  // namespace zth::windows
