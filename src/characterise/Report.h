#pragma once

#include <string>

#include "characterise/Characterisation.h"

/// The report of a run, in UTF-8. The same data give the same bytes: no clock, no locale. They make no transfer.
namespace zth::characterise {

/// One page that stands alone, as XHTML: results, charts as SVG in light and dark, the state in which the board was
/// left. Prints on A4 and Letter.
std::string ReportHtml(const Characterisation& data);

/// All points, a line each with CR LF, after a line of names. Units as in Settings.h.
std::string ReportCsv(const Characterisation& data);

/// Everything, points included, as one JSON object.
std::string ReportJson(const Characterisation& data);

}  // namespace zth::characterise
