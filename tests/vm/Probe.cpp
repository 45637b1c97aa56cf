// smbus-probe STEP...: loads the "smbus" library as the program does and runs it step by step. Numbers are hex.
//
//   start             what the program does at its start: the probing read, DetectSmbus, the scan of 0x10 to 0x7F;
//                     prints "found 2C" for each address whose register 3E reads 41, then "scan done"
//   read A R          prints "read A R: V"
//   write A R V
//   nodes             prints "nodes N", the bus nodes that this process has open
//   until-lost A R    reads as the polling does, until FF comes back; prints "lost"; fails after 100000 reads
//   touch FILE        makes a file, for a shell that waits for it
//   await FILE        waits until a shell has made the file
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

struct Smbus {
  void (*Detect)() = nullptr;
  std::uint8_t (*Read)(std::uint8_t, std::uint8_t) = nullptr;
  void (*Write)(std::uint8_t, std::uint8_t, std::uint8_t) = nullptr;
};

[[noreturn]] void Fail(const std::string& why) {
  std::fprintf(stderr, "smbus-probe: %s\n", why.c_str());
  std::exit(2);
}

Smbus Load() {
  void* const library = dlopen("libsmbus.so", RTLD_NOW);
  if (library == nullptr) Fail(dlerror());
  Smbus smbus;
  smbus.Detect = reinterpret_cast<decltype(smbus.Detect)>(dlsym(library, "DetectSmbus"));
  smbus.Read = reinterpret_cast<decltype(smbus.Read)>(dlsym(library, "ReadSmbus"));
  smbus.Write = reinterpret_cast<decltype(smbus.Write)>(dlsym(library, "WriteSmbus"));
  if (smbus.Detect == nullptr || smbus.Read == nullptr || smbus.Write == nullptr) Fail("a function is missing");
  return smbus;
}

void Start(const Smbus& smbus) {
  smbus.Read(0, 0);
  smbus.Detect();
  for (unsigned address = 0x10; address <= 0x7F; ++address) {
    if (smbus.Read(static_cast<std::uint8_t>(address), 0x3E) == 0x41) std::printf("found %02X\n", address);
  }
  std::printf("scan done\n");
}

int OpenNodes() {
  int nodes = 0;
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    std::error_code error;
    const std::string target = std::filesystem::read_symlink(entry.path(), error).string();
    if (target.starts_with("/dev/i2c-")) ++nodes;
  }
  return nodes;
}

void UntilLost(const Smbus& smbus, std::uint8_t address, std::uint8_t reg) {
  for (int reads = 0; reads < 100000; ++reads) {
    if (smbus.Read(address, reg) == 0xFF) {
      std::printf("lost\n");
      return;
    }
    usleep(1000);
  }
  Fail("the chip still answers");
}

class Steps {
 public:
  Steps(int count, char** texts) : texts_(texts, texts + count) {}
  bool AtEnd() const { return next_ == texts_.size(); }
  std::string Text() { return AtEnd() ? (Fail("a step lacks an argument"), std::string()) : texts_[next_++]; }
  std::uint8_t Byte() { return static_cast<std::uint8_t>(std::strtoul(Text().c_str(), nullptr, 16)); }

 private:
  std::vector<std::string> texts_;
  std::size_t next_ = 0;
};

void Run(const Smbus& smbus, const std::string& step, Steps& steps) {
  if (step == "start") {
    Start(smbus);
  } else if (step == "read" || step == "write" || step == "until-lost") {
    const std::uint8_t address = steps.Byte();
    const std::uint8_t reg = steps.Byte();
    if (step == "read") std::printf("read %02X %02X: %02X\n", address, reg, smbus.Read(address, reg));
    if (step == "write") smbus.Write(address, reg, steps.Byte());
    if (step == "until-lost") UntilLost(smbus, address, reg);
  } else if (step == "nodes") {
    std::printf("nodes %d\n", OpenNodes());
  } else if (step == "touch") {
    std::ofstream(steps.Text()).put('\n');
  } else if (step == "await") {
    for (const std::string file = steps.Text(); !std::filesystem::exists(file);) usleep(10000);
  } else {
    Fail("no such step: " + step);
  }
}

}  // namespace

int main(int argc, char** argv) {
  std::setvbuf(stdout, nullptr, _IOLBF, 0);
  const Smbus smbus = Load();
  for (Steps steps(argc - 1, argv + 1); !steps.AtEnd();) {
    const std::string step = steps.Text();
    Run(smbus, step, steps);
  }
  return 0;
}
