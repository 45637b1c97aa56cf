#pragma once

#include <string>

#include "BenchClock.h"
#include "platform/Services.h"
#include "simulator/SmbusHost.h"
#include "simulator/UsbAdapter.h"

namespace zth::gallery {

/// The simulated board behind the two libraries' entry points, in the time of a BenchClock. One at a time.
class BenchBoard final : public platform::Libraries {
 public:
  /// `settings` as in docs/simulator.md; throws std::runtime_error when they are not understood.
  BenchBoard(BenchClock& clock, const std::string& settings);
  ~BenchBoard() override;

  platform::LoadedLibrary Load(const QString& name) override;

  /// The adapter and the host, brought up to the clock.
  simulator::UsbAdapter& Usb();
  simulator::SmbusHost& Smbus();

 private:
  BenchBoard(BenchClock& clock, const simulator::Settings& settings);
  void CatchUp();

  BenchClock& clock_;
  simulator::UsbAdapter usb_;
  simulator::SmbusHost smbus_;
  double last_;
};

}  // namespace zth::gallery
