// The table of commands: help, completion and dispatch derive from it.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

#include "invocation.h"
#include "shell_error.h"

namespace tarvex::shell {

/// What can stand at a word's place, for completion.
enum class word_kind : std::uint8_t {
  nothing,
  command,
  table,
  keyed_table,
  idle_table,
  indirect_table,
  profile,
  counter,
  meter,
  wred,
  register_,
  hash,
  choice,         // one of the command's choices
  choice_field,   // behind a choice: fields of the table ahead of it
  field,          // fields of the table ahead
  entry,          // fields, actions and parameters of the table ahead
  default_entry,  // actions that can be the default, and their parameters
  member,         // actions and parameters of the profile ahead
  file,
  snapshot,  // behind a choice: a direction, then its fields
  state,     // a saved state in a file, or the live one
};

enum class command_group : std::uint8_t { reading, writing, operating, simulating, shell };

struct command {
  std::string_view name;
  command_group group;
  std::string_view arguments;                // as the usage shows them
  std::string_view summary;                  // one line
  std::string_view details;                  // more lines; may be empty
  std::array<std::string_view, 2> examples;  // both work on a switch with the entries that they name
  std::array<word_kind, 3> words;            // the last one stands for all behind it too
  std::span<const std::string_view> choices;
  exit_code (*run)(const invocation &);
};

std::span<const command> commands();
/// Throws usage_error with the nearest names.
const command &command_named(std::string_view name);
/// "usage: NAME ARGUMENTS"
std::string usage_of(const command &what);

}  // namespace tarvex::shell
