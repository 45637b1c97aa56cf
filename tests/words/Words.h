#pragma once

#include <vector>

#include <QString>
#include <QStringList>

/// The golden lists beside this file: words written down by hand, which the program is held against.
namespace zth::testing {

/// One entry of a list: "kind word... "text"...: "item"...". An indented line belongs to the one above it.
struct Entry {
  QString where;  ///< file and line
  QString kind;
  QStringList words;  ///< without quotes
  QStringList texts;  ///< in quotes, before the colon
  QStringList items;  ///< in quotes, behind it
  bool hasItems = false;

  QString Word(int i) const { return words.value(i); }
  QString Text() const { return texts.value(0); }
};

/// "name(0..3)" becomes four entries; "%1" in their words and texts the index + 1, "%5" the index + 5.
std::vector<Entry> ReadWords(const QString& file);

/// A caption as the lists have it: without its mnemonic.
QString Plain(const QString& caption);

}  // namespace zth::testing
