// Driver functions of the learning digest. Messages belong to their device until they are acknowledged.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "device.h"

namespace tarvex::standin {
namespace {

/// A driver function on the digest of a device: body(device).
template <class Body>
pd_status_t serve_digest(const char *function, std::uint32_t dev_id, std::uint32_t digest_hdl, Body body)
{
  return serve(function, dev_id, digest_hdl, [&](device &dev) {
    return is_digest(digest_hdl) ? body(dev.services) : pd_status_t{STANDIN_NO_OBJECT};
  });
}

}  // namespace
}  // namespace tarvex::standin

using namespace tarvex::standin;

pd_status_t pipe_mgr_lrn_digest_notification_register(pd_sess_hdl_t sess_hdl, uint32_t dev_id, uint32_t digest_hdl,
                                                      pd_callback_t cb, void *cookie)
{
  return serve_digest(__func__, dev_id, digest_hdl, [&](device_services &services) -> pd_status_t {
    if (cb == nullptr) return STANDIN_BAD_ARGUMENT;
    services.digest_session = sess_hdl;
    services.digest = {cb, cookie};
    return success;
  });
}

pd_status_t pipe_mgr_lrn_digest_notification_deregister(pd_sess_hdl_t, uint32_t dev_id, uint32_t digest_hdl)
{
  return serve_digest(__func__, dev_id, digest_hdl, [](device_services &services) {
    const bool was_registered = services.digest.function != nullptr;
    services.digest = {};
    return require(was_registered, STANDIN_NOT_ENABLED);
  });
}

pd_status_t pipe_mgr_flow_lrn_notify_ack(pd_sess_hdl_t, uint32_t digest_hdl, void *digest_msg)
{
  if (const pd_status_t refused = announce(__func__, digest_hdl)) return refused;
  if (!is_digest(digest_hdl)) return STANDIN_NO_OBJECT;
  // The pointer is compared only, never followed: it may be of a message that went before.
  for (std::uint32_t dev_id = 0; dev_id < most_devices; ++dev_id) {
    const pd_status_t status = on_device(dev_id, [&](device &dev) {
      const auto gone =
          std::erase_if(dev.services.digest_messages, [&](const auto &block) { return &block->message == digest_msg; });
      return require(gone != 0, STANDIN_BAD_ARGUMENT);
    });
    if (status == success) return success;
  }
  return STANDIN_BAD_ARGUMENT;
}

pd_status_t pipe_mgr_flow_lrn_set_timeout(pd_sess_hdl_t, uint32_t dev_id, uint32_t timeout)
{
  return serve(__func__, dev_id, 0, [&](device &dev) {
    dev.services.learning_timeout = timeout;
    return success;
  });
}

pd_status_t standin_digest_deliver(uint32_t dev_id, uint32_t digest_hdl, const uint8_t *entries, uint32_t entry_count)
{
  return on_device(dev_id, [&](device &dev) -> pd_status_t {
    device_services &services = dev.services;
    const rows::digest_info *const row = find_row(rows::digests, digest_hdl);
    if (row == nullptr) return STANDIN_NO_OBJECT;
    if (entries == nullptr || entry_count == 0) return STANDIN_BAD_ARGUMENT;
    if (services.digest.function == nullptr) return STANDIN_NOT_ENABLED;
    auto block = std::make_unique<digest_block>();
    block->entries.assign(entries, entries + std::size_t{entry_count} * row->entry_bytes);
    block->message = {dev.id, digest_hdl, row->entry_bytes, entry_count, block->entries.data()};
    dev.notify<standin_digest_cb_t>(services.digest, services.digest_session, &block->message);
    services.digest_messages.push_back(std::move(block));
    return success;
  });
}

size_t standin_digest_unacknowledged(uint32_t dev_id)
{
  std::size_t count = 0;
  on_device(dev_id, [&](const device &dev) {
    count = dev.services.digest_messages.size();
    return success;
  });
  return count;
}

pd_status_t standin_learning_timeout(uint32_t dev_id, uint32_t *timeout)
{
  return on_device(dev_id, [&](const device &dev) -> pd_status_t {
    if (timeout == nullptr) return STANDIN_BAD_ARGUMENT;
    *timeout = dev.services.learning_timeout;
    return success;
  });
}
