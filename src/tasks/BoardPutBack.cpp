#include "tasks/BoardPutBack.h"

#include <optional>

#include "link/Declarations.h"
#include "link/Transfers.h"
#include "link/USBStuff.h"

namespace zth::tasks {
namespace {

/// Percent of a heater, a byte of the switches; nothing if the transfer failed.
std::optional<std::uint8_t> Read(const BoardTouched& touched) {
  const link::FailureWatch watch;
  unsigned value = 0;
  if (touched.part == BoardPart::Heater) {
    link::ReadHeaterState();
    value = link::Bus.ReadBuffer.at(touched.number - 1U) / 2U;  // the adapter reports twice the percentage
  } else {
    value = static_cast<unsigned>(link::ReadBoardPort(touched.number));
  }
  return watch.Failed() ? std::nullopt : std::optional(static_cast<std::uint8_t>(value));
}

void Set(const BoardTouched& touched, std::uint8_t value) {
  if (touched.part == BoardPart::Heater) {
    std::int32_t percent = value;
    link::SetHeater(touched.number, percent);
  } else {
    link::WriteBoardPort(touched.number, value);
  }
}

std::optional<Reason> Run(const BoardTouched& touched) {
  const auto now = Read(touched);
  if (!now) return Reason::Failed;
  if (now == touched.before) return std::nullopt;
  if (*now != touched.after) return Reason::Changed;
  Set(touched, *touched.before);
  const auto after = Read(touched);
  if (!after) return Reason::Failed;
  return after == touched.before ? std::nullopt : std::optional(Reason::NotTaken);
}

}  // namespace

std::vector<BoardLeft> NeverReadOf(const std::vector<BoardTouched>& changes) {
  std::vector<BoardLeft> left;
  for (const BoardTouched& change : changes) {
    if (!change.before) left.push_back({change.part, change.number, Reason::NeverRead});
  }
  return left;
}

std::vector<BoardLeft> RunBoardPutBack(const std::vector<BoardTouched>& changes) {
  std::vector<BoardLeft> left;
  if (link::Bus.InterfaceMode != link::kModeUsb) return left;
  for (auto change = changes.rbegin(); change != changes.rend(); ++change) {
    if (!change->before) continue;
    if (const auto reason = Run(*change)) left.push_back({change->part, change->number, *reason});
  }
  return left;
}

}  // namespace zth::tasks
