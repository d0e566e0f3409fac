// Rows as the text face sees them: one for each line of a schema, masks and prefix lengths included, and how an entry
// of each table is read. Unlike the descriptors of the typed face they are looked at while running. Generated from the
// catalogue.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "pipeline_names.h"
#include "record_sizes.h"
#include "tarvex_pd/actions.h"
#include "tarvex_pd/types.h"

namespace tarvex::pd {

/// A key field, its mask or its prefix length, or a parameter. Without pointers, so that nothing of the many rows has
/// to be relocated when the library is loaded.
struct text_row {
  std::uint32_t live;    // live bits, or the place in wide_live_bits of a 16-byte member
  std::uint16_t name;    // place of the member's name in member_names
  std::uint16_t member;  // its offset
  std::uint8_t name_size;
  std::uint8_t member_size;
  std::uint8_t digits;  // hexadecimal digits that the width takes
  bool partial;         // some bits of the width are not live
};

/// Names of all members, one behind the other. Generated.
extern const char member_names[];
/// Live bits of 16-byte members, in their byte order. Generated.
extern const std::uint8_t wide_live_bits[][16];

inline constexpr std::uint8_t wide_member = 16;

inline std::string_view name_of(const text_row &row) { return {member_names + row.name, row.name_size}; }

struct action_text {
  std::string_view full_name;
  std::string_view schema;
  const text_row *rows;
  std::size_t row_count;

  std::string_view name() const
  {
    return {full_name.data() + exported_prefix.size(), full_name.size() - exported_prefix.size()};
  }
};

/// An entry as it was read or decoded, of whatever table. Of an indirect table's entry the action is not set.
struct entry_contents {
  alignas(std::uint32_t) std::uint8_t key[largest_key_record];
  std::uint32_t priority = 0;
  plcmt_action_t action;
  pd_mbr_hdl_t mbr_hdl = 0;
  pd_grp_hdl_t grp_hdl = 0;
  std::uint8_t is_member = 0;
  std::uint8_t is_group = 0;
  std::uint8_t no_key = 0;
};

/// The key as the structure of its table.
template <class Key>
Key *key_in(entry_contents &entry)
{
  static_assert(sizeof(Key) <= sizeof entry.key && alignof(Key) <= alignof(entry_contents));
  return reinterpret_cast<Key *>(entry.key);
}

// A table's own exported functions behind one signature.
using read_function = pd_status_t (*)(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, pd_entry_hdl_t entry_hdl,
                                      pd_flag8_t read_from_hw, entry_contents &to);
using decode_function = pd_status_t (*)(const void *plcmt_data, entry_contents &to);

struct table_text {
  std::string_view name;
  std::uint32_t handle;
  bool keyed;
  bool indirect;
  bool priority;
  std::string_view key_schema;
  const text_row *rows;
  std::size_t row_count;
  const action_text *const *actions;  // order of their names; none of an indirect table
  std::size_t action_count;
  read_function read;
  decode_function decode;
};

struct profile_text {
  std::string_view name;
  std::uint32_t handle;               // of its action data table
  const action_text *const *actions;  // order of their names
  std::size_t action_count;
  pd_status_t (*decode)(const void *plcmt_data, plcmt_action_t *action);
};

// Generated.
extern const std::uint32_t first_table_handle;
/// By handle, from first_table_handle on; null where no table has the handle.
extern const std::span<const table_text *const> table_texts;
/// By enumeration value.
extern const std::span<const action_text *const> action_texts;
/// In the order of the profiles' states.
extern const std::span<const profile_text *const> profile_texts;

/// The table of a handle, null for a handle of none.
inline const table_text *find_table_text(std::uint32_t tbl_hdl)
{
  const std::uint32_t at = tbl_hdl - first_table_handle;
  return at < table_texts.size() ? table_texts[at] : nullptr;
}

/// The profile of an action data table, null for a handle of none.
const profile_text *find_profile_text(std::uint32_t adt_hdl);

/// The action that was read or decoded: reading stops on one that the table or profile does not have.
inline const action_text &text_of(const plcmt_action_t &action) { return *action_texts[action.action]; }

}  // namespace tarvex::pd
