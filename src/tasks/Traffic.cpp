#include "tasks/Traffic.h"

#include <algorithm>
#include <utility>

#include "tasks/Recorder.h"

namespace zth::tasks {
namespace {

bool IsOfPort(link::Form form) {
  using enum link::Form;
  return form == ReadPort || form == WritePort || form == WritePortWithByte;
}

bool IsOfRegisters(link::Form form) {
  using enum link::Form;
  return form == Read || form == ReadBlock || form == Write;
}

}  // namespace

void Traffic::Saw(const link::Call& call) {
  TrafficRecord record;
  record.time = call.began;
  record.took = call.took;
  record.form = call.form;
  record.mode = call.mode;
  record.address = call.address;
  record.reg = call.reg;
  record.succeeded = call.succeeded;
  record.result = call.result;
  record.count = static_cast<std::uint8_t>(std::min(call.bytes.size(), kMostBytes));
  std::copy_n(call.bytes.begin(), record.count, record.bytes.begin());
  const std::uint64_t asker = call.asker == nullptr ? 0 : call.asker->Serial();
  if (std::exchange(lastAsker_, asker) != asker) lastText_ = asker == 0 ? 0 : NumberOf(call.asker->Name());
  record.text = lastText_;
  record.action = asker;
  Enter(record);
}

void Traffic::AddNote(std::string_view note, double now) {
  TrafficRecord record;
  record.time = now;
  record.isNote = true;
  Add(record, note);
}

void Traffic::Clear() {
  first_ = End();
  records_.clear();
}

void Traffic::Add(TrafficRecord record, std::string_view text) {
  record.text = NumberOf(text);
  Enter(record);
}

std::shared_ptr<void> Traffic::Listen(Listener listener) {
  auto token = std::make_shared<Listener>(std::move(listener));
  listeners_.emplace_back(token);
  return token;
}

void Traffic::Enter(TrafficRecord& record) {
  if (!record.isNote) Learn(record);
  if (!hasBegun_) CountFrom(record.time);
  if (records_.size() == most_) {
    records_.pop_front();
    ++first_;
  }
  records_.push_back(record);
  if (listeners_.empty()) return;
  std::erase_if(listeners_, [](const auto& listener) { return listener.expired(); });
  for (const auto& listener : std::vector(listeners_)) {
    if (const auto held = listener.lock()) (*held)(record, texts_[record.text]);
  }
}

void Traffic::Learn(TrafficRecord& record) {
  const bool isOfPort = IsOfPort(record.form);
  if (!isOfPort && !IsOfRegisters(record.form)) return;
  Known& known = KnownOf(record);
  const std::size_t first = isOfPort ? 0 : record.reg;
  if (link::IsWrite(record.form) && known[first] >= 0) record.before = static_cast<std::uint8_t>(known[first]);
  // What a failed call has read or written is not known; what was known before may still be so.
  if (!record.succeeded) return;
  for (std::size_t i = 0; i < record.count && first + i < known.size(); ++i) known[first + i] = record.bytes[i];
}

Traffic::Known& Traffic::KnownOf(const TrafficRecord& record) {
  const auto mode = static_cast<std::uint32_t>(static_cast<std::uint16_t>(record.mode));
  const std::uint32_t key = mode << 16U | (IsOfPort(record.form) ? 0x100U : 0U) | record.address;
  const auto [entry, isNew] = known_.try_emplace(key);
  if (isNew) entry->second.fill(-1);
  return entry->second;
}

std::uint32_t Traffic::NumberOf(std::string_view text) {
  const auto [entry, isNew] = numbers_.try_emplace(std::string(text), static_cast<std::uint32_t>(texts_.size()));
  if (isNew) texts_.emplace_back(text);
  return entry->second;
}

}  // namespace zth::tasks
