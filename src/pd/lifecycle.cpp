// Start, stop and device events.
//
// SPDX-License-Identifier: Apache-2.0
#include "tarvex_pd/lifecycle.h"

#include <cstring>

#include <cjson/cJSON.h>

#include "call_conventions.h"
#include "profile_states.h"

namespace tarvex::pd {

namespace {

std::span<ms_state *> all_states() { return {profile_states, profile_names.size()}; }

/// Kind of client that the driver is told; a number of the driver's.
constexpr std::uint32_t client_kind = 2;

bool is(const cJSON *item, int type) { return item != nullptr && (item->type & 0xff) == type; }

/// An item that the document does not take, for want of memory, is given back; null then.
cJSON *kept(bool taken, cJSON *item)
{
  if (taken) return item;
  cJSON_Delete(item);
  return nullptr;
}

cJSON *put(cJSON *object, const char *key, cJSON *item)
{
  return kept(cJSON_AddItemToObject(object, key, item) != 0, item);
}

}  // namespace
}  // namespace tarvex::pd

using namespace tarvex::pd;

uint32_t bf_drv_hdl = 0;

pd_status_t p4_pd_tarvex_switch_init(void)
{
  p4_pd_ms_init();
  for (ms_state *&state : all_states()) state = p4_pd_ms_init_state();
  if (bf_drv_register(client_name, &bf_drv_hdl) != BF_SUCCESS)
    __assert_fail("r == BF_SUCCESS", pd_source, __LINE__, __func__);

  drv_client_callbacks_t callbacks{};
  callbacks.dev_remove = p4_pd_tarvex_switch_dev_remove;
  callbacks.dev_log = p4_pd_tarvex_switch_dev_log;
  callbacks.dev_restore = p4_pd_tarvex_switch_dev_restore;
  return bf_drv_client_register_callbacks(bf_drv_hdl, &callbacks, client_kind, 0);
}

pd_status_t p4_pd_tarvex_switch_cleanup(void) { return bf_drv_deregister(bf_drv_hdl); }

void p4_pd_tarvex_switch_device_state_cleanup(void) {}

pd_status_t p4_pd_tarvex_switch_dev_remove(uint32_t dev_id)
{
  for (ms_state *state : all_states()) p4_pd_ms_destroy_state_for_dev(state, dev_id);
  p4_pd_ms_destroy_txn_state_for_dev(dev_id);
  return BF_SUCCESS;
}

pd_status_t p4_pd_tarvex_switch_dev_log(uint32_t dev_id, cJSON *log)
{
  if (log == nullptr) return BF_SUCCESS;
  put(log, "name", cJSON_CreateString(pipeline_name));
  cJSON *profiles = put(log, "act_profs", cJSON_CreateArray());
  for (std::size_t i = 0; i < profile_names.size(); ++i) {
    cJSON *profile = cJSON_CreateObject();
    profile = kept(cJSON_AddItemToArray(profiles, profile) != 0, profile);
    if (profile == nullptr) continue;
    put(profile, "name", cJSON_CreateString(profile_names[i]));
    p4_pd_ms_log_state(low_byte(dev_id), profile_states[i], profile);
  }
  return BF_SUCCESS;
}

pd_status_t p4_pd_tarvex_switch_dev_restore(uint32_t dev_id, cJSON *log)
{
  const cJSON *profiles = cJSON_GetObjectItem(log, "act_profs");
  if (!is(profiles, cJSON_Array)) return BF_SUCCESS;
  for (cJSON *profile = profiles->child; profile != nullptr; profile = profile->next) {
    if (!is(profile, cJSON_Object)) continue;
    const cJSON *name = cJSON_GetObjectItem(profile, "name");
    if (!is(name, cJSON_String) || name->valuestring == nullptr) continue;
    for (std::size_t i = 0; i < profile_names.size(); ++i)
      if (std::strcmp(name->valuestring, profile_names[i]) == 0)
        p4_pd_ms_restore_state(low_byte(dev_id), profile_states[i], profile);
  }
  return BF_SUCCESS;
}
