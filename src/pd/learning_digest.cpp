// The learning digest: subscription, and where the fields of an entry stand. The reports themselves pass the library
// by.
//
// SPDX-License-Identifier: Apache-2.0
#include "tarvex_pd/learning_digest.h"

#include <cstring>

#include "call_conventions.h"
#include "tarvex_platform/driver.h"

namespace tarvex::pd {

namespace {

constexpr std::uint32_t digest_handle = 0x21000084;
constexpr char the_digest[] = "macLearningDigest";

struct digest_field {
  const char *name;
  std::uint32_t offset;
  std::uint32_t size;
};

/// Entries are packed: no field is aligned to its size.
constexpr digest_field digest_fields[] = {
    {"ingMd_smacStation", 0, 4},
    {"ingMd_ingL2Domain", 4, 2},
    {"ingMd_ingL2Aintf", 6, 4},
    {"ingMd_smacOui", 10, 4},
};

bool is_the_digest(const char *name) { return name != nullptr && std::strcmp(name, the_digest) == 0; }

}  // namespace
}  // namespace tarvex::pd

using namespace tarvex::pd;

pd_status_t p4_pd_tarvex_switch_macLearningDigest_register(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, pd_callback_t cb,
                                                           void *cookie)
{
  return pipe_mgr_lrn_digest_notification_register(sess_hdl, low_byte(dev_id), digest_handle, cb, cookie);
}

pd_status_t p4_pd_tarvex_switch_macLearningDigest_deregister(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id)
{
  return pipe_mgr_lrn_digest_notification_deregister(sess_hdl, low_byte(dev_id), digest_handle);
}

pd_status_t p4_pd_tarvex_switch_macLearningDigest_notify_ack(pd_sess_hdl_t sess_hdl, void *digest_msg)
{
  return pipe_mgr_flow_lrn_notify_ack(sess_hdl, digest_handle, digest_msg);
}

pd_status_t p4_pd_tarvex_switch_set_learning_timeout(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, uint32_t timeout)
{
  return pipe_mgr_flow_lrn_set_timeout(sess_hdl, low_byte(dev_id), timeout);
}

uint32_t p4_pd_tarvex_switch_get_digest_entry_size(const char *digest_name)
{
  return is_the_digest(digest_name) ? P4_PD_TARVEX_SWITCH_MAC_LEARNING_DIGEST_ENTRY_SIZE : 0;
}

void *p4_pd_tarvex_switch_get_digest_entry_field(void *entry, const char *digest_name, const char *field_name,
                                                 uint32_t *size)
{
  *size = 0;
  if (!is_the_digest(digest_name) || field_name == nullptr) return nullptr;
  for (const digest_field &field : digest_fields) {
    if (std::strcmp(field_name, field.name) != 0) continue;
    *size = field.size;
    return static_cast<std::uint8_t *>(entry) + field.offset;
  }
  return nullptr;
}
