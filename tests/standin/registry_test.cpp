// Clients of the driver, and the device events that they are called for.
//
// SPDX-License-Identifier: Apache-2.0
#include <memory>
#include <string>

#include <cjson/cJSON.h>

#include "switch_fixture.h"

namespace {

class Registry : public SwitchTest {};

std::string events;

pd_status_t on_remove(std::uint32_t dev_id)
{
  events += "remove " + std::to_string(dev_id) + ";";
  pd_entry_hdl_t entry = 0;  // the device is still there
  ok(pipe_mgr_get_entry_count(session, target, host_table, 0, &entry));
  return BF_SUCCESS;
}

pd_status_t on_log(std::uint32_t, cJSON *log)
{
  return cJSON_AddStringToObject(log, "kept", "this") != nullptr ? 0x55 : 0;
}

pd_status_t on_restore(std::uint32_t, cJSON *log)
{
  events += std::string("restore ") + cJSON_GetObjectItem(log, "kept")->valuestring + ";";
  return BF_SUCCESS;
}

TEST_F(Registry, DeviceEventsReachTheClient)
{
  events.clear();
  std::uint32_t client = 0, other = 0;
  ok(bf_drv_register("client", &client));
  EXPECT_EQ(bf_drv_register("client", &other), STANDIN_EXISTS);
  ok(bf_drv_register("silent", &other));
  drv_client_callbacks_t callbacks{};
  callbacks.dev_remove = on_remove;
  callbacks.dev_log = on_log;
  callbacks.dev_restore = on_restore;
  ok(bf_drv_client_register_callbacks(client, &callbacks, 2, 0));
  callbacks = {};  // the driver has copied them
  EXPECT_EQ(bf_drv_client_register_callbacks(client + 5, &callbacks, 2, 0), STANDIN_NO_CLIENT);

  const std::unique_ptr<cJSON, decltype(&cJSON_Delete)> log(cJSON_CreateObject(), cJSON_Delete);
  EXPECT_EQ(standin_device_log(device, log.get()), 0x55u);
  ok(standin_device_restore(device, log.get()));
  EXPECT_EQ(standin_device_log(device + 1, log.get()), STANDIN_NO_DEVICE);
  ok(standin_device_remove(device));
  EXPECT_EQ(standin_device_remove(device), STANDIN_NO_DEVICE);
  EXPECT_EQ(events, "restore this;remove 3;");

  ok(standin_device_add(device));
  ok(bf_drv_deregister(client));
  EXPECT_EQ(bf_drv_deregister(client), STANDIN_NO_CLIENT);
  ok(standin_device_remove(device));
  EXPECT_EQ(events, "restore this;remove 3;");
}

TEST_F(Registry, DevicesAreSeparateAndComeBackEmpty)
{
  EXPECT_EQ(standin_device_add(device), STANDIN_EXISTS);
  EXPECT_EQ(standin_device_add(256), STANDIN_BAD_ARGUMENT);
  ok(standin_device_add(255));
  const pd_entry_hdl_t entry = add_host(1, 2, 3);
  std::uint32_t entries = 9;
  ok(pipe_mgr_get_entry_count(session, 255, host_table, 0, &entries));
  EXPECT_EQ(entries, 0u);
  ok(standin_device_remove(device));
  EXPECT_EQ(pipe_mgr_mat_ent_del(session, device, host_table, entry, 0), STANDIN_NO_DEVICE);
  ok(standin_device_add(device));
  EXPECT_EQ(count(host_table), 0u);
}

}  // namespace
