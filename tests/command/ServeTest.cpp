#include <algorithm>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "link/USBStuff.h"
#include "platform/Pages.h"
#include "tests/command/CommandGround.h"

namespace zth::testing {
namespace {

/// Keeps what is shown.
class ShownPages final : public platform::PageHost {
 public:
  platform::Listening Listen(const std::string& address, std::uint16_t port) override {
    asked = address + " " + std::to_string(port);
    if (!error.empty()) return {nullptr, error, 0};
    return {std::make_unique<Server>(*this), "", port};
  }

  const platform::Page& At(const std::string& path, bool isLate = false) const {
    return *std::ranges::find(isLate ? late : pages, path, &platform::Page::path);
  }
  std::string Metrics(std::size_t form = 0) const { return At("/metrics").forms.at(form).body; }
  std::string Health() const { return At("/healthz").forms.front().body; }
  /// The sample's line from the device, without its labels but the last.
  bool Has(const std::string& line) const { return Metrics().find(line + "\n") != std::string::npos; }

  std::string asked;
  std::string error;
  std::vector<platform::Page> pages, late;
  std::vector<int> statuses;  ///< of the health page, without repetitions

 private:
  class Server final : public platform::PageServer {
   public:
    explicit Server(ShownPages& host) : host_(host) {}
    void Show(std::vector<platform::Page> now, std::vector<platform::Page> then, double seconds) override {
      EXPECT_GT(seconds, 5);
      host_.pages = std::move(now);
      host_.late = std::move(then);
      const int status = host_.At("/").status;
      if (host_.statuses.empty() || host_.statuses.back() != status) host_.statuses.push_back(status);
    }

   private:
    ShownPages& host_;
  };
};

class ServeTest : public CommandTest {
 protected:
  static constexpr double kStart = 7.2;  // seconds, in waits

  ServeTest() { desk.services.pageHost = &host; }

  /// Serves for so many seconds behind the start, and returns the transfers behind those of the start.
  Traffic Serve(const std::vector<std::string>& arguments, double seconds) {
    EXPECT_EQ(Run({"find"}), command::kDone);
    const auto start = static_cast<std::ptrdiff_t>(traffic.size());
    const double end = desk.clock.Now() + kStart + seconds;
    desk.events.onPump = [this, end] {
      if (desk.clock.Now() > end) desk.process.orders.end();
      if (onPump) onPump(end - desk.clock.Now());
    };
    EXPECT_EQ(Run(arguments), command::kDone) << error;
    desk.events.onPump = nullptr;
    return {traffic.begin() + std::min(start, static_cast<std::ptrdiff_t>(traffic.size())), traffic.end()};
  }

  ShownPages host;
  std::function<void(double left)> onPump;  ///< with the seconds that are left
};

const std::string kUsbLabels = R"({device="58@usb",board="Bench \"2\"",sensor=")";

TEST_F(ServeTest, ServesTheReadingsOfEveryChipInTheirUnits) {
  desk.board.boardNames["USBFunctions"] = "Bench \"2\"";
  Put(desk.board.usbChips[0x58], "10=7F 11=CE 12=42 13=FC 8A=80 8B=5A 9A=10 9B=04 AA=FF AB=80 93=C0 5D=72 AE=80");
  Put(desk.board.smbusChips[0x2C], "10=7F 11=CE 12=42 13=FC 8A=40 8B=3F");
  Serve({"serve"}, 3);
  EXPECT_EQ(host.asked, "127.0.0.1 9418");
  EXPECT_EQ(out, "Serving 58@usb, 2c@smbus at http://127.0.0.1:9418/metrics\n");
  // 5Ah - 40h and 80h of 100h; 90000 * 60 / (4 * 256 + 16) / ..., as the windows show it; C0h of C0h at 4 V nominal.
  for (const char* const line : {
           "zth4718_temperature_celsius*Remote1\"} 26.5",
           "zth4718_fan_speed_rpm*Tach2\"} 5192",
           "zth4718_duty_ratio*PWM1\"} 1",
           "zth4718_duty_ratio*PWM2\"} 0.5",
           "zth4718_voltage_volts*VBatt\"} 4",
           "zth4718_tmin_celsius*Remote1\"} 50",
           "zth4718_operating_point_celsius*Remote2\"} 100",
           "zth4718_therm_on_time_ratio*THERM1\"} 0.5",
           "zth4718_low_limit_celsius*Remote1\"} 0",
           "zth4718_high_limit_celsius*Remote2\"} 85",
       }) {
    std::string whole = line;
    whole.replace(whole.find('*'), 1, kUsbLabels);
    EXPECT_TRUE(host.Has(whole)) << whole << "\n" << host.Metrics();
  }
  EXPECT_TRUE(host.Has(R"(zth4718_temperature_celsius{device="2c@smbus",sensor="Remote1"} -0.75)")) << host.Metrics();
  EXPECT_TRUE(host.Has(R"(zth4718_up{device="2c@smbus"} 1)"));
  EXPECT_EQ(host.Metrics().find("12V1"), std::string::npos) << "pin 7 is a tach";
  EXPECT_EQ(host.Metrics().find("zth4718_alert{"), std::string::npos);
  EXPECT_EQ(host.At("/healthz").status, 200);
  EXPECT_NE(host.Metrics(1).find("# TYPE zth4718_transfers_total counter\n"), std::string::npos);
  EXPECT_EQ(host.Metrics(1).find("# EOF"), std::string::npos);
}

TEST_F(ServeTest, PollsAsTheMonitorOfTheProgramDoes) {
  const Traffic served = Serve({"--device", "58@usb", "serve"}, 6);
  Forget();
  desk.Start();
  desk.Advance(6000);
  const Traffic program = desk.board.TakeTraffic();
  const Traffic model = Usb("B10+4 R3F");
  ASSERT_GT(served.size(), 60U);
  ASSERT_EQ(Traffic(served.begin(), served.begin() + 2), model) << "the pins and the revision, once";
  // The same rotation, and at most a group more or less within six seconds.
  const std::size_t common = std::min(served.size() - 2, program.size());
  EXPECT_LE(std::max(served.size() - 2, program.size()) - common, 4U);
  EXPECT_EQ(Traffic(served.begin() + 2, served.begin() + 2 + static_cast<std::ptrdiff_t>(common)),
            Traffic(program.begin(), program.begin() + static_cast<std::ptrdiff_t>(common)));
  // Each chip has this pace, however many there are.
  const Traffic both = Serve({"serve"}, 6);
  EXPECT_EQ(static_cast<std::size_t>(
                std::ranges::count_if(both, [](const std::string& transfer) { return transfer.starts_with("usb"); })),
            served.size());
}

TEST_F(ServeTest, AlertsComeFromTheHostsCopiesAndOnlyIfAskedFor) {
  Put(desk.board.usbChips[0x58], "10=7F 11=CE 12=42 13=FC B8=04 BD=02 C0=FF C5=FF BE=08");
  const Traffic sent = Serve({"--device", "58@usb", "serve", "--alerts"}, 2);
  Usb("");
  for (const char* const status : {"B8", "B9", "BA", "BB", "BC", "BD", "BE"}) {
    EXPECT_GT(std::ranges::count(sent, std::string("usb R 58:") + status), 0) << status;
  }
  for (const std::string& transfer : sent) EXPECT_FALSE(transfer.starts_with("usb R 58:C")) << transfer;
  const std::string labels = R"(zth4718_alert{device="58@usb",sensor=")";
  for (const char* const line : {"Remote 1 Temp\"} 1", "Local Temp\"} 0", "Fan1\"} 0", "Fan2\"} 1"}) {
    EXPECT_TRUE(host.Has(labels + line)) << line;
  }
  EXPECT_EQ(host.Metrics().find("Fan2Max"), std::string::npos) << "a bit that only the other copy has";
  for (const std::string& transfer : Serve({"serve"}, 2)) {
    EXPECT_FALSE(transfer.starts_with("usb R 58:B") || transfer.starts_with("smb R 2C:B")) << transfer;
  }
}

TEST_F(ServeTest, AChipThatFailsIsToldOnceAndTriedMoreRarely) {
  desk.board.missingEntries.clear();
  bool isDead = false;
  std::size_t during = 0;
  desk.board.smbusFails = [&](const std::string& transfer) {
    during += isDead && transfer.find(" 2C:") != std::string::npos ? 1 : 0;
    return isDead;
  };
  int checks = 0;
  onPump = [&](double left) {
    isDead = left < 56 && left > 22;
    if (left < 30 && checks == 0) {
      ++checks;
      EXPECT_TRUE(host.Has(R"(zth4718_up{device="2c@smbus"} 0)"));
      EXPECT_TRUE(host.Has(R"(zth4718_up{device="58@usb"} 1)"));
      EXPECT_EQ(host.Metrics().find("celsius{device=\"2c@smbus\""), std::string::npos) << "no reading is made up";
      EXPECT_NE(host.Metrics().find("celsius{device=\"58@usb\""), std::string::npos);
      EXPECT_NE(host.Health().find("2c@smbus: does not answer; polled since"), std::string::npos) << host.Health();
    }
  };
  Serve({"serve"}, 60);
  EXPECT_EQ(checks, 1);
  EXPECT_EQ(error,
            "zth4718: 2Ch on SMBus does not answer. Check its power and its wiring; it is tried again.\n"
            "zth4718: 2Ch on SMBus answers again\n");
  // Three groups, then a try after 5, 10 and 20 seconds, each of the pins, the revision and nothing else.
  EXPECT_LE(during, 3 * 16 + 4 * 5U);
  EXPECT_EQ(host.statuses, (std::vector<int>{503, 200, 503, 200}));
  EXPECT_TRUE(host.Has(R"(zth4718_up{device="2c@smbus"} 1)"));
  EXPECT_NE(host.Metrics().find("celsius{device=\"2c@smbus\""), std::string::npos);
  EXPECT_EQ(host.At("/healthz", true).status, 503) << "while a transfer hangs";
  EXPECT_EQ(host.At("/metrics", true).forms.front().body.find("celsius"), std::string::npos);
}

TEST_F(ServeTest, AnAdapterThatWasUnpluggedIsTakenUpAgain) {
  bool isPlugged = true;
  onPump = [&](double left) {
    if (left < 75 && left > 74) isPlugged = false;
    // Even when it is back, its transfers fail until it has been asked for contact.
    desk.board.failMatching = isPlugged ? "" : "usb B";
    desk.board.firmwareResult = left < 65 ? 1 : 0;
    desk.board.onTransfer = [&] {
      if (desk.board.traffic.back() != "usb C 30:33") return;
      isPlugged = true;
      desk.board.failMatching.clear();
    };
  };
  const Traffic sent = Serve({"--device", "58@usb", "serve"}, 80);
  EXPECT_TRUE(host.Has(R"(zth4718_up{device="58@usb"} 1)")) << error;
  EXPECT_NE(error.find("58h on USB answers again"), std::string::npos) << error;
  EXPECT_EQ(host.Metrics().find("failed_transfers_total{device=\"58@usb\"} 0\n"), std::string::npos);
  // Its firmware is gone, so it gets it again, and is then asked for contact.
  const auto firmware = std::ranges::find_if(sent, [](const auto& one) { return one.starts_with("usb F"); });
  EXPECT_NE(firmware, sent.end());
  EXPECT_NE(std::find(firmware, sent.end(), "usb C 30:33"), sent.end());
}

TEST_F(ServeTest, WhereItCannotListenItSaysSoAtOnce) {
  for (const char* const place : {"9418", "127.0.0.1", "127.0.0.1:", ":9418", "127.0.0.1:65536", "127.0.0.1:-1",
                                  "127.0.0.1:9418x", "::1:9418", "[::1]"}) {
    EXPECT_EQ(Run({"serve", "--listen", place}), command::kUsage) << place;
    EXPECT_NE(error.find("is nowhere to listen"), std::string::npos) << error;
  }
  host.error = "Address already in use";
  EXPECT_EQ(Run({"serve", "--listen", "[::1]:80"}), command::kUsage);
  EXPECT_EQ(host.asked, "::1 80");
  EXPECT_EQ(
      error,
      "zth4718: Cannot listen at [::1]:80: Address already in use. Name an address of this machine and a free port "
      "with --listen.\n");
  EXPECT_EQ(traffic, Traffic{});
  host.error.clear();
  EXPECT_EQ(Run({"run", File("script", "serve\n")}), command::kUsage);
  desk.board.usbChips.clear();
  desk.board.smbusChips.clear();
  EXPECT_EQ(Run({"serve"}), command::kNoHardware) << error;
  EXPECT_EQ(host.At("/healthz").status, 503) << "while the chips are searched";
}

}  // namespace
}  // namespace zth::testing
