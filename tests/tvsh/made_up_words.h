// Made-up words for the fields of any row, each field with a value of its own.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "fields.h"
#include "switch_state.h"
#include "value_text.h"

namespace tarvex::shell {

/// A value that hardly any other field of the row has, as wide as the field.
inline std::string own_value(const shown_field &field, unsigned number)
{
  std::string text;
  const wide_number spread = wide_number{0x9e3779b97f4a7c15} << 64 | 0xf39cc0605cedc835;
  append_value(text, field, (spread * (number + 1) >> (128 - field.bits)) & all_ones(field.bits), false);
  return text;
}

inline std::string words_of(std::span<const shown_field> fields, unsigned number)
{
  std::string text;
  for (const shown_field &field : fields) {
    text += ' ' + field.name + '=' + own_value(field, number);
    ++number;
    if (field.has_prefix()) text += '/' + std::to_string(field.bits);
  }
  return text;
}

inline std::string meter_words_of(const use_info &use)
{
  return has_meter(use) ? " cir=1 cburst=2 pir=3 pburst=4" : "";
}

/// The key of a table's entry, with a priority where it has one. The switch ignores some bits of its values.
inline std::string key_words_of(const table_info &table, unsigned number)
{
  return words_of(key_fields(table), number) +
         (table.kind == calls::table_kind::ternary ? " priority=" + std::to_string(number) : "") + " --force";
}

}  // namespace tarvex::shell
