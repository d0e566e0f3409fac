// A plain second opinion on the member-selector service: what a state holds, and the bytes that it is logged in.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <cjson/cJSON.h>

#include "require.h"
#include "tarvex_platform/driver.h"
#include "tarvex_standin/standin.h"

namespace tarvex::fuzz {

using document = std::unique_ptr<cJSON, decltype(&cJSON_Delete)>;

inline document new_object() { return {cJSON_CreateObject(), cJSON_Delete}; }
inline document parsed(std::string_view text)
{
  return {cJSON_ParseWithLength(text.data(), text.size()), cJSON_Delete};
}

inline std::string printed(const cJSON *item)
{
  const std::unique_ptr<char, decltype(&cJSON_free)> text(cJSON_PrintUnformatted(item), cJSON_free);
  return text ? text.get() : "";
}

struct plain_item {
  std::optional<std::uint32_t> action;
  std::vector<std::uint32_t> members;  // of a group, in the order in which they joined
};

struct plain_state {
  std::map<std::uint32_t, plain_item> members;
  std::map<std::uint32_t, plain_item> groups;

  std::string log() const
  {
    return R"({"members":[)" + list(members, false) + R"(],"groups":[)" + list(groups, true) + "]}";
  }

 private:
  static std::string list(const std::map<std::uint32_t, plain_item> &items, bool are_groups)
  {
    std::string text;
    for (const auto &[handle, item] : items) {
      text += (text.empty() ? R"({"hdl":)" : R"(,{"hdl":)") + std::to_string(handle);
      if (item.action) text += R"(,"act":)" + std::to_string(*item.action);
      if (are_groups) text += R"(,"mbrs":[)" + numbers(item.members) + "]";
      text += "}";
    }
    return text;
  }
  static std::string numbers(const std::vector<std::uint32_t> &all)
  {
    std::string text;
    for (const std::uint32_t each : all) text += (text.empty() ? "" : ",") + std::to_string(each);
    return text;
  }
};

/// What the service logs of a device.
inline std::string logged(std::uint32_t device, ms_state *state)
{
  const document object = new_object();
  require(p4_pd_ms_log_state(device, state, object.get()) == 0, "a state is logged");
  return printed(object.get());
}

inline void check_action(pd_status_t status, std::uint32_t answered, const std::optional<std::uint32_t> &action)
{
  require(status == (action ? 0u : pd_status_t{STANDIN_NO_ACTION}), "an action is told if there is one");
  require(!action || answered == *action, "it is the action that was set");
}

/// That the service holds a state: in its log's bytes and in its answers.
inline void check_holds(std::uint32_t device, ms_state *state, const plain_state &expected)
{
  require_equal("the log is the state's", logged(device, state), expected.log());
  std::uint32_t answered = 0;
  std::map<std::uint32_t, std::vector<std::uint32_t>> groups_of;
  for (const auto &[handle, group] : expected.groups) {
    const pd_status_t status = p4_pd_ms_get_grp_act(state, device, handle, &answered);
    check_action(status, answered, group.action);
    for (const std::uint32_t member : group.members) groups_of[member].push_back(handle);
  }
  for (const auto &[handle, member] : expected.members) {
    const pd_status_t status = p4_pd_ms_get_mbr_act(state, device, handle, &answered);
    check_action(status, answered, member.action);
    std::vector<std::uint32_t> walked;
    const p4_pd_ms_grp_fn_t visit = [](std::uint32_t, pd_mbr_hdl_t, pd_grp_hdl_t group, void *to) -> pd_status_t {
      static_cast<std::vector<std::uint32_t> *>(to)->push_back(group);
      return 0;
    };
    require(p4_pd_ms_mbr_apply_to_grps(state, device, handle, visit, &walked) == 0, "a member's groups are walked");
    std::sort(walked.begin(), walked.end());
    require(walked == groups_of[handle], "they are the groups that it joined");
  }
}

}  // namespace tarvex::fuzz
