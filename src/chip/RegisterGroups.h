#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

/// The registers by topic.
namespace zth::chip {

struct RegisterGroup {
  const char* root;
  const char* name;
  std::vector<const char*> registers;  ///< their names in the register table
};

/// By topic, in the order in which they are shown. If an address has two names, both are here. Only two of the status
/// registers' Host copies are.
extern const std::array<RegisterGroup, 21> kRegisterGroups;

/// A group with its root, "Fan, PWM"; runs of blanks are one blank.
std::string TextOf(const RegisterGroup& group);

/// The groups of an address: two if its two names are of different groups, none if it is in no group.
std::vector<std::string> GroupsOf(std::uint8_t reg);

}  // namespace zth::chip
