#include "characterise/Characteriser.h"

#include <algorithm>
#include <utility>

#include "characterise/Run.h"
#include "link/ChipId.h"
#include "link/LinkErrors.h"

namespace zth::characterise {
namespace {

constexpr char kLinkFailed[] = "A transfer with the board failed";

}  // namespace

Characteriser::Characteriser(platform::Services& services) : services_(services) {}

Characteriser::~Characteriser() {
  finished_ = nullptr;
  Abort();
}

void Characteriser::Start(const Settings& settings) {
  if (IsRunning()) return;
  run_ = std::make_unique<Run>(services_, settings);
  if (run_->IsOver()) return NoteEnd();
  // Another's transfer may fail as well; the program then ends, and nothing must stay as the run has set it.
  link::BeforeReport([this] {
    if (!IsRunning()) return;
    run_->EndNow(Ending::TransferFailed, kLinkFailed);
    NoteEnd();
  });
}

void Characteriser::Tick() {
  if (!IsRunning()) return;
  run_->Tick();
  if (run_->IsOver()) NoteEnd();
}

void Characteriser::Cancel() {
  if (IsRunning()) run_->End(Ending::Cancelled, "Cancelled");
}

void Characteriser::Abort() {
  if (!IsRunning()) return;
  run_->EndNow(Ending::Closed, "Closed before its end");
  NoteEnd();
}

void Characteriser::NoteEnd() {
  link::BeforeReport(nullptr);
  if (finished_) finished_();
}

bool Characteriser::IsRunning() const {
  return run_ != nullptr && !run_->IsOver();
}

double Characteriser::Progress() const {
  return run_ == nullptr ? 0 : run_->Progress();
}

double Characteriser::SecondsLeft() const {
  return run_ == nullptr ? 0 : run_->SecondsLeft();
}

std::string Characteriser::Words() const {
  return run_ == nullptr ? std::string() : run_->Words();
}

const Characterisation& Characteriser::Data() const {
  return run_ == nullptr ? empty_ : run_->Data();
}

bool Characteriser::Owns(std::uint8_t reg) const {
  const std::vector<std::uint8_t> owned = Owned();
  return std::ranges::find(owned, reg) != owned.end();
}

bool Characteriser::OwnsHeater(int heater) const {
  if (!IsRunning()) return false;
  const Settings& settings = run_->Data().settings;
  return run_->Held().OwnsHeater(heater) || ((settings.heat || settings.controller) && settings.heater == heater);
}

std::vector<std::uint8_t> Characteriser::Owned() const {
  return IsRunning() ? run_->Owned() : std::vector<std::uint8_t>();
}

void Characteriser::OnFinished(std::function<void()> finished) {
  finished_ = std::move(finished);
}

}  // namespace zth::characterise
