// The member-selector service under any run of calls, against a plain state beside it; then its log, restored.
//
// SPDX-License-Identifier: Apache-2.0
#include "byte_source.h"
#include "selector_log.h"

namespace tarvex::fuzz {

namespace {

constexpr pd_sess_hdl_t session = 1;
constexpr std::uint32_t device = 7;
constexpr std::uint32_t restored_device = 8;
constexpr std::uint32_t no_member = STANDIN_NO_MEMBER;
constexpr std::uint32_t no_group = STANDIN_NO_GROUP;

using items = std::map<std::uint32_t, plain_item>;

pd_status_t add(items &to, std::uint32_t handle)
{
  return to.try_emplace(handle).second ? 0 : pd_status_t{STANDIN_EXISTS};
}

pd_status_t set_action(items &of, std::uint32_t handle, std::uint32_t action, std::uint32_t unknown)
{
  const auto found = of.find(handle);
  if (found == of.end()) return unknown;
  found->second.action = action;
  return 0;
}

pd_status_t join(plain_state &state, std::uint32_t member, std::uint32_t group)
{
  const auto found = state.groups.find(group);
  if (found == state.groups.end()) return no_group;
  auto &members = found->second.members;
  if (std::find(members.begin(), members.end(), member) != members.end()) return STANDIN_EXISTS;
  members.push_back(member);
  return 0;
}

pd_status_t leave(plain_state &state, std::uint32_t member, std::uint32_t group)
{
  const auto found = state.groups.find(group);
  if (found == state.groups.end()) return no_group;
  return std::erase(found->second.members, member) != 0 ? 0 : no_member;
}

pd_status_t remove_member(plain_state &state, std::uint32_t member)
{
  if (state.members.erase(member) == 0) return no_member;
  for (auto &[handle, group] : state.groups) std::erase(group.members, member);
  return 0;
}

}  // namespace

}  // namespace tarvex::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
  using namespace tarvex::fuzz;
  static ms_state *const state = p4_pd_ms_init_state();
  p4_pd_ms_destroy_state_for_dev(state, device);
  plain_state expected;
  byte_source input({data, size});
  while (!input.empty()) {
    const auto step = input.number<std::uint8_t>();
    // Few handles, so that they meet, and those at the ends of their range.
    const std::uint32_t member = input.number<std::uint8_t>() % 12 - 2u;
    const std::uint32_t group = input.number<std::uint8_t>() % 8 - 2u;
    pd_status_t is = 0, should_be = 0;
    const auto calls = [&](pd_status_t made, pd_status_t expects) { is = made, should_be = expects; };
    switch (step % 8) {
      case 0: calls(p4_pd_ms_new_mbr(session, state, device, member), add(expected.members, member)); break;
      case 1: calls(p4_pd_ms_new_grp(session, state, device, group), add(expected.groups, group)); break;
      case 2:
        calls(p4_pd_ms_set_mbr_act(state, device, member, group),
              set_action(expected.members, member, group, no_member));
        break;
      case 3:
        calls(p4_pd_ms_set_grp_act(state, device, group, member), set_action(expected.groups, group, member, no_group));
        break;
      case 4:
        calls(p4_pd_ms_add_mbr_to_grp(session, state, device, member, group), join(expected, member, group));
        break;
      case 5:
        calls(p4_pd_ms_del_mbr_from_grp(session, state, device, member, group), leave(expected, member, group));
        break;
      case 6: calls(p4_pd_ms_del_mbr(session, state, device, member), remove_member(expected, member)); break;
      default: calls(p4_pd_ms_del_grp(session, state, device, group), expected.groups.erase(group) != 0 ? 0 : no_group);
    }
    require(is == should_be, "a call answers as the state has it", std::to_string(is), std::to_string(should_be));
  }
  check_holds(device, state, expected);
  const std::string log = logged(device, state);
  require(p4_pd_ms_restore_state(restored_device, state, parsed(log).get()) == 0, "a log is restored");
  check_holds(restored_device, state, expected);
  return 0;
}
