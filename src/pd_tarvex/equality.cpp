// SPDX-License-Identifier: Apache-2.0
#include "equality.h"

#include "value_text.h"

namespace tarvex::pd {

namespace {

bool same(const text_row &row, const void *a, const void *b)
{
  if (row.member_size != wide_member) return live_value(row, a) == live_value(row, b);
  const auto *bytes_a = static_cast<const std::uint8_t *>(a) + row.member;
  const auto *bytes_b = static_cast<const std::uint8_t *>(b) + row.member;
  const std::uint8_t *const live_bits = wide_live_bits[row.live];
  for (unsigned i = 0; i < 16; ++i)
    if (((bytes_a[i] ^ bytes_b[i]) & live_bits[i]) != 0) return false;
  return true;
}

std::uint8_t all_same(const text_row *rows, std::size_t count, const void *a, const void *b)
{
  for (std::size_t i = 0; i < count; ++i)
    if (!same(rows[i], a, b)) return 0;
  return 1;
}

}  // namespace

std::uint8_t match_specs_are_equal(const table_text &table, const void *ms1, const void *ms2)
{
  return all_same(table.rows, table.row_count, ms1, ms2);
}

std::uint8_t action_specs_are_equal(const action_text &action, const void *spec1, const void *spec2)
{
  return all_same(action.rows, action.row_count, spec1, spec2);
}

}  // namespace tarvex::pd
