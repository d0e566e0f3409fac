// The rows of driver.toml, as they were read.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "diagnostics.h"
#include "driver_kinds.h"
#include "generated_file.h"

namespace driver_rows {

using tarvex::driver::call_effect;
using tarvex::driver::direction;
using tarvex::driver::result_kind;
using tarvex::driver::value_kind;

struct argument {
  std::string name;
  std::string type;  // as it goes in
  value_kind kind = value_kind::number;
  direction way = direction::in;
  std::string note;                   // what the header says beside it
  std::optional<std::size_t> room;    // place of the argument that says for how many elements there is room
  std::optional<std::size_t> filled;  // place of the argument that says how many have come out

  bool is_pointer() const { return type.ends_with('*'); }
  /// As the header declares it.
  std::string declaration() const;
};

struct function {
  std::string name;
  std::string doc;
  call_effect effect = call_effect::neither;
  result_kind result = result_kind::status;
  std::vector<argument> arguments;
};

struct group {
  std::string name;
  catalogue::position at;
  std::vector<function> functions;
};

/// Groups and functions in the order of the file. The rows are complete only if no error was reported.
std::vector<group> read(const std::filesystem::path &file, catalogue::diagnostics &diag);

/// The header: `frame`, in which a line "@NAME@" stands for the declarations of a group.
catalogue::generated_file header(const std::vector<group> &groups, const std::filesystem::path &frame,
                                 catalogue::diagnostics &diag);
/// Each function's row, and the list of all.
catalogue::generated_file row_definitions(const std::vector<group> &groups);
/// A definition of each function that calls the template `driver_call` over it. With `whole_registers` a device comes
/// in 64 bits whatever its type, for who looks at what a caller has left above it.
catalogue::generated_file function_definitions(const std::vector<group> &groups, bool whole_registers);

}  // namespace driver_rows
