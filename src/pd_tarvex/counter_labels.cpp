// SPDX-License-Identifier: Apache-2.0
#include "counter_labels.h"

#include <algorithm>

#include "text_writer.h"

namespace tarvex::pd {

namespace {

std::uint32_t number_at(const std::uint8_t *at, unsigned size)
{
  if (size == 1) return *at;
  if (size == 2) {
    std::uint16_t value;
    std::memcpy(&value, at, sizeof value);
    return value;
  }
  std::uint32_t value;
  std::memcpy(&value, at, sizeof value);
  return value;
}

void put_masked_bytes(text_writer &to, const std::uint8_t *bytes, const std::uint8_t *mask)
{
  std::uint8_t masked[wide_member];
  for (unsigned i = 0; i < wide_member; ++i) masked[i] = bytes[i] & mask[i];
  to.small_bytes(masked, wide_member).character(' ');
}

/// Every piece ends in a blank.
void put_piece(text_writer &to, const label_piece &piece, const std::uint8_t *key)
{
  if (piece.form == label_form::bytes)
    return put_masked_bytes(to.text(piece.text), key + piece.member, key + piece.mask);
  const std::uint32_t value = number_at(key + piece.member, piece.member_size) & piece.cut;
  const std::uint32_t *const end = piece.values + piece.value_count;
  const bool is_listed = std::find(piece.values, end, value) != end;
  switch (piece.form) {
    case label_form::flag:
      if ((value & number_at(key + piece.mask, piece.member_size)) != 0) to.text(piece.text);
      break;
    case label_form::words:
      if (is_listed) to.text(piece.text);
      break;
    case label_form::decimal:
      if (!is_listed) to.text(piece.text).decimal(static_cast<std::int32_t>(value), piece.width).character(' ');
      break;
    default:
      if (!is_listed) to.text(piece.text).text("0x").natural_hex(value).character(' ');
  }
}

}  // namespace

std::uint32_t counter_label(const counter_label_row &label, const void *match_spec, char *buf)
{
  text_writer to(buf);
  for (const label_piece &piece : label.pieces) put_piece(to, piece, static_cast<const std::uint8_t *>(match_spec));
  return to.end();
}

std::uint32_t entry_counter_label(const counter_label_row &label, pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id,
                                  pd_entry_hdl_t entry_hdl, char *buf)
{
  entry_contents entry;
  if (label.table->read(sess_hdl, dev_id, entry_hdl, 1, entry) != BF_SUCCESS || entry.no_key != 0) return 0;
  return counter_label(label, entry.key, buf);
}

}  // namespace tarvex::pd
