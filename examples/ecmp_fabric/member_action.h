// An action of a profile's members with the function that makes its parameters from a number, so that all five profiles
// are built, read and compared the same way.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstring>
#include <functional>

#include "profile_functions.h"
#include "switch_device.h"

namespace tarvex::examples {

struct member_action {
  const char *name;
  std::function<pd_status_t(std::uint32_t number, pd_mbr_hdl_t *handle)> add;
  std::function<pd_status_t(std::uint32_t number, pd_mbr_hdl_t handle)> modify;
  /// Whether what was read has the action and its parameters.
  std::function<bool(std::uint32_t number, const plcmt_action_t &read)> reads_back;
};

/// `make` gives the action's structure; its bytes are all members.
template <typename Parameters, typename Make>
member_action action_with(const member_functions<Parameters> &functions, Make make)
{
  return {functions.action,
          [=](std::uint32_t number, pd_mbr_hdl_t *handle) {
            const Parameters parameters = make(number);
            return functions.add(session, all_pipes, &parameters, handle);
          },
          [=](std::uint32_t number, pd_mbr_hdl_t handle) {
            const Parameters parameters = make(number);
            return functions.modify(session, device_id, handle, &parameters);
          },
          [=](std::uint32_t number, const plcmt_action_t &read) {
            const Parameters parameters = make(number);
            return read.action == p4_pd_tarvex_switch_action_string_to_enum(functions.action) &&
                   std::memcmp(&parameters, read.parameters, sizeof parameters) == 0;
          }};
}

inline member_action action_without(const member_functions<> &functions)
{
  return {functions.action,
          [=](std::uint32_t, pd_mbr_hdl_t *handle) { return functions.add(session, all_pipes, handle); },
          [=](std::uint32_t, pd_mbr_hdl_t handle) { return functions.modify(session, device_id, handle); },
          [=](std::uint32_t, const plcmt_action_t &read) {
            return read.action == p4_pd_tarvex_switch_action_string_to_enum(functions.action);
          }};
}

}  // namespace tarvex::examples
