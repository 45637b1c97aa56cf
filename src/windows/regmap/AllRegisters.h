#pragma once

#include <cstdint>
#include <vector>

#include <QWidget>

#include "windows/Desktop.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTableView;

namespace zth::windows {

class RegisterFilter;
class RegisterModel;

/// The page of the register map that shows every register of the table as a row. It reads what the user asks for, each
/// address once. It never reads a register that the read would clear, unless that one alone is selected.
class AllRegisters final : public QWidget {
  Q_OBJECT

 public:
  AllRegisters(const Context& context, QWidget* parent);

  /// Records that another part of the window has read a register.
  void Note(std::int32_t address, int value);
  /// Discards what was read, because another chip is in use.
  void Forget();
  /// Reads again everything that has been read so far.
  void ReadAgain();

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void MakeControls();
  void MakeTable();
  void AddCopy();
  void ShowRows();
  void cmdReadSelected_Click();
  void cmdReadShown_Click();
  /// The addresses of rows of the view, each once, in row order.
  std::vector<std::int32_t> AddressesOf(const std::vector<int>& rows) const;
  std::vector<int> SelectedRows() const;
  std::vector<int> ShownRows() const;
  void Read(const std::vector<std::int32_t>& addresses);
  void CopyRows();

  Context context_;
  RegisterModel* model_;
  RegisterFilter* filter_;
  QLineEdit* txtSearch_ = nullptr;
  QComboBox* cmbGroup_ = nullptr;
  QTableView* tblRegisters_ = nullptr;
  QPushButton* cmdReadSelected_ = nullptr;
  QPushButton* cmdReadShown_ = nullptr;
  QLabel* lblTold_ = nullptr;
};

}  // namespace zth::windows
