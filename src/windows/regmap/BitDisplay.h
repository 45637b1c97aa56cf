#pragma once

#include <array>
#include <cstdint>

#include <QGroupBox>
#include <QLabel>

namespace zth::windows {

/// The digit of one bit, "0" or "1". A click, Space or Enter requests a flip; the digit never changes by itself.
class BitLabel final : public QLabel {
  Q_OBJECT

 public:
  BitLabel(int bit, QWidget* parent);

  void SetDigit(bool one);
  bool IsOne() const { return text() != "0"; }
  /// The bit's name, for assistive technology.
  void SetBitName(const QString& name);
  /// Sets what a flip writes, as tool tip and description. `foreign`: the digit is from another register than the one
  /// that would be written; shown by colour.
  void TellFlip(const QString& hint, bool foreign);

  QSize sizeHint() const override;

 signals:
  void Click();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  int bit_;
  bool foreign_ = true;
};

/// Eight bits side by side, bit 7 on the left, each with its name below.
class BitDisplay final : public QGroupBox {
  Q_OBJECT

 public:
  static constexpr int kBits = 8;

  explicit BitDisplay(QWidget* parent = nullptr);

  void ShowRegisterBits(int value);
  /// Eight names separated by colons, bit 7 first.
  void ShowBitNames(const QString& names);
  void TellFlip(int bit, const QString& hint, bool foreign) { Bit(bit).TellFlip(hint, foreign); }
  void Flip(int bit);
  /// The value of the digits on the screen.
  int Value() const;

  QSize sizeHint() const override { return minimumSizeHint(); }
  QSize minimumSizeHint() const override;

 signals:
  void lblBit_Click(int bit);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  BitLabel& Bit(int bit) { return *bits_.at(static_cast<std::size_t>(bit)); }
  const BitLabel& Bit(int bit) const { return *bits_.at(static_cast<std::size_t>(bit)); }
  void LayoutBitLabels();
  int LabelsTop() const;

  std::array<BitLabel*, kBits> bits_{};  ///< indexed by bit number
  std::array<QLabel*, kBits> names_{};   ///< index 0 names bit 7
};

}  // namespace zth::windows
