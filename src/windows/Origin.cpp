#include "windows/Origin.h"

#include "link/Declarations.h"

namespace zth::windows {

void Origin::Note() {
  readFrom_ = link::ChipInUse();
  modelAtLoad_ = chip::ModelReadFrom();
}

std::optional<Origin::Other> Origin::Find() const {
  if (!readFrom_) return std::nullopt;
  const link::ChipId inUse = link::ChipInUse();
  // All chips on a link share its board.
  const bool own = (shows_ & (kShowsChip | kShowsDetails)) != 0 && *readFrom_ != inUse;
  const bool board = (shows_ & kShowsBoard) != 0 && readFrom_->mode != inUse.mode;
  if (own || board) return Other{*readFrom_, nullptr};
  return FindInModel(inUse);
}

std::optional<Origin::Other> Origin::FindInModel(const link::ChipId& inUse) const {
  const chip::ModelOrigin model = (shows_ & kFollowsModel) != 0 ? chip::ModelReadFrom() : modelAtLoad_;
  if ((shows_ & kShowsPins) != 0 && model.pins != inUse) return Other{model.pins, "What the pins do"};
  if ((shows_ & kShowsManual) != 0) {
    for (const link::ChipId& from : model.manual) {
      if (from != inUse) return Other{from, "Which PWMs are in manual mode"};
    }
  }
  if ((shows_ & kShowsDuties) != 0 && model.revision != inUse) return Other{model.revision, "The chip's revision"};
  return std::nullopt;
}

QString Origin::TitleNote() const {
  const auto other = Find();
  if (!other) return {};
  if (IsUnread(*other)) return " (not read in full)";
  return QString(other->part == nullptr ? " (read from %1)" : " (in part read from %1)").arg(link::TextOf(other->chip));
}

QString Origin::Explanation() const {
  const auto other = Find();
  if (!other) return {};
  if (IsUnread(*other)) return QString("%1 could not be read: a transfer failed.").arg(other->part);
  const QString from = link::TextOf(other->chip);
  const QString inUse = link::TextOf(link::ChipInUse());
  if (other->part != nullptr) {
    return QString("%1 was read from %2. The chip in use is %3.").arg(other->part, from, inUse);
  }
  if ((shows_ & kShowsBoard) != 0 && link::ChipInUse().mode != link::kModeUsb) {
    return QString("This was read from %1. The board is not reached through %2.").arg(from, inUse);
  }
  return QString("This was read from %1. What you set here goes to %2.").arg(from, inUse);
}

}  // namespace zth::windows
