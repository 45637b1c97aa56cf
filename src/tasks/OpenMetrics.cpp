#include "tasks/OpenMetrics.h"

#include <array>
#include <charconv>
#include <string_view>

namespace zth::tasks {
namespace {

enum class Format : std::uint8_t { OpenMetrics, Plain };

std::string NumberText(double value) {
  std::array<char, 32> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
  return {digits.data(), end};
}

std::string Escaped(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    if (c == '\\' || c == '"') escaped += '\\';
    if (c == '\n') {
      escaped += "\\n";
    } else {
      escaped += c;
    }
  }
  return escaped;
}

std::string Line(const std::string& name, const MetricSample& sample) {
  std::string labels;
  for (const auto& [label, text] : sample.labels) {
    if (text.empty()) continue;
    labels += labels.empty() ? "" : ",";
    labels += label;
    labels += "=\"" + Escaped(text) + "\"";
  }
  return name + (labels.empty() ? "" : "{" + labels + "}") + " " + NumberText(sample.value) + "\n";
}

std::string Text(const std::vector<MetricFamily>& families, Format format) {
  std::string text;
  for (const MetricFamily& family : families) {
    if (family.samples.empty()) continue;
    const bool isCounter = family.type == MetricType::Counter;
    const std::string sample = family.name + (isCounter ? "_total" : "");
    // The older format knows a family by the name of its samples, and has no units.
    const std::string& name = format == Format::OpenMetrics ? family.name : sample;
    text += "# TYPE " + name + (isCounter ? " counter\n" : " gauge\n");
    if (format == Format::OpenMetrics && !family.unit.empty()) text += "# UNIT " + name + " " + family.unit + "\n";
    text += "# HELP " + name + " " + Escaped(family.help) + "\n";
    for (const MetricSample& of : family.samples) text += Line(sample, of);
  }
  return format == Format::OpenMetrics ? text + "# EOF\n" : text;
}

}  // namespace

std::string OpenMetricsText(const std::vector<MetricFamily>& families) {
  return Text(families, Format::OpenMetrics);
}

std::string PlainMetricsText(const std::vector<MetricFamily>& families) {
  return Text(families, Format::Plain);
}

}  // namespace zth::tasks
