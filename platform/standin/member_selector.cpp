// The member-selector state service: for each profile and device, which members and groups there are, the action of
// each, and who is in which group. It changes nothing on the switch, knows of no device that was not told to it, and
// its functions have no transactions, so that there is no state of any to drop.
//
// The log of a device is {"members": [{"hdl", "act"}], "groups": [{"hdl", "act", "mbrs": [hdl]}]}, numbers all of them;
// "act" is left out where none was set. Resources are not logged.
//
// SPDX-License-Identifier: Apache-2.0
#include "member_selector.h"

#include <algorithm>
#include <list>
#include <map>
#include <mutex>
#include <new>
#include <optional>
#include <utility>
#include <vector>

#include <cjson/cJSON.h>

#include "call_gate.h"
#include "status.h"
#include "tarvex_standin/standin.h"

namespace tarvex::standin {

struct selector_item {
  bool known = false;  // a membership may name its member ahead of the member itself
  std::optional<std::uint32_t> action;
  std::vector<pd_res_spec_t> resources;
  std::vector<std::uint32_t> others;  // groups of a member, members of a group, in the order in which they came
};

using selector_items = std::map<std::uint32_t, selector_item>;

struct selector_device {
  selector_items members;
  selector_items groups;
};

namespace {

/// Kind of item that a function is about.
struct item_kind {
  selector_items selector_device::*items;
  selector_items selector_device::*others;
  pd_status_t unknown;
};

constexpr item_kind of_member = {&selector_device::members, &selector_device::groups, STANDIN_NO_MEMBER};
constexpr item_kind of_group = {&selector_device::groups, &selector_device::members, STANDIN_NO_GROUP};

bool contains(const std::vector<std::uint32_t> &handles, std::uint32_t handle)
{
  return std::find(handles.begin(), handles.end(), handle) != handles.end();
}

}  // namespace
}  // namespace tarvex::standin

struct ms_state {
  std::mutex mutex;
  std::map<std::uint32_t, tarvex::standin::selector_device> devices;
};

namespace tarvex::standin {
namespace {

/// All states there are. They live as long as the process: nothing gives one back, and a client may stop late.
struct selector_states {
  std::mutex mutex;
  std::list<ms_state> list;
};

selector_states &the_states()
{
  static auto *const states = new selector_states;
  return *states;
}

/// Runs body(device's part) under the state's lock.
template <class Body>
pd_status_t on_state(ms_state *state, std::uint32_t dev_id, Body body)
{
  if (state == nullptr) return STANDIN_BAD_ARGUMENT;
  const std::lock_guard lock(state->mutex);
  try {
    return body(state->devices[dev_id]);
  } catch (const std::bad_alloc &) {
    return STANDIN_NO_MEMORY;
  }
}

template <class Body>
pd_status_t serve_state(const char *function, ms_state *state, std::uint32_t dev_id, Body body)
{
  if (const pd_status_t refused = announce(function, 0)) return refused;
  return on_state(state, dev_id, body);
}

/// A function on a member or group: body(item).
template <class Body>
pd_status_t serve_item(const char *function, ms_state *state, std::uint32_t dev_id, const item_kind &kind,
                       std::uint32_t handle, Body body)
{
  return serve_state(function, state, dev_id, [&](selector_device &dev) {
    const auto found = (dev.*kind.items).find(handle);
    return found == (dev.*kind.items).end() || !found->second.known ? kind.unknown : body(found->second);
  });
}

pd_status_t add_item(const char *function, ms_state *state, std::uint32_t dev_id, const item_kind &kind,
                     std::uint32_t handle)
{
  return serve_state(function, state, dev_id, [&](selector_device &dev) {
    return require(!std::exchange((dev.*kind.items)[handle].known, true), STANDIN_EXISTS);
  });
}

pd_status_t delete_item(const char *function, ms_state *state, std::uint32_t dev_id, const item_kind &kind,
                        std::uint32_t handle)
{
  return serve_state(function, state, dev_id, [&](selector_device &dev) {
    const auto found = (dev.*kind.items).find(handle);
    if (found == (dev.*kind.items).end() || !found->second.known) return kind.unknown;
    for (const std::uint32_t other : found->second.others) std::erase((dev.*kind.others)[other].others, handle);
    (dev.*kind.items).erase(found);
    return success;
  });
}

pd_status_t set_action(const char *function, ms_state *state, std::uint32_t dev_id, const item_kind &kind,
                       std::uint32_t handle, std::uint32_t act_hdl)
{
  return serve_item(function, state, dev_id, kind, handle, [&](selector_item &item) {
    item.action = act_hdl;
    return success;
  });
}

pd_status_t get_action(const char *function, ms_state *state, std::uint32_t dev_id, const item_kind &kind,
                       std::uint32_t handle, std::uint32_t *act_hdl)
{
  return serve_item(function, state, dev_id, kind, handle, [&](const selector_item &item) -> pd_status_t {
    if (act_hdl == nullptr) return STANDIN_BAD_ARGUMENT;
    if (!item.action) return STANDIN_NO_ACTION;
    *act_hdl = *item.action;
    return success;
  });
}

pd_status_t get_resources(const char *function, ms_state *state, std::uint32_t dev_id, const item_kind &kind,
                          std::uint32_t handle, std::uint32_t *count, pd_res_spec_t **list)
{
  return serve_item(function, state, dev_id, kind, handle, [&](selector_item &item) -> pd_status_t {
    if (count == nullptr || list == nullptr) return STANDIN_BAD_ARGUMENT;
    *count = static_cast<std::uint32_t>(item.resources.size());
    *list = item.resources.empty() ? nullptr : item.resources.data();
    return success;
  });
}

/// A function on a membership, whether or not it is there: body(member, group).
template <class Body>
pd_status_t serve_pair(const char *function, ms_state *state, std::uint32_t dev_id, pd_mbr_hdl_t mbr_hdl,
                       pd_grp_hdl_t grp_hdl, Body body)
{
  return serve_state(function, state, dev_id, [&](selector_device &dev) -> pd_status_t {
    const auto group = dev.groups.find(grp_hdl);
    return group == dev.groups.end() ? of_group.unknown : body(dev.members[mbr_hdl], group->second);
  });
}

/// A number of a document as a handle.
std::optional<std::uint32_t> read_handle(const cJSON *item)
{
  if (!cJSON_IsNumber(item) || !(item->valuedouble >= 0 && item->valuedouble <= 0xffffffffu)) return std::nullopt;
  const auto handle = static_cast<std::uint32_t>(item->valuedouble);
  return handle == item->valuedouble ? std::optional(handle) : std::nullopt;
}

/// Reads a list of items into an empty map.
bool read_items(const cJSON *list, selector_items &to)
{
  if (!cJSON_IsArray(list)) return false;
  for (const cJSON *each = list->child; each != nullptr; each = each->next) {
    const auto handle = read_handle(cJSON_GetObjectItemCaseSensitive(each, "hdl"));
    if (!handle || std::exchange(to[*handle].known, true)) return false;
    if (const cJSON *act = cJSON_GetObjectItemCaseSensitive(each, "act")) {
      to[*handle].action = read_handle(act);
      if (!to[*handle].action) return false;
    }
  }
  return true;
}

/// Whether no handle is there twice; a document may name as many as it likes.
bool are_distinct(std::vector<std::uint32_t> handles)
{
  std::sort(handles.begin(), handles.end());
  return std::adjacent_find(handles.begin(), handles.end()) == handles.end();
}

/// Reads who is in which group; members and groups have been read.
bool read_memberships(const cJSON *groups, selector_device &to)
{
  for (const cJSON *each = groups->child; each != nullptr; each = each->next) {
    const std::uint32_t grp_hdl = *read_handle(cJSON_GetObjectItemCaseSensitive(each, "hdl"));
    const cJSON *const list = cJSON_GetObjectItemCaseSensitive(each, "mbrs");
    if (!cJSON_IsArray(list)) return false;
    std::vector<std::uint32_t> &members = to.groups[grp_hdl].others;
    for (const cJSON *item = list->child; item != nullptr; item = item->next) {
      const auto mbr_hdl = read_handle(item);
      if (!mbr_hdl) return false;
      members.push_back(*mbr_hdl);
      to.members[*mbr_hdl].others.push_back(grp_hdl);
    }
    if (!are_distinct(members)) return false;
  }
  return true;
}

/// Appends to an array; false when there is no memory.
bool append(cJSON *array, cJSON *item) { return item != nullptr && cJSON_AddItemToArray(array, item) != 0; }

bool log_items(cJSON *object, const char *name, const selector_items &items, bool with_members)
{
  cJSON *const list = cJSON_AddArrayToObject(object, name);
  if (list == nullptr) return false;
  for (const auto &[handle, item] : items) {
    if (!item.known) continue;
    cJSON *const one = cJSON_CreateObject();
    if (!append(list, one) || cJSON_AddNumberToObject(one, "hdl", handle) == nullptr) return false;
    if (item.action && cJSON_AddNumberToObject(one, "act", *item.action) == nullptr) return false;
    if (!with_members) continue;
    cJSON *const members = cJSON_AddArrayToObject(one, "mbrs");
    if (members == nullptr) return false;
    for (const std::uint32_t member : item.others)
      if (!append(members, cJSON_CreateNumber(member))) return false;
  }
  return true;
}

}  // namespace

void empty_selector_states()
{
  const std::lock_guard lock(the_states().mutex);
  for (ms_state &each : the_states().list) {
    const std::lock_guard state_lock(each.mutex);
    each.devices.clear();
  }
}

}  // namespace tarvex::standin

using namespace tarvex::standin;

pd_status_t p4_pd_ms_init(void) { return announce(__func__, 0); }

ms_state *p4_pd_ms_init_state(void)
{
  if (announce(__func__, 0) != success) return nullptr;
  selector_states &all = the_states();
  const std::lock_guard lock(all.mutex);
  try {
    return &all.list.emplace_back();
  } catch (const std::bad_alloc &) {
    return nullptr;
  }
}

pd_status_t p4_pd_ms_new_mbr(pd_sess_hdl_t, ms_state *state, uint32_t dev_id, pd_mbr_hdl_t mbr_hdl)
{
  return add_item(__func__, state, dev_id, of_member, mbr_hdl);
}

pd_status_t p4_pd_ms_set_mbr_act(ms_state *state, uint32_t dev_id, pd_mbr_hdl_t mbr_hdl, uint32_t act_hdl)
{
  return set_action(__func__, state, dev_id, of_member, mbr_hdl, act_hdl);
}

pd_status_t p4_pd_ms_get_mbr_act(ms_state *state, uint32_t dev_id, pd_mbr_hdl_t mbr_hdl, uint32_t *act_hdl)
{
  return get_action(__func__, state, dev_id, of_member, mbr_hdl, act_hdl);
}

pd_status_t p4_pd_ms_del_mbr(pd_sess_hdl_t, ms_state *state, uint32_t dev_id, pd_mbr_hdl_t mbr_hdl)
{
  return delete_item(__func__, state, dev_id, of_member, mbr_hdl);
}

pd_status_t p4_pd_ms_mbr_get_res(ms_state *state, uint32_t dev_id, pd_mbr_hdl_t mbr_hdl, uint32_t *count,
                                 pd_res_spec_t **list)
{
  return get_resources(__func__, state, dev_id, of_member, mbr_hdl, count, list);
}

pd_status_t p4_pd_ms_mbr_apply_to_grps(ms_state *state, uint32_t dev_id, pd_mbr_hdl_t mbr_hdl, p4_pd_ms_grp_fn_t fn,
                                       void *argument)
{
  std::vector<std::uint32_t> groups;  // the function may come back to the service, so it is called without the lock
  const auto note = [&](const selector_item &item) {
    groups = item.others;
    return require(fn != nullptr, STANDIN_BAD_ARGUMENT);
  };
  const pd_status_t status = serve_item(__func__, state, dev_id, of_member, mbr_hdl, note);
  if (status != success) return status;
  for (const std::uint32_t grp_hdl : groups)
    if (const pd_status_t stopped = fn(dev_id, mbr_hdl, grp_hdl, argument)) return stopped;
  return success;
}

pd_status_t p4_pd_ms_new_grp(pd_sess_hdl_t, ms_state *state, uint32_t dev_id, pd_grp_hdl_t grp_hdl)
{
  return add_item(__func__, state, dev_id, of_group, grp_hdl);
}

pd_status_t p4_pd_ms_del_grp(pd_sess_hdl_t, ms_state *state, uint32_t dev_id, pd_grp_hdl_t grp_hdl)
{
  return delete_item(__func__, state, dev_id, of_group, grp_hdl);
}

pd_status_t p4_pd_ms_add_mbr_to_grp(pd_sess_hdl_t, ms_state *state, uint32_t dev_id, pd_mbr_hdl_t mbr_hdl,
                                    pd_grp_hdl_t grp_hdl)
{
  return serve_pair(__func__, state, dev_id, mbr_hdl, grp_hdl, [&](selector_item &member, selector_item &group) {
    if (contains(member.others, grp_hdl)) return pd_status_t{STANDIN_EXISTS};
    member.others.reserve(member.others.size() + 1);
    group.others.push_back(mbr_hdl);
    member.others.push_back(grp_hdl);
    return success;
  });
}

pd_status_t p4_pd_ms_del_mbr_from_grp(pd_sess_hdl_t, ms_state *state, uint32_t dev_id, pd_mbr_hdl_t mbr_hdl,
                                      pd_grp_hdl_t grp_hdl)
{
  return serve_pair(__func__, state, dev_id, mbr_hdl, grp_hdl, [&](selector_item &member, selector_item &group) {
    std::erase(group.others, mbr_hdl);
    return require(std::erase(member.others, grp_hdl) != 0, STANDIN_NO_MEMBER);
  });
}

pd_status_t p4_pd_ms_set_grp_act(ms_state *state, uint32_t dev_id, pd_grp_hdl_t grp_hdl, uint32_t act_hdl)
{
  return set_action(__func__, state, dev_id, of_group, grp_hdl, act_hdl);
}

pd_status_t p4_pd_ms_get_grp_act(ms_state *state, uint32_t dev_id, pd_grp_hdl_t grp_hdl, uint32_t *act_hdl)
{
  return get_action(__func__, state, dev_id, of_group, grp_hdl, act_hdl);
}

pd_status_t p4_pd_ms_grp_get_res(ms_state *state, uint32_t dev_id, pd_grp_hdl_t grp_hdl, uint32_t *count,
                                 pd_res_spec_t **list)
{
  return get_resources(__func__, state, dev_id, of_group, grp_hdl, count, list);
}

pd_status_t p4_pd_ms_grp_update_res(uint32_t dev_id, pd_mbr_hdl_t mbr_hdl, pd_grp_hdl_t grp_hdl, void *state)
{
  return serve_pair(__func__, static_cast<ms_state *>(state), dev_id, mbr_hdl, grp_hdl,
                    [](const selector_item &member, selector_item &group) {
                      group.resources = member.resources;
                      return success;
                    });
}

pd_status_t p4_pd_ms_log_state(uint32_t dev_id, ms_state *state, cJSON *object)
{
  return serve_state(__func__, state, dev_id, [&](const selector_device &dev) -> pd_status_t {
    if (object == nullptr) return STANDIN_BAD_ARGUMENT;
    const bool done = log_items(object, "members", dev.members, false) && log_items(object, "groups", dev.groups, true);
    return require(done, STANDIN_NO_MEMORY);
  });
}

pd_status_t p4_pd_ms_restore_state(uint32_t dev_id, ms_state *state, cJSON *object)
{
  return serve_state(__func__, state, dev_id, [&](selector_device &dev) -> pd_status_t {
    const cJSON *const groups = cJSON_GetObjectItemCaseSensitive(object, "groups");
    selector_device restored;
    if (!read_items(cJSON_GetObjectItemCaseSensitive(object, "members"), restored.members) ||
        !read_items(groups, restored.groups) || !read_memberships(groups, restored))
      return STANDIN_BAD_DOCUMENT;
    dev = std::move(restored);
    return success;
  });
}

pd_status_t p4_pd_ms_destroy_state_for_dev(ms_state *state, uint32_t dev_id)
{
  if (const pd_status_t refused = announce(__func__, 0)) return refused;
  if (state == nullptr) return STANDIN_BAD_ARGUMENT;
  const std::lock_guard lock(state->mutex);
  state->devices.erase(dev_id);
  return success;
}

pd_status_t p4_pd_ms_destroy_txn_state_for_dev(uint32_t) { return announce(__func__, 0); }

pd_status_t standin_member_resources_set(ms_state *state, uint32_t dev_id, pd_mbr_hdl_t mbr_hdl, uint32_t count,
                                         const pd_res_spec_t *list)
{
  return on_state(state, dev_id, [&](selector_device &dev) -> pd_status_t {
    const auto found = dev.members.find(mbr_hdl);
    if (found == dev.members.end() || !found->second.known) return STANDIN_NO_MEMBER;
    if (count != 0 && list == nullptr) return STANDIN_BAD_ARGUMENT;
    found->second.resources.assign(list, list + count);
    return success;
  });
}
