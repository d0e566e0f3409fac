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
#include "slot_pool.h"
#include "tarvex_platform/driver.h"
#include "tarvex_standin/standin.h"

namespace tarvex::standin {

/// A dynamic hash calculation of the pipeline. Its field lists have consecutive handles; it starts with the first.
struct hash_row {
  std::uint32_t handle;
  std::uint32_t first_input;
  std::uint32_t input_count;
};

inline constexpr std::uint32_t hash_algorithm = 0x23000003;

inline constexpr hash_row hash_rows[] = {
    {0x22000004, 0x21000004, 7}, {0x22000005, 0x2100000c, 15}, {0x22000006, 0x2100001c, 31},
    {0x22000007, 0x2100003c, 7}, {0x22000008, 0x21000044, 15}, {0x22000009, 0x21000054, 7},
    {0x2200000a, 0x2100005c, 7}, {0x2200000b, 0x21000064, 31},
};

inline constexpr std::uint32_t digest_handle = 0x21000084;
inline constexpr std::uint32_t digest_entry_bytes = 14;
inline constexpr std::uint32_t value_set_handle = 0x1ff;

struct hash_setting {
  std::uint32_t input = 0;  // 0: the first of the calculation
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
