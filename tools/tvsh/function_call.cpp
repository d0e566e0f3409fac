// Calls by libffi.
//
// SPDX-License-Identifier: Apache-2.0
#include "function_call.h"

#include <stdexcept>

#include "status_text.h"

namespace tarvex::shell {

namespace {

using enum argument_kind;

// Records that travel by value, made of what they hold.
ffi_type *idle_type()
{
  static ffi_type *parts[] = {&ffi_type_uint32, &ffi_type_uint32, &ffi_type_uint32, &ffi_type_uint32, &ffi_type_uint32,
                              &ffi_type_uint32, &ffi_type_uint64, &ffi_type_uint64, nullptr};
  static ffi_type record = {0, 0, FFI_TYPE_STRUCT, parts};
  return &record;
}

ffi_type *counter_type()
{
  static ffi_type *parts[] = {&ffi_type_uint64, &ffi_type_uint64, nullptr};
  static ffi_type record = {0, 0, FFI_TYPE_STRUCT, parts};
  return &record;
}

/// Null for what goes in a register of its own. There the callee looks at as many low bits as the argument has.
ffi_type *record_type(argument_kind kind)
{
  switch (kind) {
    case idle_params: return idle_type();
    case counter_value: return counter_type();
    default: return nullptr;
  }
}

}  // namespace

function_call::function_call(const exported_function &function, const target &where) : function_(function)
{
  const std::size_t count = function.arguments.size();
  if (count > most)
    throw std::logic_error(std::string(function.name) + " takes more arguments than a call has room for");
  for (std::size_t i = 0; i < count; ++i) {
    ffi_type *const record = record_type(function.arguments[i]);
    types_[i] = record != nullptr ? record : &ffi_type_uint64;
    if (record == nullptr) arguments_[i].place = &arguments_[i].number;
  }
  ffi_type *result = &ffi_type_uint32;
  if (function.result == calls::result_kind::none) result = &ffi_type_void;
  if (function.result == calls::result_kind::text || function.result == calls::result_kind::pointer) {
    result = &ffi_type_pointer;
  }
  if (ffi_prep_cif(&description_, FFI_DEFAULT_ABI, static_cast<unsigned>(count), result, types_.data()) != FFI_OK) {
    throw std::logic_error(std::string(function.name) + " cannot be called by its kinds of arguments");
  }
  give(sess_hdl, where.session).give(dev_tgt, where.dev_tgt()).give(dev_id, where.device);
  give(whole_dev_id, where.device);
}

const function_call::argument *function_call::find(argument_kind kind, std::size_t nth) const
{
  for (std::size_t i = 0; i < function_.arguments.size(); ++i) {
    if (function_.arguments[i] == kind && nth-- == 0) return &arguments_[i];
  }
  return nullptr;
}

function_call::argument *function_call::find(argument_kind kind, std::size_t nth)
{
  return const_cast<argument *>(static_cast<const function_call *>(this)->find(kind, nth));
}

function_call &function_call::give(argument_kind kind, std::uint64_t number, std::size_t nth)
{
  if (argument *const found = find(kind, nth)) {
    found->number = number;
    found->given = true;
  }
  return *this;
}

function_call &function_call::give(argument_kind kind, const void *memory, std::size_t nth)
{
  argument *const found = find(kind, nth);
  if (found != nullptr && record_type(kind) != nullptr) {
    found->place = const_cast<void *>(memory);
    found->given = true;
    return *this;
  }
  return give(kind, static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(memory)), nth);
}

std::uint64_t function_call::make()
{
  std::array<void *, most> places{};
  for (std::size_t i = 0; i < function_.arguments.size(); ++i) {
    if (!arguments_[i].given) {
      throw std::logic_error(std::string(function_.name) + ": argument " + std::to_string(i) + " was not given");
    }
    places[i] = arguments_[i].place;
  }
  ffi_arg result = 0;
  ffi_call(&description_, function_.function, &result, places.data());
  return result;
}

void function_call::must(const std::string &what) { require_success(static_cast<std::uint32_t>(make()), what); }

}  // namespace tarvex::shell
