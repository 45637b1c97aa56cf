#pragma once

#include <cstdint>
#include <functional>
#include <string>

/// For whom the link's calls are made, in words: "frmAutoGraph cmbControl(0)", "monitor", "start".
namespace zth::link {

/// Says for its own lifetime for whom calls are made. Cheap unless an observer asks for the name.
class Asker {
 public:
  enum class Kind : std::uint8_t {
    Action,  ///< something that the user does; part of the asker around it, if there is one
    Job,     ///< something that the program does itself, even while an action waits for a box
    Part,    ///< a part of the asker around it, named after it: "frmPinConfig cmdApply, pins"
  };

  Asker(Kind kind, std::function<std::string()> name);
  ~Asker();
  Asker(const Asker&) = delete;
  Asker& operator=(const Asker&) = delete;

  const std::string& Name() const;
  /// Never the same for two askers of one process, so that an observer need not compare names.
  std::uint64_t Serial() const { return serial_; }

 private:
  const Asker* around_;
  std::uint64_t serial_;
  bool isPart_;
  std::function<std::string()> make_;
  mutable std::string name_;
  mutable bool isNamed_ = false;
};

}  // namespace zth::link
