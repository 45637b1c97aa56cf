#include <array>
#include <map>
#include <set>

#include "base/BitField.h"
#include "base/Rounding.h"
#include "command/Alerts.h"
#include "command/Commands.h"
#include "tasks/LimitTables.h"

namespace zth::command {
namespace {

using tasks::AlertRow;
using tasks::AlertTab;
using tasks::GaugeTab;
using tasks::LimitChannel;

constexpr std::array kGauges{&tasks::kTemperatureGauge, &tasks::kFanGauge, &tasks::kVoltageGauge,
                             &tasks::kThermTimerGauge, &tasks::kThermPinGauge};

double Rounded(double value) {
  return base::RoundHalfEven(value, 2);
}

double LimitOf(Session& session, const GaugeTab& tab, const LimitChannel& channel, int reg) {
  const unsigned raw = session.Read(static_cast<std::uint8_t>(reg));
  return Rounded(tab.show(static_cast<std::uint8_t>(raw), channel));
}

/// A fan's only limit is the speed below which it is too slow; every other single limit is an upper one.
void ShowLimits(Session& session, const GaugeTab& tab, const LimitChannel& channel) {
  const bool isFan = &tab == &tasks::kFanGauge;
  const double value = Rounded(static_cast<double>(tab.reading(static_cast<std::size_t>(channel.index))));
  const std::string unit = std::string(" ") + tab.unit;
  std::string line = std::string(channel.item) + " " + NumberText(value) + unit;
  Row row{{"name", channel.item}, {"value", value}, {"unit", tab.unit}};
  std::string state = "within";
  if (channel.lowRegister != tasks::kNoRegister || isFan) {
    const double low = LimitOf(session, tab, channel, isFan ? channel.highRegister : channel.lowRegister);
    line += ", low " + NumberText(low) + unit;
    row.emplace_back("low", low);
    if (value < low) state = "below";
  }
  if (!isFan) {
    const double high = LimitOf(session, tab, channel, channel.highRegister);
    line += ", high " + NumberText(high) + unit;
    row.emplace_back("high", high);
    if (value > high) state = "above";
  }
  row.emplace_back("state", state);
  session.Out().Result(line + ": " + state, row);
}

/// Reads registers once each.
class Registers {
 public:
  explicit Registers(Session& session) : session_(session) {}
  bool Bit(int reg, int bit) {
    const auto address = static_cast<std::uint8_t>(reg);
    if (!values_.contains(address)) values_[address] = session_.Read(address);
    return base::GetBit(values_[address], bit);
  }

 private:
  Session& session_;
  std::map<std::uint8_t, unsigned> values_;
};

void ShowAlert(Registers& registers, const AlertRow& row, const Output& output) {
  const bool isMasked = row.maskRegister != tasks::kNoRegister && registers.Bit(row.maskRegister, row.bit);
  const bool isAlert = registers.Bit(row.statusRegister, row.bit);
  output.Result(std::string(row.label) + ": " + (isAlert ? "alert" : "ok") + (isMasked ? ", masked" : ""),
                {{"name", row.label}, {"alert", isAlert}, {"masked", isMasked}});
}

}  // namespace

Job PrepareLimits(const Request& /*request*/, const Setting& /*setting*/) {
  return [](Session& session) {
    session.ReadPins();
    std::set<int> groups;
    for (const GaugeTab* tab : kGauges) {
      if (groups.insert(tab->group).second) session.ReadGroup(tab->group);
      for (const LimitChannel& channel : tab->channels) {
        if (IsListed(channel.listed)) ShowLimits(session, *tab, channel);
      }
    }
  };
}

Job PrepareAlerts(const Request& /*request*/, const Setting& /*setting*/) {
  return [](Session& session) {
    session.ReadPins();
    session.Out().Remark("Reading the alerts clears those whose cause has ended");
    Registers registers(session);
    for (const AlertTab* tab : AlertTabs()) {
      for (std::size_t row = 0; row < tab->rows.size(); ++row) {
        if (IsLive(*tab, row)) ShowAlert(registers, tab->rows[row], session.Out());
      }
    }
  };
}

}  // namespace zth::command
