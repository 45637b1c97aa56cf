#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

/// Measured values as text for monitoring systems.
namespace zth::tasks {

enum class MetricType : std::uint8_t { Gauge, Counter };

struct MetricSample {
  std::vector<std::pair<std::string, std::string>> labels;  ///< names and texts; one with an empty text is left out
  double value = 0;
};

/// Samples of one kind.
struct MetricFamily {
  std::string name;  ///< without the "_total" of a counter; ends with the unit, if any
  MetricType type = MetricType::Gauge;
  std::string unit;  ///< "celsius"; empty for none
  std::string help;
  std::vector<MetricSample> samples;
};

inline constexpr char kOpenMetricsType[] = "application/openmetrics-text; version=1.0.0; charset=utf-8";
inline constexpr char kPlainMetricsType[] = "text/plain; version=0.0.4; charset=utf-8";

/// In the format OpenMetrics 1.0. A family without samples is left out.
std::string OpenMetricsText(const std::vector<MetricFamily>& families);

/// In the older text format, for clients that ask for it.
std::string PlainMetricsText(const std::vector<MetricFamily>& families);

}  // namespace zth::tasks
