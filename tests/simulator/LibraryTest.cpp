#include <cstdint>
#include <cstdlib>
#include <dlfcn.h>
#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

namespace {

// A library reads its settings once per process, so tests that depend on them run in a new child process.
class SimulatedLibraries : public testing::Test {
 protected:
  void SetUp() override { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

using LoadFirmWare = std::int16_t(const char*);
using VendorIORequest = std::int16_t(std::int16_t, std::int32_t, std::int32_t, std::int16_t, std::int16_t,
                                     std::uint8_t*);
using DetectSmbus = void();
using ReadSmbus = std::uint8_t(std::uint8_t, std::uint8_t);

template <typename Entry>
Entry* Find(const char* library, const char* name) {
  void* handle = dlopen(library, RTLD_NOW | RTLD_LOCAL);
  void* entry = handle == nullptr ? nullptr : dlsym(handle, name);
  EXPECT_NE(entry, nullptr) << dlerror();
  return reinterpret_cast<Entry*>(entry);
}

TEST_F(SimulatedLibraries, AcceptAnyFirmwareAndShowOneChipEach) {
  unsetenv("ZTH4718_SIMULATOR");
  EXPECT_EQ(Find<LoadFirmWare>(ZTH_USB_LIBRARY, "LoadFirmWare")("/no/such/file"), 1);
  auto* request = Find<VendorIORequest>(ZTH_USB_LIBRARY, "VendorIORequest");
  std::uint8_t buffer[65] = {};
  EXPECT_EQ(request(0xDD, 0x30, 0x33, 0, 0, buffer), 0);
  EXPECT_EQ(request(0xDE, 0x58, 0x3E, 1, 1, buffer), 0);
  EXPECT_EQ(buffer[0], 0x41);
  EXPECT_EQ(request(0xDC, 0x58, 0x88, 1, 8, buffer), 0);
  for (int channel = 0; channel < 4; ++channel) {
    EXPECT_GE(buffer[2 * channel + 1], 64 + 28) << "live from the first call";
    EXPECT_LE(buffer[2 * channel + 1], 64 + 46);
  }
  Find<DetectSmbus>(ZTH_SMBUS_LIBRARY, "DetectSmbus")();
  EXPECT_EQ(Find<ReadSmbus>(ZTH_SMBUS_LIBRARY, "ReadSmbus")(0x2C, 0x3E), 0x41);
}

TEST_F(SimulatedLibraries, SayOnStandardErrorWhichLineOfTheSettingsIsWrongAndContinue) {
  const auto path = std::filesystem::temp_directory_path() / "zth-bad-simulator.conf";
  std::ofstream(path) << "ambient = 25\nambient = hot\n";
  const auto child = [&path] {
    setenv("ZTH4718_SIMULATOR", path.c_str(), 1);
    std::exit(Find<ReadSmbus>(ZTH_SMBUS_LIBRARY, "ReadSmbus")(0x2C, 0x3E) == 0x41 ? 0 : 1);
  };
  EXPECT_EXIT(child(), testing::ExitedWithCode(0), "^smbus: .*zth-bad-simulator.conf:2: expected a number");
  std::filesystem::remove(path);
}

TEST_F(SimulatedLibraries, ReadEveryScenarioWithoutAMessage) {
  int count = 0;
  for (const auto& file : std::filesystem::directory_iterator(ZTH_SCENARIOS)) {
    if (file.path().extension() != ".conf") continue;
    ++count;
    const auto child = [&file] {
      setenv("ZTH4718_SIMULATOR", file.path().c_str(), 1);
      Find<LoadFirmWare>(ZTH_USB_LIBRARY, "LoadFirmWare")("");
      std::exit(0);
    };
    EXPECT_EXIT(child(), testing::ExitedWithCode(0), "^$") << file.path();
  }
  EXPECT_EQ(count, 6);
}

}  // namespace
