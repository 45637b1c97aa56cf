#include <fstream>
#include <sstream>

#include <QRegularExpression>
#include <QStatusBar>
#include <QTemporaryDir>

#include "tests/support/Seen.h"
#include "tests/support/SimulatedDesk.h"
#include "tests/support/Steps.h"

#ifdef ZTH_LINUX_SMBUS
#include "linux-smbus/HostBus.h"
#include "tests/transports/FakeI2c.h"
#endif

/// What a user sees of failed transfers: through the whole program, with the failure counts of real libraries.
namespace zth::testing {
namespace {

/// The gauge's caption, the chart's legend for Local and the status bar's message, with every age as N.
std::string Seen(Desk& desk, const QWidget& limits, const QWidget& graph) {
  Desk::Get<QWidget>(graph, "stpGraph(0)").setProperty("LabelIndex", 1);
  QString seen = Desk::Property(limits, "ggeTemp", "Caption").toString() + '|' +
                 Desk::Property(graph, "stpGraph(0)", "Caption").toString() + '|' +
                 Desk::Get<QStatusBar>(desk.Main(), "sbStatusBar").currentMessage();
  seen.replace(QRegularExpression("-?\\d+(\\.\\d+)?\u00B0C"), "T").replace(QRegularExpression("\\d+ s old"), "N s old");
  return seen.trimmed().toStdString();
}

constexpr char kFresh[] = "T|Local = T|";
constexpr char kStale[] = "T, N s old|Local = N s old|";
constexpr char kFailing[] =
    "T, N s old|Local = N s old|Readings of 2Ch on SMBus fail: what is grey or has an age is old";

TEST(Stale, AFaultOfTheSimulatedBusShowsInGaugesChartsLogAndNoticeUntilItIsOver) {
  SimulatedDesk sim(
      "usb = none\nsmbus = 0x2C\nfault from 60 to 90 transfer fails register 0x8D on smbus\n"
      "fault from 90 to 120 transfer fails on smbus\n");
  Desk& desk = sim.desk;
  const double began = desk.clock.Now();
  desk.Start();
  const auto advanceTo = [&](double seconds) {
    desk.Advance(static_cast<int>((began + seconds - desk.clock.Now()) * 1e3));
  };
  QWidget& limits = desk.Open("frmLimits");
  QWidget& graph = desk.Open("frmGraph");
  QWidget& logging = desk.Open("frmLogging");
  const QTemporaryDir folder;
  desk.fileDialogs.script.push_back(folder.filePath("log.csv"));
  Do(logging, "cmdSelectAll; cmdLogData");
  // The end of each phase; then what is seen, and whether the log has temperatures and voltages.
  const std::tuple<double, const char*, bool, bool> phases[]{
      {55, kFresh, true, true}, {85, kStale, false, true}, {115, kFailing, false, false}, {145, kFresh, true, true}};
  const auto lastRow = [&] {
    std::ifstream file(folder.filePath("log.csv").toStdString());
    std::string last;
    for (std::string line; std::getline(file, line);) last = line;
    return QString::fromStdString(last).split(',');
  };
  for (const auto& [end, seen, temperatures, voltages] : phases) {
    SCOPED_TRACE(end);
    advanceTo(end);
    EXPECT_EQ(Seen(desk, limits, graph), seen);
    EXPECT_EQ(Desk::Property(limits, "ggeTemp", "Stale").toBool(), !temperatures);
    EXPECT_EQ(Desk::Property(limits, "ggeVolt", "Stale").toBool(), !voltages);
    const QStringList row = lastRow();
    ASSERT_GT(row.size(), 20);
    EXPECT_EQ(row[1].trimmed().isEmpty(), !temperatures) << row.join(',').toStdString();
    EXPECT_EQ(row[17].trimmed().isEmpty(), !voltages) << row.join(',').toStdString();
  }
  // The chart: a gap between the last good sample before the faults and the first one after them.
  const Points drawn = PointsOf(Desk::Get<widgets::Strip>(graph, "stpGraph(0)"), 0);
  double longest = 0;
  double lastGood = NAN;
  bool gap = false;
  for (const auto& [x, y] : drawn) {
    if (std::isnan(y)) continue;
    if (x - lastGood > longest) longest = x - lastGood;
    lastGood = x;
  }
  gap = std::ranges::any_of(drawn, [](const auto& point) { return std::isnan(point.second); });
  EXPECT_TRUE(gap) << "the line is interrupted";
  EXPECT_NEAR(longest, 60, 3);
}

#ifdef ZTH_LINUX_SMBUS

/// The library for the PC's own bus, above a kernel in memory.
struct HostLibrary final : BoardEntries {
  HostLibrary() {
    for (int reg = 0; const std::uint8_t value : DefaultRegisters()) {
      kernel.buses[0].chips[0x2C][static_cast<std::uint8_t>(reg++)] = value;
    }
    boardNames["smbus"] = "SMBus host";
  }
  std::int16_t LoadFirmWare(const char* /*path*/) override { return 0; }
  std::int16_t VendorIORequest(std::int16_t, std::int32_t, std::int32_t, std::int16_t, std::int16_t,
                               std::uint8_t*) override {
    return -1;
  }
  void DetectSmbus() override { bus.Detect(); }
  std::uint8_t ReadSmbus(std::uint8_t address, std::uint8_t reg) override { return bus.Read(address, reg); }
  void WriteSmbus(std::uint8_t address, std::uint8_t reg, std::uint8_t value) override {
    bus.Write(address, reg, value);
  }
  std::int32_t SmbusFailures(std::uint8_t address) override { return bus.Failures(address); }

  smbus::FakeI2c kernel;
  std::ostringstream errors;
  smbus::Journal journal{errors, "", [] { return std::string("now"); }};
  smbus::HostBus bus{kernel, journal, smbus::Settings{}};
};

TEST(Stale, WhatTheLinuxLibraryCountsShowsEvenWhileItLeavesAStuckBusAlone) {
  HostLibrary library;
  Desk desk(Desk::Buses::Smbus);
  desk.libraries.load = [&](const QString& name) {
    return name == "smbus" ? platform::LoadedLibrary{LibraryOf(library, name), {}} : desk.board.Load(name);
  };
  desk.Start();
  const QWidget& limits = desk.Open("frmLimits");
  const QWidget& graph = desk.Open("frmGraph");
  desk.Advance(3000);
  EXPECT_EQ(Seen(desk, limits, graph), kFresh);
  EXPECT_TRUE(Desk::Text(desk.Main(), "lblLink").endsWith(", no failures")) << "absent addresses do not count";
  for (const int error : {EIO, ETIMEDOUT}) {
    SCOPED_TRACE(error);
    library.kernel.buses[0].transferError = error;
    desk.Advance(2000);
    EXPECT_EQ(Seen(desk, limits, graph), kFailing);
    library.kernel.transfers.clear();
    desk.Advance(2000);
    EXPECT_EQ(library.kernel.transfers.empty(), error == ETIMEDOUT) << "a stuck bus rests";
    EXPECT_EQ(Seen(desk, limits, graph), kFailing) << "and its 0xFF is no reading";
    library.kernel.buses[0].transferError = 0;
    library.kernel.now += std::chrono::seconds(2);
    desk.Advance(2000);
    EXPECT_EQ(Seen(desk, limits, graph), kFresh);
  }
}

#endif

}  // namespace
}  // namespace zth::testing
