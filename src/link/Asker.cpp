#include "link/Asker.h"

#include <utility>

#include "link/Declarations.h"

namespace zth::link {
namespace {

std::uint64_t NextSerial() {
  static std::uint64_t last = 0;
  return ++last;
}

}  // namespace

Asker::Asker(Kind kind, std::function<std::string()> name)
    : around_(Bus.asker), serial_(NextSerial()), isPart_(kind == Kind::Part), make_(std::move(name)) {
  if (kind != Kind::Action || around_ == nullptr) Bus.asker = this;
}

Asker::~Asker() {
  // The state may have been reset meanwhile.
  if (Bus.asker == this) Bus.asker = around_;
}

const std::string& Asker::Name() const {
  if (std::exchange(isNamed_, true)) return name_;
  if (isPart_ && around_ != nullptr) name_ = around_->Name() + ", ";
  return name_ += make_();
}

}  // namespace zth::link
