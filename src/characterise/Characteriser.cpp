#include "characterise/Characteriser.h"

#include <utility>

namespace zth::characterise {

class Run {};

Characteriser::Characteriser(platform::Services& services) : services_(services) {}
Characteriser::~Characteriser() = default;
void Characteriser::Start(const Settings& settings) {
  empty_.settings = settings;
  empty_.ending = Ending::Refused;
  empty_.endWords = "Not built yet";
  if (finished_) finished_();
}
void Characteriser::Tick() {}
void Characteriser::Cancel() {}
void Characteriser::Abort() {}
bool Characteriser::IsRunning() const {
  return false;
}
double Characteriser::Progress() const {
  return 0;
}
double Characteriser::SecondsLeft() const {
  return 0;
}
std::string Characteriser::Words() const {
  return {};
}
const Characterisation& Characteriser::Data() const {
  return empty_;
}
bool Characteriser::Owns(std::uint8_t /*reg*/) const {
  return false;
}
bool Characteriser::OwnsHeater(int /*heater*/) const {
  return false;
}
std::vector<std::uint8_t> Characteriser::Owned() const {
  return {};
}
void Characteriser::OnFinished(std::function<void()> finished) {
  finished_ = std::move(finished);
}

std::string CheckSettings(const Settings& settings) {
  return settings.pwms.empty() ? "No PWM is chosen; choose one" : "";
}

}  // namespace zth::characterise
