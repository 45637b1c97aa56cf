#include "windows/Editors.h"

#include <algorithm>
#include <stdexcept>

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>

#include "base/NumberText.h"
#include "chip/RegisterNames.h"

namespace zth::windows {
namespace {

class ButtonEditor final : public Editor {
 public:
  using Widget = QAbstractButton;
  using Made = QCheckBox;
  ButtonEditor(const Binding& row, QAbstractButton& button) : row_(row), button_(button) {}

  QWidget& Control() const override { return button_; }
  void OnChanged(Handler handler, Wheel /*wheel*/) override { OnToggle(button_, std::move(handler)); }
  void Show(unsigned field) override { button_.setChecked((field != 0) == IsStraight()); }
  unsigned Given() const override { return base::PutField(0, row_.bits, button_.isChecked() == IsStraight() ? 1 : 0); }
  QString Text() const override { return button_.isChecked() ? QStringLiteral("1") : QStringLiteral("0"); }
  QString WidestText() const override { return button_.text(); }

 private:
  bool IsStraight() const { return row_.sense == Sense::Straight; }
  void Furnish() override { button_.setText(CaptionOf(row_)); }

  const Binding& row_;
  QAbstractButton& button_;
};

class ListEditor final : public Editor {
 public:
  using Widget = QComboBox;
  using Made = QComboBox;
  ListEditor(const Binding& row, QComboBox& list) : row_(row), list_(list) {}

  QWidget& Control() const override { return list_; }
  void OnChanged(Handler handler, Wheel wheel) override { OnSelect(list_, std::move(handler), wheel); }
  void Show(unsigned field) override { list_.setCurrentIndex(static_cast<int>(Turned(field))); }
  unsigned Given() const override {
    // An item that occurs more than once matches at all of its positions.
    const std::string text = list_.currentText().toStdString();
    unsigned value = 0;
    for (unsigned position = 0; position < row_.items.size(); ++position) {
      if (text == row_.items[position]) value |= Turned(position);
    }
    return base::PutField(0, row_.bits, value);
  }
  QString Text() const override { return list_.currentText(); }
  QString Held() const override { return QString::number(list_.currentIndex()); }
  QString WidestText() const override {
    const auto width = [&](int item) { return list_.fontMetrics().horizontalAdvance(list_.itemText(item)); };
    int widest = 0;
    for (int item = 1; item < list_.count(); ++item) {
      if (width(item) > width(widest)) widest = item;
    }
    return list_.itemText(widest);
  }

 private:
  /// Converts between the field's value and the item's position, in either direction.
  unsigned Turned(unsigned value) const {
    return row_.sense == Sense::Inverted ? base::GetField(~(value << row_.bits.shift), row_.bits) : value;
  }
  void Furnish() override {
    for (const char* item : row_.items) list_.addItem(QString::fromUtf8(item));
  }

  const Binding& row_;
  QComboBox& list_;
};

class TextEditor final : public Editor {
 public:
  using Widget = QLineEdit;
  using Made = QLineEdit;
  TextEditor(const Binding& row, QLineEdit& box) : row_(row), box_(box) {}

  QWidget& Control() const override { return box_; }
  void OnChanged(Handler handler, Wheel /*wheel*/) override { OnChange(box_, std::move(handler)); }
  void Show(unsigned field) override { box_.setText(QString::fromStdString(row_.code->text(field))); }
  unsigned Given() const override { return row_.code->byte(box_.text().toStdString(), row_.bits.shift); }
  QString Text() const override { return box_.text(); }
  std::optional<std::string> ReadsBackAs(unsigned field) const override {
    const std::string text = box_.text().toStdString();
    const std::string shown = row_.code->text(field);
    const bool same = base::IsDecimal(text) && base::LeadingDecimal(text) == base::LeadingDecimal(shown);
    return same ? std::nullopt : std::optional(shown);
  }

 private:
  const Binding& row_;
  QLineEdit& box_;
};

/// The control of an editor: an existing one in `window`, or a new one if `window` is null.
template <typename EditorType>
std::unique_ptr<EditorType> Put(const Binding& row, const QWidget* window, QWidget* parent) {
  const QString name = NameOf(row.control);
  typename EditorType::Widget* control = nullptr;
  if (window == nullptr) {
    control = new typename EditorType::Made(parent);
    control->setObjectName(name);
  } else {
    control = window->findChild<typename EditorType::Widget*>(name);
    if (control == nullptr) throw std::logic_error("no control " + name.toStdString());
  }
  return std::make_unique<EditorType>(row, *control);
}

}  // namespace

QString NameOf(const ControlName& control) {
  const QString base = QString::fromLatin1(control.base);
  return control.index < 0 ? base : QString("%1(%2)").arg(base).arg(control.index);
}

QString CaptionOf(const Binding& row) {
  return QString::fromLatin1(row.caption).replace("%1", QString::number(row.control.index + 1));
}

QString PlaceOf(const Binding& row) {
  return PlaceOf(row.reg, row.bits);  // every row has a name: IsSound and _reg ensure that
}

QString PlaceOf(int reg, const base::BitField& field) {
  const int low = field.shift;
  const QString bits =
      field.width == 1 ? QString("bit %1").arg(low) : QString("bits %1:%2").arg(low + field.width - 1).arg(low);
  return QString::asprintf("0x%02X ", static_cast<unsigned>(reg)) + bits + ", " +
         QString::fromLatin1(chip::RowAt(reg)->name);
}

std::unique_ptr<Editor> Editor::On(const Binding& row, const QWidget* window, QWidget* parent) {
  if (row.code != nullptr) return Put<TextEditor>(row, window, parent);
  if (!row.items.empty()) return Put<ListEditor>(row, window, parent);
  return Put<ButtonEditor>(row, window, parent);
}

std::unique_ptr<Editor> Editor::Make(const Binding& row, QWidget* parent) {
  std::unique_ptr<Editor> editor = On(row, nullptr, parent);
  editor->Furnish();
  return editor;
}

std::unique_ptr<Editor> Editor::Take(const Binding& row, const QWidget& window) {
  return On(row, &window, nullptr);
}

}  // namespace zth::windows
