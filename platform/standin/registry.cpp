// The registry of clients, the coming and going of devices, and the device events that clients are called for.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <string>

#include <cjson/cJSON.h>

#include "device.h"
#include "member_selector.h"
#include "snapshots.h"

namespace tarvex::standin {
namespace {

struct client {
  std::string name;
  std::uint32_t number = 0;  // in the order of registration
  drv_client_callbacks_t callbacks{};
};

struct registry {
  std::mutex mutex;
  slot_map<client> clients;
  std::uint32_t registered = 0;
};

registry &the_registry()
{
  static registry instance;
  return instance;
}

/// The clients as they are now, in the order of their registration: callbacks run without the lock.
std::vector<client> clients_now()
{
  registry &r = the_registry();
  std::vector<client> clients;
  {
    const std::lock_guard lock(r.mutex);
    r.clients.each([&](std::uint32_t, const client &each) { clients.push_back(each); });
  }
  std::sort(clients.begin(), clients.end(), [](const client &a, const client &b) { return a.number < b.number; });
  return clients;
}

/// Drops a device with its snapshots; false where there is none.
bool drop_device(std::uint32_t dev_id)
{
  std::unique_ptr<device> removed;
  const std::lock_guard lock(place_of(dev_id)->mutex);
  removed.swap(place_of(dev_id)->held);
  drop_snapshots(dev_id);
  return removed != nullptr;
}

pd_status_t check_device(std::uint32_t dev_id)
{
  return on_device(dev_id, [](device &) { return success; });
}

/// A driver function on a client: body(client).
template <class Body>
pd_status_t serve_client(const char *function, std::uint32_t client_hdl, Body body)
{
  if (const pd_status_t refused = announce(function, client_hdl)) return refused;
  registry &r = the_registry();
  const std::lock_guard lock(r.mutex);
  client *const found = r.clients.find(client_hdl);
  return found == nullptr ? pd_status_t{STANDIN_NO_CLIENT} : body(r, *found);
}

}  // namespace
}  // namespace tarvex::standin

using namespace tarvex::standin;

pd_status_t bf_drv_register(const char *client_name, uint32_t *client_hdl)
{
  if (const pd_status_t refused = announce(__func__, 0)) return refused;
  if (client_name == nullptr || client_hdl == nullptr) return STANDIN_BAD_ARGUMENT;
  registry &r = the_registry();
  const std::lock_guard lock(r.mutex);
  bool taken = false;
  r.clients.each([&](std::uint32_t, const client &each) { taken = taken || each.name == client_name; });
  return taken ? pd_status_t{STANDIN_EXISTS} : r.clients.add({client_name, ++r.registered, {}}, client_hdl);
}

pd_status_t bf_drv_deregister(uint32_t client_hdl)
{
  return serve_client(__func__, client_hdl, [&](registry &r, client &) -> pd_status_t {
    r.clients.erase(client_hdl);
    return success;
  });
}

pd_status_t bf_drv_client_register_callbacks(uint32_t client_hdl, const drv_client_callbacks_t *callbacks, uint32_t,
                                             uint32_t)
{
  return serve_client(__func__, client_hdl, [&](registry &, client &which) -> pd_status_t {
    if (callbacks == nullptr) return STANDIN_BAD_ARGUMENT;
    which.callbacks = *callbacks;
    return success;
  });
}

pd_status_t standin_device_add(uint32_t dev_id)
{
  device_place *const place = place_of(dev_id);
  if (place == nullptr) return STANDIN_BAD_ARGUMENT;
  try {
    auto added = std::make_unique<device>(dev_id);
    const std::lock_guard lock(place->mutex);
    if (place->held != nullptr) return STANDIN_EXISTS;
    place->held = std::move(added);
    return success;
  } catch (const std::bad_alloc &) {
    return STANDIN_NO_MEMORY;
  }
}

pd_status_t standin_device_remove(uint32_t dev_id)
{
  if (const pd_status_t status = check_device(dev_id)) return status;
  for (const client &each : clients_now())
    if (each.callbacks.dev_remove != nullptr) each.callbacks.dev_remove(dev_id);
  return require(drop_device(dev_id), STANDIN_NO_DEVICE);
}

pd_status_t standin_device_log(uint32_t dev_id, cJSON *log)
{
  if (log == nullptr) return STANDIN_BAD_ARGUMENT;
  if (const pd_status_t status = check_device(dev_id)) return status;
  pd_status_t first = BF_SUCCESS;
  for (const client &each : clients_now()) {
    if (each.callbacks.dev_log == nullptr) continue;
    cJSON *const part = cJSON_CreateObject();
    if (part == nullptr) return STANDIN_NO_MEMORY;
    cJSON_AddItemToObject(log, each.name.c_str(), part);
    const pd_status_t status = each.callbacks.dev_log(dev_id, part);
    if (first == BF_SUCCESS) first = status;
  }
  return first;
}

pd_status_t standin_device_restore(uint32_t dev_id, cJSON *log)
{
  if (log == nullptr) return STANDIN_BAD_ARGUMENT;
  if (const pd_status_t status = check_device(dev_id)) return status;
  pd_status_t first = BF_SUCCESS;
  for (const client &each : clients_now()) {
    cJSON *const part = cJSON_GetObjectItemCaseSensitive(log, each.name.c_str());
    if (each.callbacks.dev_restore == nullptr || part == nullptr) continue;
    const pd_status_t status = each.callbacks.dev_restore(dev_id, part);
    if (first == BF_SUCCESS) first = status;
  }
  return first;
}

void standin_reset(void)
{
  for (std::uint32_t dev_id = 0; dev_id < most_devices; ++dev_id) drop_device(dev_id);
  {
    registry &r = the_registry();
    const std::lock_guard lock(r.mutex);
    r.clients = {};
    r.registered = 0;
  }
  empty_selector_states();
  reset_gate();
  standin_fail_calloc(0);
}
