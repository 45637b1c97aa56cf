#include "characterise/ReportPage.h"

#include "characterise/Markup.h"

namespace zth::characterise {
namespace {

// Light and dark by the reader's system, light on paper. The series differ in lightness, too, and dashes tell up from
// down, so that a print in grey can be read.
constexpr char kStyle[] = R"(
:root { color-scheme: light dark; --ink: #1b1f24; --soft: #57606a; --paper: #ffffff; --line: #d0d7de; --band: #f6f8fa;
  --good: #1a7f37; --bad: #cf222e;
  --s0: #0550ae; --s1: #bc4c00; --s2: #116329; --s3: #8250df; --s4: #a40e26; --s5: #0a7ea4; --s6: #7d4e00; --s7: #57606a; }
@media screen and (prefers-color-scheme: dark) {
  :root { --ink: #e6edf3; --soft: #9da7b3; --paper: #0d1117; --line: #3d444d; --band: #161b22;
    --good: #56d364; --bad: #ff7b72;
    --s0: #79c0ff; --s1: #ffa657; --s2: #7ee787; --s3: #d2a8ff; --s4: #ff9492; --s5: #76e3ea; --s6: #e3b341; --s7: #b1bac4; } }
* { box-sizing: border-box; }
body { font: 15px/1.5 system-ui, "Segoe UI", Roboto, "DejaVu Sans", sans-serif; color: var(--ink); background: var(--paper);
  max-width: 62rem; margin: 0 auto; padding: 2rem 1.25rem 4rem; }
h1 { font-size: 1.7rem; line-height: 1.2; margin: 0 0 .4rem; }
h2 { font-size: 1.25rem; margin: 2.4rem 0 .6rem; padding-bottom: .25rem; border-bottom: 1px solid var(--line); }
h3 { font-size: 1.05rem; margin: 1.6rem 0 .4rem; }
p { margin: .5rem 0; max-width: 48rem; }
table { border-collapse: collapse; margin: .8rem 0; font-variant-numeric: tabular-nums; }
th, td { white-space: nowrap; }
td.text, table.facts td, thead th { white-space: normal; }
caption { text-align: left; color: var(--soft); padding-bottom: .3rem; }
th, td { padding: .22rem .9rem .22rem 0; text-align: right; border-bottom: 1px solid var(--line); vertical-align: top; }
thead th { color: var(--soft); font-weight: 600; }
th:first-child, td.text, table.facts td { text-align: left; }
tbody th { font-weight: 500; }
.outcome { border-left: 4px solid var(--bad); background: var(--band); padding: .6rem 1rem; margin: 1.2rem 0; }
.outcome.good { border-color: var(--good); }
.outcome p { margin: .2rem 0; }
svg.chart { display: block; width: 100%; height: auto; margin: .8rem 0 1.2rem; }
svg.chart text { font-size: 12px; fill: var(--soft); }
svg.chart .grid { stroke: var(--line); stroke-width: 1; }
svg.chart .line { fill: none; stroke-width: 2; stroke-linejoin: round; }
svg.chart .dashed { stroke-dasharray: 6 4; }
.s0 { stroke: var(--s0); } .s1 { stroke: var(--s1); } .s2 { stroke: var(--s2); } .s3 { stroke: var(--s3); }
.s4 { stroke: var(--s4); } .s5 { stroke: var(--s5); } .s6 { stroke: var(--s6); } .s7 { stroke: var(--s7); }
svg.chart .dot { fill: var(--paper); stroke-width: 2; }
@page { margin: 16mm 14mm; }
@media print {
  body { font-size: 10pt; max-width: none; padding: 0; }
  h2, h3, caption, thead { break-after: avoid; }
  tr, svg.chart, .outcome, figure { break-inside: avoid; }
  svg.chart { max-height: 75mm; }
}
)";

}  // namespace

std::string TableText(const PageTable& table) {
  if (table.rows.empty()) return {};
  const char* const begin = table.heads.empty() ? "<table class=\"facts\">\n" : "<table>\n";
  std::string text = begin + (table.caption.empty() ? "" : Element("caption", table.caption) + "\n");
  if (!table.heads.empty()) {
    text += "<thead><tr>";
    for (const std::string& head : table.heads) text += "<th scope=\"col\">" + Escaped(head) + "</th>";
    text += "</tr></thead>\n";
  }
  text += "<tbody>\n";
  for (const std::vector<std::string>& row : table.rows) {
    text += "<tr>";
    for (std::size_t i = 0; i < row.size(); ++i) {
      // Words begin at the left, figures end at the right.
      const bool isWords = i > 0 && row[i].find_first_of("0123456789") != 0 && row[i].size() > 3 && row[i][0] != '-';
      text += i == 0 ? "<th scope=\"row\">" + Escaped(row[i]) + "</th>"
                     : (isWords ? "<td class=\"text\">" : "<td>") + Escaped(row[i]) + "</td>";
    }
    text += "</tr>\n";
  }
  return text + "</tbody>\n</table>\n";
}

std::string ParagraphText(const std::string& text) {
  return text.empty() ? std::string() : Element("p", text) + "\n";
}

std::string PageText(const std::string& title, const std::string& body) {
  return "<!DOCTYPE html>\n<html lang=\"en\" xmlns=\"http://www.w3.org/1999/xhtml\">\n<head>\n<meta "
         "charset=\"utf-8\"/>\n"
         "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\"/>\n" +
         Element("title", title) + "\n<style>" + kStyle + "</style>\n</head>\n<body>\n" + body + "</body>\n</html>\n";
}

}  // namespace zth::characterise
