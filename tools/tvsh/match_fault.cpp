// A match is what it says where it is the same once everything is cleared that the switch ignores.
//
// SPDX-License-Identifier: Apache-2.0
#include "match_fault.h"

#include <algorithm>

#include "records.h"
#include "shell_error.h"

namespace tarvex::shell {

namespace {

struct match {
  wide_number value = 0;
  wide_number mask = 0;  // of a field without a mask: what it is compared under
  unsigned length = 0;   // of a prefix

  bool operator==(const match &) const = default;
};

wide_number prefix_mask(const shown_field &field, unsigned length)
{
  return all_ones(field.bits) & ~all_ones(field.bits - std::min(length, field.bits));
}

match as_written(const shown_field &field, const std::uint8_t *record)
{
  match what{read_value(field, record), all_ones(field.bits), 0};
  if (field.has_mask()) what.mask = read_mask(field, record);
  if (field.has_prefix()) {
    what.length = read_prefix_length(field, record);
    what.mask = prefix_mask(field, what.length);
  }
  return what;
}

/// A full mask says that the whole field counts, whatever the switch looks at of it.
match as_taken(const shown_field &field, match what)
{
  const wide_number live = field.live & all_ones(field.bits);
  if (field.has_prefix()) {
    unsigned unseen = 0;  // bits below the lowest that counts
    while (unseen < field.bits && (live >> unseen & 1) == 0) ++unseen;
    what.length = std::min(what.length, field.bits - unseen);
    what.mask = prefix_mask(field, what.length);
  } else if (field.has_mask() && what.mask != all_ones(field.bits)) {
    what.mask &= live;
  }
  what.value &= what.mask & live;
  return what;
}

/// Bits of a field as its values are shown; those of a number in hexadecimal.
std::string bits_text(const shown_field &field, wide_number bits)
{
  std::string text;
  append_value(text, field, bits, field.display == display_kind::number);
  return text;
}

std::string match_text(const shown_field &field, const match &what)
{
  record_memory record;
  write_value(field, what.value, record.data());
  if (field.has_mask()) write_mask(field, what.mask, record.data());
  if (field.has_prefix()) write_prefix_length(field, what.length, record.data());
  std::string text;
  append_match(text, field, record.data(), false);
  return text;
}

}  // namespace

std::string match_fault(const shown_field &field, const std::uint8_t *record, std::string_view text)
{
  const match written = as_written(field, record);
  const match taken = as_taken(field, written);
  if (taken == written) return {};
  std::string fault = "field " + described(field) + ": " + std::string(text);
  const bool unseen = (written.value & ~field.live) != 0 || taken.mask != written.mask;
  if (unseen) {
    fault += " has bits that the switch ignores: it looks at " + bits_text(field, field.live & all_ones(field.bits));
  } else if (field.has_prefix()) {
    fault += " has bits beyond its prefix length";
  } else {
    fault += " has bits outside its mask";
  }
  return fault + "; it would match " + match_text(field, taken) + ". Write that, or add --force";
}

void parse_meant_match(const shown_field &field, std::string_view text, std::uint8_t *record, value_source from)
{
  parse_match(field, text, record, from);
  if (from == value_source::read_back) return;
  const std::string fault = match_fault(field, record, text);
  if (!fault.empty()) throw usage_error(fault);
}

std::string why_equal(const shown_field &field, const std::uint8_t *record, const std::uint8_t *other)
{
  const match left = as_written(field, record);
  const match right = as_written(field, other);
  if (left == right) return {};
  const std::string assigned = field.name + '=';
  std::string why = assigned + match_text(field, left) + " and " + assigned + match_text(field, right) +
                    " both match " + match_text(field, as_taken(field, left)) + ", as the switch ";
  const bool unseen = ((left.value ^ right.value) & ~field.live) != 0 || (left.mask & right.mask & ~field.live) != 0;
  if (unseen) return why + "looks at " + bits_text(field, field.live & all_ones(field.bits));
  return why + "ignores bits outside the " + (field.has_prefix() ? "prefix" : "mask");
}

bool needs_force(std::span<const shown_field> fields, const std::uint8_t *record)
{
  return std::ranges::any_of(fields, [&](const shown_field &field) {
    const match written = as_written(field, record);
    return !(as_taken(field, written) == written);
  });
}

}  // namespace tarvex::shell
