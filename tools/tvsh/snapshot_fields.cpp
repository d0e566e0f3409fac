// Asked of the library once for each direction.
//
// SPDX-License-Identifier: Apache-2.0
#include "snapshot_fields.h"
#include "pd_calls.h"

#include <algorithm>

#include "catalogue.h"
#include "fields.h"
#include "nearest.h"
#include "shell_error.h"
#include "value_text.h"

namespace tarvex::shell {

namespace {

std::uint32_t take_field(std::uint32_t, const char *name, std::uint32_t, std::uint32_t size, void *cookie)
{
  static_cast<std::vector<snapshot_field> *>(cookie)->push_back({name, size});
  return 0;
}

/// Where a walk puts what it is shown: that callback has no cookie.
thread_local std::vector<captured_field> *shown = nullptr;

std::uint32_t take_value(std::uint32_t, const char *name, std::uint32_t size, const std::uint8_t *value,
                         const std::uint8_t *)
{
  // A capture has the driver's bytes: of 2 and 3 bytes the lowest comes first, of 4 and 16 the highest.
  const bool lowest_first = size == 2 || size == 3;
  std::string text = "0x";
  for (std::uint32_t i = 0; i < size; ++i) {
    constexpr std::string_view digits = "0123456789abcdef";
    const std::uint8_t byte = value[lowest_first ? size - 1 - i : i];
    text += digits[byte >> 4];
    text += digits[byte & 15];
  }
  shown->push_back({name, std::move(text)});
  return 0;
}

std::vector<snapshot_field> list_fields(bool egress)
{
  std::vector<snapshot_field> fields;
  calls::pd::snapshot_capture_trigger_list(0, egress ? calls::pd::snapshot_egress_bit : 0, &take_field, &fields);
  return fields;
}

}  // namespace

bool parse_direction(std::string_view word)
{
  if (word != "ingress" && word != "egress") {
    throw usage_error("'" + std::string(word) + "' is no direction: ingress or egress");
  }
  return word == "egress";
}

const std::vector<snapshot_field> &snapshot_fields(bool egress)
{
  static const std::vector<snapshot_field> ingress_fields = list_fields(false);
  static const std::vector<snapshot_field> egress_fields = list_fields(true);
  return egress ? egress_fields : ingress_fields;
}

snapshot_value parse_snapshot_value(bool egress, std::string_view name, std::string_view value)
{
  const auto &fields = snapshot_fields(egress);
  const auto found = std::ranges::find(fields, name, [](const auto &field) { return std::string_view(field.name); });
  if (found == fields.end()) {
    throw usage_error(no_such(egress ? "egress field" : "ingress field", name, names_of(fields)));
  }
  shown_field field;
  field.name = found->name;
  field.bits = found->bytes * 8;
  field.display = found->bytes == 16  ? display_kind::ipv6
                  : found->bytes == 4 ? display_kind::ipv4
                                      : display_kind::number;
  wide_number number = parse_value(field, value);
  snapshot_value result{&*found, {}};
  if (found->bytes <= 4) {
    result.words[0] = static_cast<std::uint32_t>(number);
  } else {
    for (std::size_t i = result.words.size(); i-- > 0; number >>= 8) {
      result.words[i] = static_cast<std::uint32_t>(number & 0xff);
    }
  }
  return result;
}

std::vector<captured_field> captured_fields(std::uint32_t handle, bool egress, std::span<const std::uint8_t> area,
                                            std::uint32_t index)
{
  std::vector<std::uint8_t> control(calls::pd::snapshot_ctrl_bytes);
  std::vector<std::uint8_t> fields(calls::pd::snapshot_field_bytes);
  std::uint32_t first_byte = 0;
  calls::pd::snapshot_capture_data_single_get(static_cast<std::int32_t>(index), egress ? 1 : 0, area.data(),
                                              &first_byte, control.data(), fields.data());
  std::vector<captured_field> result;
  shown = &result;
  calls::pd::snapshot_capture_field_show(0, handle, fields.data(), &take_value);
  shown = nullptr;
  return result;
}

}  // namespace tarvex::shell
