// Values that do not fit into their fields, found by the rows of the call table.
//
// SPDX-License-Identifier: Apache-2.0
#include "tarvex_agent/tv_check.h"

#include <bit>
#include <cstdio>
#include <cstring>
#include <span>

#include "call_table.h"

namespace {

using namespace tarvex::calls;

/// A member as a number. One of more than four bytes is an array of bytes that its field fills, so it always fits.
std::uint64_t number_at(const void *structure, std::size_t offset, std::size_t size)
{
  const char *const at = static_cast<const char *>(structure) + offset;
  const auto as = [at]<typename T>(T number) {
    std::memcpy(&number, at, sizeof number);
    return std::uint64_t{number};
  };
  return size == 1 ? as(std::uint8_t{}) : size == 2 ? as(std::uint16_t{}) : size == 4 ? as(std::uint32_t{}) : 0;
}

class finding {
 public:
  explicit finding(char *text) : text_(text) {}

  bool found() const { return found_; }

  /// A number of so many bits; `kind` is what stands around the name of the field.
  void expect(std::uint64_t number, unsigned bits, const char *before, const char *name, const char *after)
  {
    if (found_ || bits >= 64 || number >> bits == 0) return;
    found_ = true;
    if (text_ == nullptr) return;
    std::snprintf(text_, TV_CHECK_TEXT_SIZE, "%s%s%s is %llu, beyond its %u bits", before, name, after,
                  static_cast<unsigned long long>(number), bits);
  }

  void expect_prefix(std::uint64_t length, const field_info &field)
  {
    if (found_ || length <= field.bits) return;
    found_ = true;
    if (text_ == nullptr) return;
    std::snprintf(text_, TV_CHECK_TEXT_SIZE, "%s_prefix_length is %llu, beyond the %u bits of the field", field.name,
                  static_cast<unsigned long long>(length), static_cast<unsigned>(field.bits));
  }

 private:
  char *text_;
  bool found_ = false;
};

/// Bits of a field that a value may have: those of a partition index that the table looks at, else the width.
unsigned wanted_bits(const field_info &field)
{
  if (field.match != match_kind::partition) return field.bits;
  std::uint32_t live = 0;
  for (const std::uint8_t byte : std::span(field.live).last<4>()) live = live << 8 | byte;
  return static_cast<unsigned>(std::bit_width(live));
}

void check_key(const table_info &table, const void *key, finding &result)
{
  for (const field_info &field : table.fields) {
    result.expect(number_at(key, field.member, field.member_size), wanted_bits(field), "", field.name, "");
    if (field.match == match_kind::ternary) {
      result.expect(number_at(key, field.companion, field.member_size), field.bits, "", field.name, "_mask");
    } else if (field.match == match_kind::lpm) {
      result.expect_prefix(number_at(key, field.companion, sizeof(std::uint16_t)), field);
    }
  }
}

void check_parameters(const action_info &action, const void *parameters, finding &result)
{
  for (const param_info &each : action.params) {
    result.expect(number_at(parameters, each.member, each.member_size), each.bits, "action_", each.name, "");
  }
}

const action_info *action_with(std::uint32_t handle)
{
  const auto among = [&](std::span<const use_info> uses) -> const action_info * {
    for (const use_info &use : uses)
      if (use.handle == handle) return use.action;
    return nullptr;
  };
  for (const table_info &table : tables)
    if (const action_info *const found = among(table.actions)) return found;
  for (const profile_info &profile : profiles)
    if (const action_info *const found = among(profile.actions)) return found;
  return nullptr;
}

}  // namespace

tv_check_result_t tv_check_structure(uint32_t handle, const void *structure, char *text)
{
  if (text != nullptr) *text = 0;
  finding result(text);
  for (const table_info &table : tables) {
    if (table.handle != handle) continue;
    if (structure != nullptr) check_key(table, structure, result);
    return result.found() ? TV_CHECK_TOO_WIDE : TV_CHECK_FITS;
  }
  const action_info *const action = action_with(handle);
  if (action == nullptr) return TV_CHECK_UNKNOWN_HANDLE;
  if (structure != nullptr) check_parameters(*action, structure, result);
  return result.found() ? TV_CHECK_TOO_WIDE : TV_CHECK_FITS;
}
