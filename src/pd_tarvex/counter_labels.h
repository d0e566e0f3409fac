// Labels for counters: an entry's key in words that a person reads, for the tables with a counter to each entry.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>

#include "text_rows.h"

namespace tarvex::pd {

/// hex and decimal show the field's value, unless it is one of `values`; flag and words are text alone, shown where the
/// value and its mask have the bits, or where the value is the one of `values`; bytes shows an address under its mask.
enum class label_form : std::uint8_t { hex, decimal, flag, words, bytes };

struct label_piece {
  std::string_view text;
  std::uint16_t member;  // offset of the field in the key structure
  std::uint16_t mask;    // of its mask
  std::uint8_t member_size;
  label_form form;
  std::uint8_t width;  // of a decimal number
  std::uint8_t value_count;
  std::uint32_t cut;  // bits of the value that count
  std::uint32_t values[3];
};

struct counter_label_row {
  const table_text *table;
  std::span<const label_piece> pieces;
};

/// Generated, in the order of the tables' handles.
extern const std::span<const counter_label_row *const> counter_labels;

/// The length without the NUL.
std::uint32_t counter_label(const counter_label_row &label, const void *match_spec, char *buf);

/// Reads the entry from the hardware. 0 with the buffer untouched if it cannot be read or has no key.
std::uint32_t entry_counter_label(const counter_label_row &label, pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id,
                                  pd_entry_hdl_t entry_hdl, char *buf);

}  // namespace tarvex::pd
