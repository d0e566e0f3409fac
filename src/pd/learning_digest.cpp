// The learning digest: subscription, and where the fields of an entry stand. The reports themselves pass the library
// by.
//
// SPDX-License-Identifier: Apache-2.0
#include <cstring>

#include "call_conventions.h"
#include "services.h"
#include "tarvex_platform/driver.h"

namespace tarvex::pd {

namespace {

/// The row of a name, null for none.
template <class Row>
const Row *find_by_name(std::span<const Row> rows, const char *name)
{
  if (name == nullptr) return nullptr;
  for (const Row &row : rows)
    if (std::strcmp(name, row.name) == 0) return &row;
  return nullptr;
}

}  // namespace

pd_status_t digest_register(std::uint32_t digest_hdl, pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, pd_callback_t cb,
                            void *cookie)
{
  return pipe_mgr_lrn_digest_notification_register(sess_hdl, low_byte(dev_id), digest_hdl, cb, cookie);
}

pd_status_t digest_deregister(std::uint32_t digest_hdl, pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id)
{
  return pipe_mgr_lrn_digest_notification_deregister(sess_hdl, low_byte(dev_id), digest_hdl);
}

pd_status_t digest_notify_ack(std::uint32_t digest_hdl, pd_sess_hdl_t sess_hdl, void *digest_msg)
{
  return pipe_mgr_flow_lrn_notify_ack(sess_hdl, digest_hdl, digest_msg);
}

pd_status_t set_learning_timeout(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, std::uint32_t timeout)
{
  return pipe_mgr_flow_lrn_set_timeout(sess_hdl, low_byte(dev_id), timeout);
}

std::uint32_t get_digest_entry_size(const char *digest_name)
{
  const digest_row *digest = find_by_name(digests, digest_name);
  return digest == nullptr ? 0 : digest->entry_size;
}

void *get_digest_entry_field(void *entry, const char *digest_name, const char *field_name, std::uint32_t *size)
{
  *size = 0;
  const digest_row *digest = find_by_name(digests, digest_name);
  if (digest == nullptr) return nullptr;
  const digest_field_row *field = find_by_name(digest->fields, field_name);
  if (field == nullptr) return nullptr;
  *size = field->size;
  return static_cast<std::uint8_t *>(entry) + field->offset;
}

}  // namespace tarvex::pd
