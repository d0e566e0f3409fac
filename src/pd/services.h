// Learning digests and parser value sets: each operation is one driver call with the handle of a row.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <span>

#include "plain_functions.h"

namespace tarvex::pd {

struct digest_field_row {
  const char *name;
  std::uint32_t offset;
  std::uint32_t size;
};

/// Entries are packed: no field is aligned to its size.
struct digest_row {
  const char *name;
  std::uint32_t entry_size;
  std::span<const digest_field_row> fields;
};

/// Generated.
extern const std::span<const digest_row> digests;

pd_status_t digest_register(std::uint32_t digest_hdl, pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, pd_callback_t cb,
                            void *cookie);
pd_status_t digest_deregister(std::uint32_t digest_hdl, pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id);
pd_status_t digest_notify_ack(std::uint32_t digest_hdl, pd_sess_hdl_t sess_hdl, void *digest_msg);

// The device goes through untouched.
pd_status_t value_set_set_property(std::uint32_t set_hdl, pd_sess_hdl_t sess_hdl, std::uint32_t dev_id,
                                   std::uint32_t property, std::uint32_t value, std::uint32_t argument);
/// The driver writes to a word of its own; the caller's holds 0xffffffff after a failure.
pd_status_t value_set_get_property(std::uint32_t set_hdl, pd_sess_hdl_t sess_hdl, std::uint32_t dev_id,
                                   std::uint32_t property, std::uint32_t *value, std::uint32_t argument);
pd_status_t value_set_entry_add(std::uint32_t set_hdl, pd_sess_hdl_t sess_hdl, pd_parser_tgt_t tgt,
                                std::uint32_t parser_value, std::uint32_t parser_value_mask,
                                std::uint32_t *pvs_entry_hdl);
pd_status_t value_set_entry_modify(std::uint32_t set_hdl, pd_sess_hdl_t sess_hdl, std::uint32_t dev_id,
                                   std::uint32_t pvs_entry_hdl, std::uint32_t parser_value,
                                   std::uint32_t parser_value_mask);
pd_status_t value_set_entry_delete(std::uint32_t set_hdl, pd_sess_hdl_t sess_hdl, std::uint32_t dev_id,
                                   std::uint32_t pvs_entry_hdl);

}  // namespace tarvex::pd
