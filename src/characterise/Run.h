#pragma once

#include <memory>
#include <string>
#include <vector>

#include "characterise/Bench.h"
#include "characterise/Characterisation.h"
#include "characterise/Claims.h"
#include "link/ChipId.h"
#include "platform/Services.h"

namespace zth::characterise {

/// One run from its start to the end of putting back.
class Run {
 public:
  Run(platform::Services& services, const Settings& settings);

  void Tick();
  void End(Ending ending, const std::string& words);
  /// Ends and puts back at once, or without a transfer if the link is closed.
  void EndNow(Ending ending, const std::string& words);

  bool IsOver() const { return data_.ending != Ending::Running && !puttingBack_; }
  double Progress();
  double SecondsLeft() const;
  std::string Words() const;
  const Characterisation& Data() const { return data_; }
  const Claims& Held() const { return claims_; }
  /// The registers that the run has set, and those that it will as far as that is known.
  std::vector<std::uint8_t> Owned() const;

 private:
  void Refuse(const std::string& why);
  void Describe();
  bool ReadSome();
  bool CheckChip();
  void Go();
  bool IsWithinLimits();
  void AddPoint();
  void PutBackSome();
  void Finish();
  double Left() const;

  platform::Services& services_;
  Characterisation data_;
  Claims claims_;
  Bench bench_;
  link::ChipId chip_;
  std::vector<std::unique_ptr<Part>> parts_;
  std::size_t part_ = 0;
  std::size_t read_ = 0;  ///< registers compared with their defaults so far
  bool hasRead_ = false;
  bool between_ = false;  ///< what a part has set is being put back before the next
  bool puttingBack_ = false;
  double tryFor_;            ///< how long what cannot be reached is tried
  double putBackFrom_ = -1;  ///< since when; negative if nothing is being put back
  double pointAt_ = -1;
  double progress_ = 0;
};

/// Who asks for the run's transfers, in the journal and the bus traffic.
inline constexpr char kAsker[] = "Characterise";

}  // namespace zth::characterise
