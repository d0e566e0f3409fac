// Blocks and values of arguments.
//
// SPDX-License-Identifier: Apache-2.0
#include "caller.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <unordered_map>

namespace tarvex::test {

namespace {

using enum argument_kind;
using calls::argument_form;

constexpr std::size_t not_taken = ~std::size_t{0};

argument_form form_of(argument_kind kind) { return calls::row_of(kind).form; }

// Room for what is pointed at or handed over by value.
std::size_t room_for(argument_kind kind)
{
  switch (kind) {
    case text_buffer:
    case capture_ctrl_out: return 4096;
    case trigger_record:
    case trigger_record_out:
    case capture_fields:
    case capture_fields_out: return 1024;
    case capture_area:
    case capture_area_out: return 65536;
    default: break;
  }
  return form_of(kind) == argument_form::pointer || form_of(kind) == argument_form::record ? 256 : 0;
}

// A value that no other argument has, with something in each of its bytes.
std::uint64_t own_value(argument_kind kind, std::size_t argument)
{
  const std::uint64_t number = 0x11 * (argument + 1);
  if (kind == dev_tgt) return 0xbeef'0305'8d00'01c7 + (number << 8);
  if (form_of(kind) == argument_form::word) return 0xf1e2'd3c4'b5a6'0000 + number;
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
    const argument_kind kind = function.arguments[i];
    blocks_[i].resize(room_for(kind));
    for (std::size_t at = 0; at < blocks_[i].size(); ++at) {
      blocks_[i][at] = static_cast<std::uint8_t>(1 + (at * 37 + i * 11) % 255);
    }
    values_.push_back(form_of(kind) == argument_form::pointer ? reinterpret_cast<std::uint64_t>(blocks_[i].data())
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
  calls::raw_call raw(function_);
  for (std::size_t i = 0; i < values_.size(); ++i) {
    switch (form_of(function_.arguments[i])) {
      case argument_form::record: raw.set(i, blocks_[i].data()); break;
      // A device that goes through untouched keeps what stands above it, which is then the caller's.
      case argument_form::number:
        raw.set(i, function_.arguments[i] == whole_dev_id ? values_[i] : values_[i] | junk);
        break;
      default: raw.set(i, values_[i]);
    }
  }
  expected_ = blocks_;
  fill_stack(stack_pattern);
  under_way = true;
  const std::uint64_t result = raw.make();
  under_way = false;
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

const std::string &prefix()
{
  static const std::string text(calls::pipeline.prefix);
  return text;
}

const exported_function &function_named(const std::string &name)
{
  static const auto by_name = [] {
    std::unordered_map<std::string, const exported_function *> all;
    for (const exported_function &function : calls::functions) all[function.name] = &function;
    return all;
  }();
  const auto found = by_name.find(name);
  if (found == by_name.end()) {
    std::cerr << "no exported function " << name << '\n';
    std::abort();
  }
  return *found->second;
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
