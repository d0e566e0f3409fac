// Every kind of argument that exported functions have: C type, usual name and what its comment says.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>
#include <string_view>

namespace catalogue {

struct argument_kind_row {
  std::string_view kind;
  std::string_view type;  // {key} and {params} stand for the structures of the row
  std::string_view name;
  std::string_view doc;  // {PREFIX} stands for the prefix of macros
};

std::span<const argument_kind_row> argument_kinds();
const argument_kind_row &argument_kind(std::string_view kind);

}  // namespace catalogue
