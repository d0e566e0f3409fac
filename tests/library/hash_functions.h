// The functions of hash calculations, by number and by name, and the driver behind them.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "reference.h"
#include "tarvex_pd/hash_access.h"

namespace tarvex::test {

using attributes = std::vector<hash_calc_attr_t>;

inline constexpr std::uint32_t device = 0xfe;
inline constexpr std::uint32_t refused_status = 0x80000005;
inline constexpr std::uint32_t invalid = PD_STATUS_INVALID_ARG;
inline constexpr std::uint64_t beyond_32_bits = 0x1'0000'0000;

// The driver's side of one calculation.
struct hash_unit {
  std::uint32_t list = 0;
  std::uint32_t get_status = 0;
  std::uint32_t set_status = 0;

  void attach()
  {
    driver().reset();
    driver().answer = [this](const recorded_call &call) -> std::uint64_t {
      if (call.function.ends_with("_set")) return set_status;
      if (get_status == 0) call.at<std::uint32_t>(3) = list;
      return get_status;
    };
  }
};

// The exported functions of a calculation, or with `by_name` those that take its name.
struct hash_functions {
  const calls::hash_info &calc;
  bool by_name = false;
  std::string name = calc.name;

  std::uint32_t n() const { return static_cast<std::uint32_t>(calc.common.size()); }
  std::uint32_t all() const { return (1u << n()) - 1; }
  std::uint32_t number(std::uint32_t own) const { return by_name ? calc.common[own] : own; }

  call prepared(const std::string &operation, std::uint32_t input = 0) const
  {
    call call(function_named(prefix() + "hash_calc_" + (by_name ? "" : name + "_") + operation));
    call.give(argument_kind::dev_id, 0xabcdef00 | device);
    if (by_name) call.give(argument_kind::calc_name, reinterpret_cast<std::uint64_t>(name.c_str()));
    if (!by_name && call.takes(argument_kind::hash_number)) call.give(argument_kind::hash_number, input);
    return call;
  }

  std::uint64_t set(const attributes &attrs, std::uint32_t input = 0) const
  {
    call call = prepared("input_field_attribute_set", input);
    call.give(argument_kind::hash_attr_count, attrs.size());
    call.give(argument_kind::hash_attrs, reinterpret_cast<std::uint64_t>(attrs.data()));
    return call.run();
  }

  // What must be there after a get, or nothing for a name that is not known.
  std::string get(std::uint32_t status, std::optional<attributes> expected, std::uint32_t max = 9,
                  std::uint32_t input = 0) const
  {
    call call = prepared("input_field_attribute_get", input);
    call.give(argument_kind::hash_attr_max, max);
    const std::uint64_t result = call.run();
    if (expected) call.expect_number(argument_kind::hash_attr_count_out, expected->size(), 4);
    for (std::size_t i = 0; expected && i < expected->size(); ++i) {
      const hash_calc_attr_t &attr = (*expected)[i];
      std::uint8_t raw[16];
      std::memcpy(raw, &attr, sizeof raw);
      call.expect(argument_kind::hash_attrs_out, {raw, 4}, 16 * i);
      call.expect(argument_kind::hash_attrs_out, {raw + 8, 8}, 16 * i + 8);  // attr_type is left alone
    }
    return (result == status ? "" : "status " + std::to_string(result)) + call.unexpected_bytes();
  }
};

// Driver calls by the end of their names, with the handle of those that set one.
inline void expect_calls(const hash_functions &hash, const std::vector<std::pair<std::string, std::uint64_t>> &made)
{
  const std::uint64_t session = hash.prepared("input_set").value(argument_kind::sess_hdl);
  std::vector<recorded_call> expected;
  for (const auto &[name, handle] : made) {
    expected.push_back(
        {"pipe_mgr_hash_calc_" + name, {{session, {}}, {device, {}}, {hash.calc.handle, {}}, {handle, {}}}});
  }
  EXPECT_EQ(difference(expected, driver().calls), "");
}

inline const std::pair<std::string, std::uint64_t> current_list = {"input_get", anywhere};

}  // namespace tarvex::test
