// The catalogue as the compiler holds it: rows as they were read, each with the place it stands at, and what follows
// from them (layouts of the caller's structures, byte positions, enumeration).
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "kinds.h"

namespace catalogue {

/// Where something stands in a catalogue file.
struct position {
  std::string file;
  std::uint32_t line = 0;
  std::uint32_t column = 0;
};

/// What every row has: its own place, the places of its values, and whether all of it could be read.
struct origin {
  position at;
  std::map<std::string, position, std::less<>> values;
  bool sound = false;

  /// Place of a value, or of the row where it has no such value.
  const position &of(std::string_view key) const;
};

/// Whether a row and all rows within it could be read.
template <class Row>
bool all_sound(const origin &owner, const std::vector<Row> &rows)
{
  return owner.sound && std::all_of(rows.begin(), rows.end(), [](const origin &row) { return row.sound; });
}

using tarvex::match_kind;
using tarvex::resource_form;
using tarvex::resource_kind;
using tarvex::snapshot_direction;
using tarvex::table_kind;
using tarvex::word_of;

/// Member type of the caller's structures.
enum class storage { u8, u16, u32, bytes16 };

/// A byte position in key or action data; `partition` fields travel beside the key.
struct byte_range {
  unsigned first = 0;
  unsigned count = 0;
  bool partition = false;
};

/// One key field.
struct field : origin {
  std::string name;
  std::string short_name;
  storage type = storage::u8;
  unsigned bits = 0;
  bool live_all = true;
  std::array<std::uint8_t, 16> live{};  // most significant byte first, right-aligned; all ones of `bits` if live_all
  match_kind match = match_kind::exact;
  byte_range key;
  std::string display;   // empty for none
  unsigned room = 0;     // bytes that the structure holds before the member
  std::string low_half;  // of the upper half of a MAC address: the field that is the lower one
  std::string header;    // of a validity bit: the header that it is for

  // Follows from the rows: offsets in the caller's structure.
  unsigned offset = 0;
  unsigned companion_offset = 0;  // of `{name}_mask` or `{name}_prefix_length`
};

/// One parameter of an action.
struct parameter : origin {
  std::string name;
  storage type = storage::u8;
  unsigned bits = 0;
  byte_range data;
  std::string display;
  unsigned room = 0;
  std::string low_half;

  unsigned offset = 0;
  bool resource_index = false;  // travels in res_index, its data bytes stay 0
};

struct resource_use : origin {
  resource_form form = resource_form::direct_counter;
  std::uint32_t handle = 0;
  std::string param;  // of an indexed one
};

/// An action as one table or profile uses it.
struct action_use : origin {
  std::string name;
  unsigned enum_value = 0;
  std::uint32_t handle = 0;
  bool is_default = false;
  unsigned data_bits = 0;
  unsigned data_bytes = 0;
  std::vector<resource_use> resources;
  std::size_t action = 0;  // index into model::actions, which is the enumeration value
};

/// An action by name: its parameters are the same wherever it is used.
struct action : origin {
  std::string name;
  std::string about;  // what it is for, a sentence; may be missing
  std::vector<parameter> params;
  unsigned record_bytes = 0;  // stated length of the structure, 0 where it follows from the members

  unsigned data_bits = 0;
  unsigned data_bytes = 0;
  unsigned record_size = 0;
  std::size_t group = 0;                       // group that tells it
  std::vector<std::uint32_t> index_resources;  // of the index parameter, in the order of the resource list
};

/// Action data that a read offers the driver, whatever the table.
inline constexpr unsigned read_data_bytes = 28;

enum class label_form { hex, decimal, flag, words, bytes };

/// A piece of the label of a counter: text, and what it shows of a field.
struct label_piece : origin {
  std::string text;
  std::string field;
  label_form form = label_form::hex;
  std::uint32_t cut = 0;              // bits of the field that count
  unsigned width = 0;                 // of a decimal number
  std::vector<std::uint32_t> values;  // words: the value they stand for; numbers: those that are not shown

  /// Key of the row that names the field.
  std::string_view field_key() const { return form == label_form::flag ? "flag" : "field"; }
};

struct table : origin {
  std::string name;
  std::string about;  // what it is for, a sentence; may be missing
  std::uint32_t handle = 0;
  table_kind kind = table_kind::keyless;
  unsigned key_bits = 0;
  unsigned key_bytes = 0;
  bool idle_time = false;
  std::string profile;                    // of an indirect table
  unsigned record_bytes = 0;              // stated length of the key structure, 0 where it follows from the members
  std::vector<std::string> record_order;  // order of the structure's members where it is not the key's
  std::vector<field> fields;              // key order
  std::vector<action_use> actions;        // handle order; none for an indirect table
  std::vector<label_piece> label;         // of an entry's counter; empty for a table without one

  std::size_t group = 0;
  unsigned record_size = 0;
  std::vector<std::size_t> members;  // fields in structure order

  bool keyed() const { return kind != table_kind::keyless; }
  bool indirect() const { return !profile.empty(); }
  bool labelled() const { return !label.empty(); }
  const field *find_field(const std::string &wanted) const;
  /// Bits of its field that a piece shows, which is the largest number that it shows.
  std::uint32_t cut_of(const label_piece &p) const;
  bool priority() const { return kind == table_kind::ternary; }
};

struct profile : origin {
  std::string name;
  std::uint32_t action_data_table = 0;
  std::uint32_t selector_table = 0;
  std::string table;
  std::vector<action_use> actions;
};

struct resource : origin {
  std::string name;
  std::uint32_t handle = 0;
  resource_kind kind = resource_kind::counter;
  bool direct = false;
  std::string table;  // empty where no table uses it
};

/// A hash calculation. Its input handles are consecutive: the whole field list first, then its subsets.
struct hash_calculation : origin {
  std::string name;
  std::uint32_t handle = 0;
  std::uint32_t first_input = 0;
  unsigned fields = 0;
  std::vector<std::uint32_t> common;      // common number of each field
  std::vector<std::uint32_t> algorithms;  // handles, in the order of the numbers by which callers choose
};

/// A field of a digest's entries; its bytes are the driver's.
struct digest_field : origin {
  std::string name;
  std::string short_name;
  std::string word;  // by which a command of the shell gives it
  unsigned bits = 0;
  unsigned bytes = 0;
  std::string low_half;

  unsigned offset = 0;
};

/// What the data plane reports by itself. Entries are packed: no field is aligned to its size.
struct digest : origin {
  std::string name;
  std::uint32_t handle = 0;
  unsigned entry_bytes = 0;
  std::vector<digest_field> fields;  // in their order in an entry
};

/// A parser value set.
struct value_set : origin {
  std::string name;
  std::uint32_t handle = 0;
};

/// A field of a snapshot, in the trigger records and in the captures.
struct snapshot_field : origin {
  std::string name;
  unsigned offset = 0;
  unsigned size = 0;

  /// Bytes that it takes: one of 3 bytes is held in a word.
  unsigned slot() const { return size == 3 ? 4 : size; }
};

/// The fields of the snapshots of one direction, packed in this order.
struct snapshot_layout : origin {
  std::string name;
  snapshot_direction direction = snapshot_direction::ingress;
  unsigned bytes = 0;
  std::vector<snapshot_field> fields;
};

/// What the library and everything in it is called.
struct pipeline : origin {
  std::string name;     // "acme": exported names begin with "p4_pd_acme_"
  std::string profile;  // the compiled variant
  std::string library;  // file name without "lib" and ".so"
  std::string client;   // name under which the driver knows the library
  std::string sources;  // what failed assertions name as the folder of the sources
};

/// One catalogue file with tables.
struct group {
  std::string file;  // "fib" of fib.toml
  std::string title;
};

struct model {
  catalogue::pipeline pipeline;
  std::vector<group> groups;                      // in the order of their first table's handle
  std::vector<table> tables;                      // handle order
  std::vector<action> actions;                    // enumeration order
  std::vector<profile> profiles;                  // order of their state objects
  std::vector<resource> resources;                // handle order
  std::vector<hash_calculation> hashes;           // handle order
  std::vector<snapshot_layout> snapshot_layouts;  // ingress, then egress
  std::vector<digest> digests;                    // one at most
  std::vector<value_set> value_sets;              // one at most

  const table *find_table(const std::string &name) const;
  const action *find_action(const std::string &name) const;
  const profile *find_profile(const std::string &name) const;
  const resource *find_resource(std::uint32_t handle) const;
  const snapshot_layout *find_snapshot_layout(snapshot_direction direction) const;
};

inline unsigned storage_size(storage s)
{
  switch (s) {
    case storage::u8: return 1;
    case storage::u16: return 2;
    case storage::u32: return 4;
    default: return 16;
  }
}
inline unsigned storage_align(storage s) { return s == storage::bytes16 ? 1 : storage_size(s); }

}  // namespace catalogue
