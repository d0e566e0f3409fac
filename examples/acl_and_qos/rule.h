// A rule as the program wants it in the switch, and what is done with the rules of a table whatever its key.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <random>

#include "key_layout.h"
#include "switch_device.h"
#include "tally.h"

namespace tarvex::examples {

/// Parameters of an action as the library's structure holds them. A structure with room between or behind its members
/// is to be zeroed whole before they are set.
using parameter_bytes = std::vector<std::uint8_t>;

template <typename Parameters>
parameter_bytes bytes_of(const Parameters &parameters)
{
  const auto *const bytes = reinterpret_cast<const std::uint8_t *>(&parameters);
  return {bytes, bytes + sizeof parameters};
}
inline parameter_bytes bytes_of() { return {}; }

/// An entry as the program wants it, and what it knows of it.
struct rule {
  std::string note;
  std::uint32_t priority = 0;
  std::string action;
  parameter_bytes parameters;
  key_bytes value;
  key_bytes mask;
  pd_entry_hdl_t handle = STANDIN_NO_HANDLE;
  pd_counter_value_t counted{};

  /// The parameters as a structure of their size; zeroes where the action has none such.
  template <typename Parameters>
  Parameters parameters_as() const
  {
    Parameters result{};
    if (parameters.size() == sizeof result) std::memcpy(&result, parameters.data(), sizeof result);
    return result;
  }

  std::string text() const { return '"' + note + "\" " + action.substr(sizeof "p4_pd_tarvex_switch_" - 1); }
};

/// What all tables have, whatever their keys.
class rule_table {
 public:
  virtual ~rule_table() = default;

  virtual const char *name() const = 0;
  virtual std::size_t size() const = 0;
  virtual std::size_t changed() const = 0;

  /// Walks and reads all entries, the default entry and the direct counters.
  virtual void read_back(tally &compared) const = 0;
  /// Looks up packets that fit a rule, and some that just do not.
  virtual void look_up(std::mt19937_64 &random, unsigned packets, tally &compared) = 0;
  /// Every fourth rule by its handle, the one behind it by its key.
  virtual std::size_t remove_some(tally &compared) = 0;
  virtual void remove_all(tally &compared) = 0;
};

}  // namespace tarvex::examples
