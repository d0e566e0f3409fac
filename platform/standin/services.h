// What a device holds beside tables and resources: hash calculations, value sets and digests.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <span>
#include <vector>

#include "match_table.h"
#include "pipeline_rows.h"
#include "slot_pool.h"
#include "tarvex_platform/driver.h"
#include "tarvex_standin/standin.h"

namespace tarvex::standin {

/// The row with a handle, or null.
template <class Row>
const Row *find_row(std::span<const Row> rows, std::uint32_t handle)
{
  for (const Row &each : rows)
    if (each.handle == handle) return &each;
  return nullptr;
}

inline bool is_digest(std::uint32_t handle) { return find_row(rows::digests, handle) != nullptr; }

struct hash_setting {
  std::uint32_t input = 0;      // 0: the first of the calculation
  std::uint32_t algorithm = 0;  // 0: the first
  std::uint64_t seed = 0;
};

struct value_set_entry {
  std::uint32_t value = 0;
  std::uint32_t mask = 0;
};

/// A digest message on its way, with the entries that it points at.
struct digest_block {
  standin_digest_msg_t message{};
  std::vector<std::uint8_t> entries;
};

struct device_services {
  std::map<std::uint32_t, hash_setting> hashes;  // by calculation
  slot_map<value_set_entry> value_set;
  std::map<std::pair<std::uint32_t, std::uint32_t>, std::uint32_t> value_set_properties;  // by property and argument
  pd_sess_hdl_t digest_session = 0;
  client_callback digest;
  std::vector<std::unique_ptr<digest_block>> digest_messages;
  std::uint32_t learning_timeout = 0;
};

}  // namespace tarvex::standin
