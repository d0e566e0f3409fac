// Checks of key fields and of the tables' kinds.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "checks.h"
#include "packed_bytes.h"

namespace catalogue {

namespace {

std::string_view kind_word(table_kind kind)
{
  switch (kind) {
    case table_kind::exact: return "exact";
    case table_kind::ternary: return "ternary";
    case table_kind::lpm: return "lpm";
    default: return "keyless";
  }
}

bool has_match(const table &t, match_kind match)
{
  return std::any_of(t.fields.begin(), t.fields.end(), [&](const field &f) { return f.match == match; });
}

table_kind kind_of_fields(const table &t)
{
  if (has_match(t, match_kind::lpm)) return table_kind::lpm;
  return has_match(t, match_kind::ternary) ? table_kind::ternary : table_kind::exact;
}

void check_kind(const table &t, const subject &about)
{
  const table_kind made = kind_of_fields(t);
  if (t.fields.empty()) {
    about.error("fields", "a keyed table has fields; without a key its 'kind' is 'keyless'");
  } else if (t.kind != made) {
    about.error("kind", "'kind' is '" + std::string(kind_word(t.kind)) + "', but its fields make it '" +
                            std::string(kind_word(made)) + "'");
  }
}

void check_lpm_field(const table &t, const field &f, const subject &s)
{
  const auto first =
      std::find_if(t.fields.begin(), t.fields.end(), [](const field &g) { return g.match == match_kind::lpm; });
  if (&f != &*first) s.error("match", "a second prefix; an lpm table has one lpm field");
  if (f.bits != 32 && f.bits != 128) s.error("bits", "a prefix is taken of 32 or 128 bits");
}

void check_partition_field(const table &t, const field &f, const subject &s)
{
  if (!has_match(t, match_kind::lpm)) s.error("key", "only an lpm table takes a partition index");
  if (&f != &t.fields.front()) s.error("key", "the partition index is the first field, and the only one of its sort");
  if (f.match != match_kind::exact) s.error("match", "a partition index matches exactly");
  if (f.bits != 16) s.error("bits", "a partition index has 16 bits");
}

void check_field(const table &t, const field &f, const subject &s)
{
  if (f.match == match_kind::ternary && has_match(t, match_kind::lpm)) {
    s.error("match", "a ternary field cannot stand beside an lpm field");
  }
  if (f.match == match_kind::lpm) check_lpm_field(t, f, s);
  if (f.key.partition) check_partition_field(t, f, s);
  if (!f.header.empty() && f.bits != 1) s.error("bits", "the validity of a header is one bit");
}

}  // namespace

void check_keys(const model &m, diagnostics &diag)
{
  for (const table &t : m.tables) {
    if (!t.keyed() || !all_sound(t, t.fields)) continue;
    const subject about(diag, "table", t);
    check_kind(t, about);
    packed_bytes key("key");
    for (const field &f : t.fields) {
      const subject s(about, "field", f);
      key.add(s, f, f.key);
      check_field(t, f, s);
    }
    check_sum(about, "key_bits", t.key_bits, key.bits(), "fields");
    check_sum(about, "key_bytes", t.key_bytes, key.bytes(), "fields");
  }
}

}  // namespace catalogue
