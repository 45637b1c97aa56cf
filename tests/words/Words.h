#pragma once

#include <vector>

#include <QString>
#include <QStringList>

/// The lists beside this file: the program's texts, written by hand, with which the program is compared.
namespace zth::testing {

/// One entry of a list: "kind word... "text"...: "item"...". An indented line belongs to the one above it.
struct Entry {
  QString where;  ///< file and line
  QString kind;
  QStringList words;  ///< without quotes
  QStringList texts;  ///< in quotes, before the colon
  QStringList items;  ///< in quotes, after the colon
  bool hasItems = false;

  QString Word(int i) const { return words.value(i); }
  QString Text() const { return texts.value(0); }
};

/// "name(0..3)" becomes four entries; "%1" in their words and texts the index + 1, "%5" the index + 5.
std::vector<Entry> ReadWords(const QString& file);

/// A caption in the form of the lists: without its mnemonic.
QString Plain(const QString& caption);

}  // namespace zth::testing
