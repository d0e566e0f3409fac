// Calls by libffi.
//
// SPDX-License-Identifier: Apache-2.0
#include "caller.h"

#include <ffi.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <set>

namespace tarvex::test {

namespace {

using enum argument_kind;

constexpr std::size_t not_taken = ~std::size_t{0};

const std::set<argument_kind> pointers = {
    match_spec,
    action_spec,
    meter_spec,
    entry_hdl_out,
    match_spec_out,
    priority_out,
    action_name_out,
    action_enum_out,
    no_key_out,
    any_action_spec_out,
    is_member_out,
    is_group_out,
    grp_hdl_out,
    mbr_hdl_out,
    entry_count_out,
    next_entry_hdls_out,
    drv_match_spec,
    drv_act_data,
    res_list,
    action_spec_out,
    table_handle_out,
    property_value_out,
    property_argument_out,
    hit_state_out,
    ttl_out,
    log,
    action_name,
    member_state_out,
    plcmt_data,
    member_action_out,
    counter_value_out,
    meter_value,
    meter_value_out,
    wred_value,
    wred_value_out,
    register_value,
    register_values_out,
    register_value_count_out,
    range_count_read_out,
    stful_query,
    stful_spec,
    register_word,
    hash_number_out,
    seed_out,
    hash_attrs,
    hash_attrs_out,
    hash_attr_count_out,
    calc_name,
    digest_name,
    digest_entry,
    digest_field_name,
    digest_field_size_out,
    pvs_entry_hdl_out,
};
const std::set<argument_kind> words = {dev_tgt, word, callback, cookie, seed, digest_message};
const std::set<argument_kind> records = {idle_params, counter_value, parser_tgt};  // by value

ffi_type *type_of(argument_kind kind)
{
  static ffi_type *idle_parts[] = {&ffi_type_uint32, &ffi_type_uint32, &ffi_type_uint32,
                                   &ffi_type_uint32, &ffi_type_uint32, &ffi_type_uint32,
                                   &ffi_type_uint64, &ffi_type_uint64, nullptr};
  static ffi_type *counter_parts[] = {&ffi_type_uint64, &ffi_type_uint64, nullptr};
  static ffi_type *parser_parts[] = {&ffi_type_uint32, &ffi_type_uint32, &ffi_type_uint16, &ffi_type_uint8, nullptr};
  static ffi_type idle = {0, 0, FFI_TYPE_STRUCT, idle_parts};
  static ffi_type counter = {0, 0, FFI_TYPE_STRUCT, counter_parts};
  static ffi_type parser = {0, 0, FFI_TYPE_STRUCT, parser_parts};
  if (records.contains(kind)) return kind == idle_params ? &idle : kind == counter_value ? &counter : &parser;
  // A narrow argument goes in a whole register, so that something stands above it.
  return pointers.contains(kind) ? &ffi_type_pointer : &ffi_type_uint64;
}

// A value that no other argument has, with something in each of its bytes.
std::uint64_t own_value(argument_kind kind, std::size_t argument)
{
  const std::uint64_t number = 0x11 * (argument + 1);
  if (kind == dev_tgt) return 0xbeef'0305'8d00'01c7 + (number << 8);
  if (words.contains(kind)) return 0xf1e2'd3c4'b5a6'0000 + number;
  if (kind == member_state) return 0;
  return 0x8c5a'01b0 + (number << 8) + static_cast<std::uint64_t>(kind);
}

[[gnu::noinline]] void fill_stack(std::uint8_t pattern)
{
  std::array<std::uint8_t, 8192> place;
  place.fill(pattern);
  asm volatile("" : : "r"(place.data()) : "memory");
}

}  // namespace

call::call(const exported_function &function) : function_(function), blocks_(function.arguments.size())
{
  for (std::size_t i = 0; i < function.arguments.size(); ++i) {
    for (std::size_t at = 0; at < block_size; ++at) {
      blocks_[i][at] = static_cast<std::uint8_t>(1 + (at * 37 + i * 11) % 255);
    }
    const argument_kind kind = function.arguments[i];
    values_.push_back(pointers.contains(kind) ? reinterpret_cast<std::uint64_t>(blocks_[i].data())
                                              : own_value(kind, i));
  }
  expected_ = blocks_;
}

std::size_t call::index_of(argument_kind kind, std::size_t nth) const
{
  for (std::size_t i = 0; i < function_.arguments.size(); ++i) {
    if (function_.arguments[i] == kind && nth-- == 0) return i;
  }
  return not_taken;
}

bool call::takes(argument_kind kind) const { return index_of(kind) != not_taken; }

std::uint64_t call::value(argument_kind kind, std::size_t nth) const
{
  const std::size_t index = index_of(kind, nth);
  return index == not_taken ? 0 : values_[index];
}

void call::give(argument_kind kind, std::uint64_t value) { values_.at(index_of(kind)) = value; }

call::block &call::memory(argument_kind kind) { return blocks_.at(index_of(kind)); }

const call::block &call::memory(argument_kind kind) const { return blocks_.at(index_of(kind)); }

void call::fill(argument_kind kind, std::span<const std::uint8_t> content, std::size_t offset)
{
  std::copy(content.begin(), content.end(), memory(kind).begin() + static_cast<std::ptrdiff_t>(offset));
}

std::uint64_t call::run(std::uint8_t stack_pattern)
{
  constexpr std::uint64_t junk = 0xfeedface'00000000;
  // Nothing here needs a destructor: a failed assertion of the library jumps past this frame.
  constexpr std::size_t most = 16;
  std::array<ffi_type *, most> types;
  std::array<std::uint64_t, most> passed;
  std::array<void *, most> places;
  if (values_.size() > most) std::abort();
  for (std::size_t i = 0; i < values_.size(); ++i) {
    const argument_kind kind = function_.arguments[i];
    passed[i] = pointers.contains(kind) || words.contains(kind) ? values_[i] : values_[i] | junk;
    types[i] = type_of(kind);
    places[i] = records.contains(kind) ? static_cast<void *>(blocks_[i].data()) : &passed[i];
  }
  ffi_type *result_type = &ffi_type_uint32;
  if (function_.result == calls::result_kind::none) result_type = &ffi_type_void;
  if (function_.result == calls::result_kind::text || function_.result == calls::result_kind::pointer) {
    result_type = &ffi_type_pointer;
  }
  ffi_cif description;
  if (ffi_prep_cif(&description, FFI_DEFAULT_ABI, static_cast<unsigned>(values_.size()), result_type, types.data()) !=
      FFI_OK) {
    std::abort();
  }
  expected_ = blocks_;
  ffi_arg result = 0;
  fill_stack(stack_pattern);
  const unsigned before = counter != nullptr ? counter() : 0;
  ffi_call(&description, function_.function, &result, places.data());
  counted = counter != nullptr ? counter() - before : 0;
  return result;
}

void call::expect(argument_kind kind, std::span<const std::uint8_t> content, std::size_t offset)
{
  std::copy(content.begin(), content.end(), expected_.at(index_of(kind)).begin() + static_cast<std::ptrdiff_t>(offset));
}

void call::expect_number(argument_kind kind, std::uint64_t number, std::size_t size)
{
  std::memcpy(expected_.at(index_of(kind)).data(), &number, size);
}

std::string call::unexpected_bytes() const
{
  std::string text;
  for (std::size_t i = 0; i < blocks_.size(); ++i) {
    if (blocks_[i] == expected_[i]) continue;
    text += "\nargument " + std::to_string(i) + difference(expected_[i], blocks_[i]);
  }
  return text;
}

const exported_function &function_named(const std::string &name)
{
  const auto found =
      std::ranges::find_if(calls::functions, [&](const auto &function) { return function.name == name; });
  if (found == calls::functions.end()) {
    std::cerr << "no exported function " << name << '\n';
    std::abort();
  }
  return *found;
}

std::string difference(std::span<const std::uint8_t> expected, std::span<const std::uint8_t> actual)
{
  const auto at = std::ranges::mismatch(expected, actual).in1 - expected.begin();
  const auto from = [&](std::span<const std::uint8_t> all) {
    const auto rest = all.subspan(static_cast<std::size_t>(at));
    return hex(rest.first(std::min<std::size_t>(rest.size(), 24)));
  };
  return " from byte " + std::to_string(at) + ": is " + from(actual) + ", should be " + from(expected);
}

std::string hex(std::span<const std::uint8_t> content)
{
  constexpr char digits[] = "0123456789abcdef";
  std::string text;
  for (const std::uint8_t byte : content) {
    if (!text.empty()) text += ' ';
    text += digits[byte >> 4];
    text += digits[byte & 15];
  }
  return text;
}

}  // namespace tarvex::test
