// Start, stop and device events.
//
// SPDX-License-Identifier: Apache-2.0
#include "plain_functions.h"

#include <cstring>

#include <cjson/cJSON.h>

#include "call_conventions.h"
#include "profile_states.h"

uint32_t bf_drv_hdl = 0;

namespace tarvex::pd {

namespace {

std::span<ms_state *> all_states() { return {profile_states, profile_names.size()}; }

/// Kind of client that the driver is told; a number of the driver's.
constexpr std::uint32_t client_kind = 2;

}  // namespace

pd_status_t init(const char *function, device_removal on_remove, device_log on_log, device_log on_restore)
{
  p4_pd_ms_init();
  for (ms_state *&state : all_states()) state = p4_pd_ms_init_state();
  if (bf_drv_register(client_name, &bf_drv_hdl) != BF_SUCCESS)
    __assert_fail("r == BF_SUCCESS", pd_source, __LINE__, function);

  drv_client_callbacks_t callbacks{};
  callbacks.dev_remove = on_remove;
  callbacks.dev_log = on_log;
  callbacks.dev_restore = on_restore;
  return bf_drv_client_register_callbacks(bf_drv_hdl, &callbacks, client_kind, 0);
}

pd_status_t cleanup() { return bf_drv_deregister(bf_drv_hdl); }

void device_state_cleanup() {}

pd_status_t dev_remove(uint32_t dev_id)
{
  for (ms_state *state : all_states()) p4_pd_ms_destroy_state_for_dev(state, dev_id);
  p4_pd_ms_destroy_txn_state_for_dev(dev_id);
  return BF_SUCCESS;
}

/// The results of cJSON are not looked at: not every cJSON that a host program brings has any.
pd_status_t dev_log(uint32_t dev_id, cJSON *log)
{
  if (log == nullptr) return BF_SUCCESS;
  cJSON_AddItemToObject(log, "name", cJSON_CreateString(pipeline_name));
  cJSON *const profiles = cJSON_CreateArray();
  cJSON_AddItemToObject(log, "act_profs", profiles);
  for (std::size_t i = 0; i < profile_names.size(); ++i) {
    cJSON *const profile = cJSON_CreateObject();
    cJSON_AddItemToArray(profiles, profile);
    cJSON_AddItemToObject(profile, "name", cJSON_CreateString(profile_names[i]));
    p4_pd_ms_log_state(low_byte(dev_id), profile_states[i], profile);
  }
  return BF_SUCCESS;
}

pd_status_t dev_restore(uint32_t dev_id, cJSON *log)
{
  if (log == nullptr) return BF_SUCCESS;
  const cJSON *const profiles = cJSON_GetObjectItem(log, "act_profs");
  if (profiles == nullptr) return BF_SUCCESS;
  for (cJSON *profile = profiles->child; profile != nullptr; profile = profile->next) {
    const cJSON *const name = cJSON_GetObjectItem(profile, "name");
    if (name == nullptr || name->valuestring == nullptr) continue;
    for (std::size_t i = 0; i < profile_names.size(); ++i)
      if (std::strcmp(name->valuestring, profile_names[i]) == 0)
        p4_pd_ms_restore_state(low_byte(dev_id), profile_states[i], profile);
  }
  return BF_SUCCESS;
}

}  // namespace tarvex::pd
