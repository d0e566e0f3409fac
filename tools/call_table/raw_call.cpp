// Calls by libffi.
//
// SPDX-License-Identifier: Apache-2.0
#include "raw_call.h"

#include <stdexcept>
#include <string>

namespace tarvex::calls {

namespace {

// Records that travel by value, made of what they hold.
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
  switch (kind) {
    case argument_kind::idle_params: return &idle;
    case argument_kind::counter_value: return &counter;
    case argument_kind::parser_tgt: return &parser;
    default: break;
  }
  if (row_of(kind).form == argument_form::record) throw std::logic_error("a record that calls do not know");
  return &ffi_type_uint64;
}

}  // namespace

const argument_row &row_of(argument_kind kind) { return arguments[static_cast<std::size_t>(kind)]; }

raw_call::raw_call(const exported_function &function) : function_(function)
{
  const std::size_t count = function.arguments.size();
  if (count > most_arguments)
    throw std::logic_error(std::string(function.name) + " takes more arguments than a call has room for");
  for (std::size_t i = 0; i < count; ++i) types_[i] = type_of(function.arguments[i]);
  ffi_type *result = &ffi_type_uint32;
  if (function.result == result_kind::none) result = &ffi_type_void;
  if (function.result == result_kind::text || function.result == result_kind::pointer) result = &ffi_type_pointer;
  if (ffi_prep_cif(&description_, FFI_DEFAULT_ABI, static_cast<unsigned>(count), result, types_.data()) != FFI_OK) {
    throw std::logic_error(std::string(function.name) + " cannot be called by its kinds of arguments");
  }
}

std::size_t raw_call::place_of(argument_kind kind, std::size_t nth) const
{
  const std::size_t count = function_.arguments.size();
  for (std::size_t i = 0; i < count; ++i) {
    if (function_.arguments[i] == kind && nth-- == 0) return i;
  }
  return count;
}

void raw_call::set(std::size_t place, std::uint64_t number)
{
  arguments_.at(place).number = number;
  arguments_[place].place = &arguments_[place].number;
}

void raw_call::set(std::size_t place, const void *memory)
{
  set(place, static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(memory)));
  if (types_[place]->type == FFI_TYPE_STRUCT) arguments_[place].place = const_cast<void *>(memory);
}

raw_call &raw_call::give(argument_kind kind, std::uint64_t number, std::size_t nth)
{
  if (const std::size_t place = place_of(kind, nth); place < function_.arguments.size()) set(place, number);
  return *this;
}

raw_call &raw_call::give(argument_kind kind, const void *memory, std::size_t nth)
{
  if (const std::size_t place = place_of(kind, nth); place < function_.arguments.size()) set(place, memory);
  return *this;
}

std::uint64_t raw_call::make()
{
  std::array<void *, most_arguments> places{};
  for (std::size_t i = 0; i < function_.arguments.size(); ++i) {
    places[i] = arguments_[i].place;
    if (places[i] == nullptr)
      throw std::logic_error(std::string(function_.name) + ": argument " + std::to_string(i) + " was not given");
  }
  ffi_arg result = 0;
  ffi_call(&description_, function_.function, &result, places.data());
  return result;
}

}  // namespace tarvex::calls
