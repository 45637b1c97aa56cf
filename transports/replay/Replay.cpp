#include "replay/Replay.h"

#include <algorithm>
#include <utility>

namespace zth::replay {
namespace {

using link::Form;
using tasks::TrafficRecord;

/// How far ahead a request is looked for: a few ticks of the monitor with every window open.
constexpr std::size_t kMostAhead = 1000;

bool IsOfPort(Form form) {
  return form == Form::ReadPort || form == Form::WritePort || form == Form::WritePortWithByte;
}

bool IsOfRegisters(Form form) {
  return form == Form::Read || form == Form::ReadBlock || form == Form::Write;
}

bool IsSame(const TrafficRecord& one, const TrafficRecord& other) {
  if (one.form != other.form || one.address != other.address || one.reg != other.reg) return false;
  if (one.form == Form::ReadBlock) return one.count == other.count;
  return !link::IsWrite(one.form) || one.bytes[0] == other.bytes[0];
}

/// A request as it stands in a line.
std::string TextOf(TrafficRecord request) {
  request.succeeded = true;
  const std::string line = tasks::TrafficLineText(request, {}, 0);
  const std::size_t begin = line.find(' ') + 1;
  return "\"" + line.substr(begin, line.find(" ->") - begin) + "\"";
}

}  // namespace

Replay::Replay(OpenSource open, std::int16_t mode, std::string file)
    : open_(std::move(open)), mode_(mode), file_(std::move(file)) {
  Survey();
  if (hasCalls_) reader_.emplace(open_());
}

void Replay::Survey() {
  tasks::TrafficReader reader(open_());
  while (reader.Next()) {
    const TrafficRecord& record = reader.Record();
    if (record.isNote || record.mode != mode_) continue;
    hasCalls_ = true;
    lastLine_ = reader.Line();
    if (!record.succeeded) continue;
    if (!IsOfRegisters(record.form) && !IsOfPort(record.form)) {
      last_.try_emplace(record.form, record);
      continue;
    }
    // What a register held at first is known from its first read, unless it was written before.
    if (link::IsWrite(record.form)) continue;
    Known& known = KnownOf(record);
    for (std::size_t i = 0; i < record.count && record.reg + i < known.size(); ++i) {
      if (known[record.reg + i] < 0) known[record.reg + i] = record.bytes[i];
    }
  }
  knowsFailures_ = reader.Head().smbusFailuresKnown;
  if (!reader.Fault().empty()) {
    hasCalls_ = false;
    known_.clear();
    last_.clear();
    trouble_ = file_ + ", " + reader.Fault();
  } else if (!hasCalls_) {
    trouble_ = file_ + " has no call over this link";
  }
}

void Replay::LookAhead() {
  while (reader_ && ahead_.size() < kMostAhead) {
    if (!reader_->Next()) {
      // Read without a fault before; if the file has changed since, it ends here.
      reader_.reset();
    } else if (!reader_->Record().isNote && reader_->Record().mode == mode_) {
      ahead_.push_back({reader_->Record(), reader_->Line()});
    }
  }
}

TrafficRecord Replay::Answer(const TrafficRecord& request) {
  if (ahead_.size() < 2) LookAhead();
  if (ahead_.empty() || !IsSame(ahead_.front().record, request)) {
    Part(request);
    LookAhead();
    const auto found = Find(request);
    if (!found) return FromState(request);
    for (std::size_t skipped = 0; skipped < *found; ++skipped) {
      Learn(ahead_.front().record);
      ahead_.pop_front();
    }
  }
  const TrafficRecord answer = ahead_.front().record;
  ahead_.pop_front();
  Learn(answer);
  if (!answer.succeeded) ++failures_[answer.address];
  return answer;
}

std::optional<std::size_t> Replay::Find(const TrafficRecord& request) const {
  for (std::size_t i = 0; i < ahead_.size(); ++i) {
    const TrafficRecord& record = ahead_[i].record;
    if (IsSame(record, request)) return i;
    // Neither what the user did nor a failure is passed over: the program may yet come to it.
    if (!record.succeeded || link::IsWrite(record.form)) break;
  }
  return std::nullopt;
}

void Replay::Part(const TrafficRecord& request) {
  if (!trouble_.empty()) return;
  const std::string asked = TextOf(request);
  if (ahead_.empty()) {
    trouble_ = file_ + " ends with line " + std::to_string(lastLine_) + ", the program asks on with " + asked;
  } else {
    const Line& next = ahead_.front();
    trouble_ = "Program and recording part at line " + std::to_string(next.number) + " of " + file_ + ": recorded " +
               TextOf(next.record) + ", asked " + asked;
  }
}

TrafficRecord Replay::FromState(TrafficRecord request) {
  request.time = -1;
  request.succeeded = true;
  request.result = 0;
  if (!IsOfRegisters(request.form) && !IsOfPort(request.form)) {
    const auto last = last_.find(request.form);
    if (last == last_.end()) {
      request.succeeded = request.form != Form::Firmware;
    } else if (!link::IsWrite(request.form)) {
      request.bytes = last->second.bytes;
      request.result = last->second.result;
    }
    return request;
  }
  const Known& known = KnownOf(request);
  if (link::IsWrite(request.form)) {
    Learn(request);
    return request;
  }
  request.count = request.form == Form::ReadBlock ? request.count : std::uint8_t{1};
  for (std::size_t i = 0; i < request.count; ++i) {
    const std::int16_t value = request.reg + i < known.size() ? known[request.reg + i] : std::int16_t{-1};
    request.bytes[i] = static_cast<std::uint8_t>(value < 0 ? 0xFF : value);
    // Over the SMBus a failure says that nothing is known. Over USB it would end the program.
    if (value < 0 && mode_ == 2) request.succeeded = false;
  }
  if (!request.succeeded) ++failures_[request.address];
  return request;
}

Replay::Known& Replay::KnownOf(const TrafficRecord& record) {
  const auto [entry, isNew] = known_.try_emplace(record.address | (IsOfPort(record.form) ? 0x100 : 0));
  if (isNew) entry->second.fill(-1);
  return entry->second;
}

void Replay::Learn(const TrafficRecord& record) {
  if (!record.succeeded) return;
  if (IsOfRegisters(record.form) || IsOfPort(record.form)) {
    Known& known = KnownOf(record);
    const std::size_t first = IsOfPort(record.form) ? 0 : record.reg;
    for (std::size_t i = 0; i < record.count && first + i < known.size(); ++i) known[first + i] = record.bytes[i];
    return;
  }
  last_.insert_or_assign(record.form, record);
  // The adapter reports twice the percentage of heaters 1 and 2.
  const bool isHeater = record.form == Form::SetHeater && record.address >= 1 && record.address <= 2;
  if (!isHeater) return;
  const auto [state, isNew] = last_.try_emplace(Form::ReadHeaters, TrafficRecord{});
  state->second.bytes[record.address - 1U] = static_cast<std::uint8_t>(record.bytes[0] * 2);
}

std::int32_t Replay::Failures(std::uint8_t address) const {
  return knowsFailures_ ? failures_[address] : -1;
}

}  // namespace zth::replay
