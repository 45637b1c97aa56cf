// Every window's texts, compared with windows.txt: everything prescribed is there, and nothing that is not listed.

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QTabWidget>
#include <QToolBar>

#include "tests/support/EveryWindow.h"
#include "tests/support/Steps.h"
#include "tests/words/Words.h"
#include "widgets/Strip.h"
#include "widgets/UpDown.h"

namespace zth::testing {
namespace {

/// A window of the list, opened once, with its entries.
struct Opening {
  QString name, title, registers;
  std::vector<Entry> entries;
};

std::vector<Opening> Openings() {
  std::vector<Opening> openings;
  std::vector<Entry> common;  // entries before the first window apply to every window
  for (const Entry& entry : ReadWords("windows.txt")) {
    if (entry.kind == "window") {
      openings.push_back({entry.Word(0), entry.Text(), entry.words.mid(2).join(' '), common});
    } else {
      (openings.empty() ? common : openings.back().entries).push_back(entry);
    }
  }
  return openings;
}

std::string Quoted(const QStringList& texts) {
  return texts.isEmpty() ? "nothing" : '"' + texts.join("\" \"").toStdString() + '"';
}

template <typename Count, typename Text>
QStringList Listed(Count count, Text text) {
  QStringList texts;
  for (int i = 0; i < static_cast<int>(count); ++i) texts << text(i);
  return texts;
}

QStringList Labels(const QWidget& window, const QWidget& control, const QString& name) {
  QStringList texts;
  for (const auto* label : window.findChildren<QLabel*>()) {
    if (label->buddy() == &control && (name.isEmpty() || label->objectName() == name)) texts << Plain(label->text());
  }
  return texts;
}

/// Label, up-down and range of a list or a box, in the form of the list.
QStringList Company(const QWidget& window, const Entry& entry, const QWidget& control) {
  const bool named = entry.Word(1).startsWith("lbl") || entry.Word(1).startsWith("Label");
  QStringList told = entry.texts.isEmpty() ? QStringList() : Labels(window, control, named ? entry.Word(1) : QString());
  for (const auto* upDown : window.findChildren<widgets::UpDown*>()) {
    if (upDown->Buddy() != &control || !entry.words.last().contains(QRegularExpression("^\\d+$"))) continue;
    told << QString("%1 %2..%3 %4")
                .arg(upDown->objectName())
                .arg(upDown->Min())
                .arg(upDown->Max())
                .arg(upDown->Increment());
  }
  return told;
}

QStringList ExpectedCompany(const Entry& entry) {
  if (entry.kind == "in") return {};
  const auto range = std::ranges::find_if(entry.words, [](const QString& word) { return word.startsWith("UpDown"); });
  QStringList expected = entry.texts;
  if (range != entry.words.end()) expected << entry.words.mid(range - entry.words.begin()).join(' ');
  return expected;
}

QString TextOf(const QWidget& window, const QString& name) {
  const QVariant caption = Desk::Property(window, name, "Caption");
  return caption.isValid() ? caption.toString() : Plain(Desk::Text(window, name));
}

QStringList Slots(const QWidget& window, const Entry& entry) {
  auto& chart = Desk::Get<widgets::Strip>(window, entry.Word(0));
  return Listed(entry.items.size(), [&](int i) {
    chart.SetLabelIndex(entry.Word(1).toInt() + i);
    return entry.kind == "lefts" ? QString::number(static_cast<double>(chart.LabelLeft()), 'g', 3) : chart.Caption();
  });
}

QStringList Axes(widgets::Strip& chart) {
  const QString x = QString("%1..%2").arg(chart.XEnd() - chart.XSpan()).arg(chart.XEnd());
  return QStringList{x} + Listed(chart.AxisCount(), [&](int axis) {
           chart.SetAxisIndex(axis);
           return QString("%1..%2 at %3..%4")
               .arg(chart.AxisMin())
               .arg(chart.AxisMax())
               .arg(chart.AxisAreaTop())
               .arg(chart.AxisAreaBottom());
         });
}

QStringList Traces(const QWidget& window, const Entry& entry) {
  const auto& chart = Desk::Get<widgets::Strip>(window, entry.Word(0));
  static const QStringList styles{"none", "solid", "dashed", "dotted"};
  const int first = entry.Word(1).toInt();
  return Listed(entry.items.size(), [&](int i) {
    if (first + i >= chart.TraceCount()) return QString();
    return QString("%1 %2 %3 on %4")
        .arg(chart.TraceColour(first + i).name().mid(1))
        .arg(chart.TraceWidth(first + i))
        .arg(styles.value(chart.VariableLineStyle(first + i)))
        .arg(chart.TraceAxis(first + i));
  });
}

/// A frame, or a page of tabs by its caption.
QWidget& Holder(const QWidget& window, const Entry& entry) {
  auto& holder = Desk::Get<QWidget>(window, entry.Word(0));
  auto* tabs = qobject_cast<QTabWidget*>(&holder);
  for (int page = 0; tabs != nullptr && page < tabs->count(); ++page) {
    if (Plain(tabs->tabText(page)) == entry.Text()) return *tabs->widget(page);
  }
  return holder;
}

/// The program's texts and items for an entry.
QStringList Found(const QWidget& window, const Entry& entry) {
  const QString name = entry.Word(0);
  if (entry.kind == "tabs") {
    auto& tabs = Desk::Get<QTabWidget>(window, name);
    return Listed(tabs.count(), [&](int i) { return Plain(tabs.tabText(i)); });
  }
  if (entry.kind == "check") return {Plain(Desk::Get<QCheckBox>(window, name).text())};
  if (entry.kind == "option") return {Plain(Desk::Get<QRadioButton>(window, name).text())};
  if (entry.kind == "button") return {Plain(Desk::Get<QPushButton>(window, name).text())};
  if (entry.kind == "frame") return {Plain(Desk::Get<QGroupBox>(window, name).title())};
  if (entry.kind == "text") return {TextOf(window, name)};
  if (entry.kind == "scale") {
    const auto end = [&](const char* which) { return Desk::Property(window, name, which).toDouble(); };
    return {QString("%1..%2").arg(end("ScaleMin")).arg(end("ScaleMax"))};
  }
  if (entry.kind == "tip") return {Desk::Get<QWidget>(window, name).toolTip()};
  if (entry.kind == "box") return Company(window, entry, Desk::Get<QLineEdit>(window, name));
  if (entry.kind == "chart" || entry.kind == "lefts") return Slots(window, entry);
  if (entry.kind == "axes") return Axes(Desk::Get<widgets::Strip>(window, name));
  if (entry.kind == "traces") return Traces(window, entry);
  if (entry.kind == "list") {
    auto& list = Desk::Get<QComboBox>(window, name);
    return Company(window, entry, list) + Listed(list.count(), [&](int i) { return list.itemText(i); });
  }
  if (entry.kind == "lines") {
    auto& list = Desk::Get<QListWidget>(window, name);
    return Listed(list.count(), [&](int i) { return list.item(i)->text(); });
  }
  if (entry.kind == "in") {
    QWidget& holder = Holder(window, entry);
    return Listed(entry.items.size(), [&](int i) {
      return holder.findChild<QWidget*>(entry.items.at(i)) != nullptr ? entry.items.at(i) : QString();
    });
  }
  if (entry.kind == "says") {
    QStringList labels;
    for (const auto* label : window.findChildren<QLabel*>()) labels << Plain(label->text());
    QStringList there;
    for (const QString& text : entry.items) there << (labels.contains(text) ? text : QString());
    return there;
  }
  throw std::runtime_error((entry.where + " is of no known kind: " + entry.kind).toStdString());
}

const std::set<QString> kCommands{"menu", "entry", "command", "tool"};

void Expect(const QWidget& window, const Entry& entry) {
  if (entry.kind == "ours" || kCommands.contains(entry.kind)) return;
  const std::string found = Quoted(Found(window, entry));
  const std::string expected = Quoted(ExpectedCompany(entry) + entry.items);
  if (found == expected) return;
  ADD_FAILURE() << window.objectName().toStdString() << ", " << entry.kind.toStdString() << ' '
                << entry.Word(0).toStdString() << " (" << entry.where.toStdString() << "):\n  expected  " << expected
                << "\n  there is  " << found;
}

template <typename Control>
void ExpectListed(const QWidget& window, const char* kinds, const std::vector<Entry>& entries) {
  std::set<QString> listed;
  for (const Entry& entry : entries) {
    if (entry.kind == "ours") listed.insert(entry.words.begin(), entry.words.end());
    if (QString(kinds).split(' ').contains(entry.kind)) listed.insert(entry.Word(0));
  }
  for (const auto* control : window.findChildren<Control*>()) {
    const QString name = control->objectName();
    const auto* frame = qobject_cast<const QGroupBox*>(control);
    if (name.startsWith("qt_") || (frame != nullptr && frame->title().isEmpty())) continue;
    EXPECT_TRUE(listed.contains(name)) << window.objectName().toStdString() << " has a "
                                       << control->metaObject()->className() << " that the list does not name: \""
                                       << name.toStdString() << '"';
  }
}

void ExpectNothingElse(const QWidget& window, const std::vector<Entry>& entries) {
  ExpectListed<QCheckBox>(window, "check", entries);
  ExpectListed<QRadioButton>(window, "option", entries);
  ExpectListed<QPushButton>(window, "button", entries);
  ExpectListed<QComboBox>(window, "list", entries);
  ExpectListed<QListWidget>(window, "lines", entries);
  ExpectListed<QTabWidget>(window, "tabs", entries);
  ExpectListed<QGroupBox>(window, "frame", entries);
  ExpectListed<QLineEdit>(window, "box text", entries);
}

[[maybe_unused]] void PrintTo(const Opening& opening, std::ostream* out) {
  *out << opening.name.toStdString() << " on " << opening.registers.toStdString();
}

class WindowWords : public ::testing::TestWithParam<Opening> {};

TEST_P(WindowWords, AreThoseOfTheList) {
  const Opening& opening = GetParam();
  Desk desk;
  Put(desk.board.usbChips.begin()->second, opening.registers.toStdString());
  desk.Start();
  QWidget& window = opening.name == "frmMain" ? static_cast<QWidget&>(desk.Main()) : desk.Open(opening.name);
  EXPECT_EQ(window.windowTitle().toStdString(), opening.title.toStdString());
  for (const Entry& entry : opening.entries) Expect(window, entry);
  if (opening.registers.isEmpty()) ExpectNothingElse(window, opening.entries);
}

INSTANTIATE_TEST_SUITE_P(Words, WindowWords, ::testing::ValuesIn(Openings()), [](const auto& row) {
  return row.param.name.toStdString() + (row.param.registers.isEmpty() ? "" : "_" + std::to_string(row.index));
});

TEST(Words, OfTheMenusAndTheToolBarAndWhatEachOpens) {
  std::vector<Entry> expected;
  std::set<QString> windows{"frmMain"};
  for (const Opening& opening : Openings()) {
    windows.insert(opening.name);
    for (const Entry& entry : opening.entries) {
      if (kCommands.contains(entry.kind)) expected.push_back(entry);
    }
  }
  for (const std::string& name : EveryWindow()) EXPECT_TRUE(windows.contains(QString::fromStdString(name))) << name;

  Desk desk;
  desk.Start();
  QStringList there;
  std::map<QString, QAction*> actions;
  const auto add = [&](const char* kind, const QString& name, const QString& text, QAction* action) {
    there << QString("%1 %2 \"%3\"").arg(kind, name, Plain(text));
    actions[there.last()] = action;
  };
  for (QAction* at : desk.Main().menuBar()->actions()) {
    if (at->menu() == nullptr) {
      add("command", at->objectName(), at->text(), at);
      continue;
    }
    add("menu", at->menu()->objectName(), at->text(), nullptr);
    for (QAction* entry : at->menu()->actions()) {
      if (!entry->isSeparator() && !entry->objectName().isEmpty())
        add("entry", entry->objectName(), entry->text(), entry);
    }
  }
  for (QAction* button : desk.Main().findChild<QToolBar*>("tbToolBar")->actions()) {
    const QString name = button->objectName();
    if (name.startsWith("tbToolBar(")) add("tool", name.mid(10).chopped(1), button->toolTip(), button);
  }
  for (qsizetype i = 0; i < static_cast<qsizetype>(expected.size()); ++i) {
    const Entry& entry = expected[static_cast<std::size_t>(i)];
    const QString told = QString("%1 %2 \"%3\"").arg(entry.kind, entry.Word(0), entry.Text());
    EXPECT_EQ(there.value(i).toStdString(), told.toStdString()) << entry.where.toStdString();
    if (entry.Word(1).isEmpty() || actions[told] == nullptr) continue;
    actions[told]->trigger();
    auto* window = desk.Main().FindWindow(entry.Word(1));
    EXPECT_NE(window, nullptr) << told.toStdString() << " does not open " << entry.Word(1).toStdString();
    if (window != nullptr) window->Unload();
    Desk::Settle();
  }
  EXPECT_EQ(there.size(), static_cast<qsizetype>(expected.size()));
}

}  // namespace
}  // namespace zth::testing
