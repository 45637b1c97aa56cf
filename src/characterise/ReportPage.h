#pragma once

#include <string>
#include <vector>

/// Pieces of the report's page.
namespace zth::characterise {

/// A table as XHTML. Texts are escaped here; the first column is each row's head.
struct PageTable {
  std::string caption;
  std::vector<std::string> heads;
  std::vector<std::vector<std::string>> rows;
};

/// The table; nothing if it has no row.
std::string TableText(const PageTable& table);

/// A paragraph; nothing for an empty text.
std::string ParagraphText(const std::string& text);

/// The whole page around its body.
std::string PageText(const std::string& title, const std::string& body);

}  // namespace zth::characterise
