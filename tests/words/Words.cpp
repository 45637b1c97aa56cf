#include "tests/words/Words.h"

#include <stdexcept>

#include <QFile>
#include <QRegularExpression>

namespace zth::testing {
namespace {

Entry Parsed(const QString& line, const QString& where) {
  static const QRegularExpression token(R"_(\s*(?:"([^"]*)"|([^\s":]+))(:?)(?=\s|$))_");
  Entry entry;
  entry.where = where;
  qsizetype at = 0;
  while (at < line.size()) {
    const auto found =
        token.match(line, at, QRegularExpression::NormalMatch, QRegularExpression::AnchorAtOffsetMatchOption);
    if (!found.hasMatch()) throw std::runtime_error((where + " does not read: " + line.mid(at)).toStdString());
    if (found.hasCaptured(1)) {
      (entry.hasItems ? entry.items : entry.texts) << found.captured(1);
    } else if (entry.kind.isEmpty()) {
      entry.kind = found.captured(2);
    } else {
      entry.words << found.captured(2);
    }
    entry.hasItems |= found.captured(3) == ":";
    at = found.capturedEnd();
  }
  return entry;
}

QStringList Numbered(QStringList texts, int index) {
  static const QRegularExpression mark("%(\\d+)");
  for (QString& text : texts) {
    for (auto found = mark.match(text); found.hasMatch(); found = mark.match(text)) {
      text.replace(found.capturedStart(), found.capturedLength(), QString::number(index + found.captured(1).toInt()));
    }
  }
  return texts;
}

void AddEach(const Entry& entry, std::vector<Entry>& entries) {
  static const QRegularExpression range(R"(^(.*)\((\d+)\.\.(\d+)\)$)");
  const auto found = range.match(entry.Word(0));
  if (!found.hasMatch()) return entries.push_back(entry);
  for (int i = found.captured(2).toInt(); i <= found.captured(3).toInt(); ++i) {
    Entry one = entry;
    one.words = Numbered(entry.words, i);
    one.words[0] = QString("%1(%2)").arg(found.captured(1)).arg(i);
    one.texts = Numbered(entry.texts, i);
    one.items = Numbered(entry.items, i);
    entries.push_back(one);
  }
}

}  // namespace

std::vector<Entry> ReadWords(const QString& name) {
  QFile file(QString(ZTH_WORDS) + "/" + name);
  if (!file.open(QIODevice::ReadOnly)) throw std::runtime_error("no list " + file.fileName().toStdString());
  std::vector<std::pair<QString, QString>> lines;  // and the position of each
  int number = 0;
  for (const QString& line : QString::fromUtf8(file.readAll()).split('\n')) {
    ++number;
    if (line.trimmed().isEmpty() || line.startsWith('#')) continue;
    if (line.startsWith(' ') && !lines.empty()) {
      lines.back().first += line;
    } else {
      lines.emplace_back(line, QString("%1:%2").arg(name).arg(number));
    }
  }
  std::vector<Entry> entries;
  for (const auto& [line, where] : lines) AddEach(Parsed(line, where), entries);
  return entries;
}

QString Plain(const QString& caption) {
  static const QRegularExpression mnemonic("&(.)");
  return QString(caption).replace(mnemonic, "\\1");
}

}  // namespace zth::testing
