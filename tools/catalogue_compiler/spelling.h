// How generated files spell what the model holds: enumerators, offsets, C types and prototypes.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "families.h"
#include "model.h"

namespace catalogue {

/// "direct_counter"
template <class Kind>
std::string identifier(Kind kind)
{
  std::string name(word_of(kind));
  std::ranges::replace(name, ' ', '_');
  return name;
}
/// The enumerator of a kind, with its type: "resource_kind::register_", as C++ has words of its own.
template <class Kind>
std::string enumerator(std::string_view type, Kind kind)
{
  const std::string name = identifier(kind);
  return std::string(type) + "::" + name + (name == "register" ? "_" : "");
}

/// Whether its cells are addressed by the entries that it hangs on. Registers are named by entries but addressed by
/// index.
bool is_direct(const resource &r);
/// How it is matched, a partition field included.
match_kind match_of(const field &f);
/// The bits of a field that the pipeline matches on, "0x7fff".
std::string live_mask_text(const field &f);

/// "offsetof(type, member)", or "0" without a member.
std::string offset_of(const std::string &type, const std::string &member);

/// Members of a caller's structure with their offsets, in order, room included.
struct member {
  std::string type;  // "uint16_t"
  std::string name;  // with its array extent
  unsigned offset = 0;
  unsigned size = 0;
  std::string comment;
};
std::vector<member> key_members(const table &t);
std::vector<member> param_members(const action &a);

/// A field of a snapshot as an initializer: name, offset, size.
std::string field_row(const snapshot_field &f);

/// Name of a parameter's member.
std::string member_name(const parameter &p);

/// Name of the mask or prefix length that belongs to a field, empty for none.
std::string companion_name(const field &f);

std::string_view c_result(result_kind kind);
/// The arguments as they are declared; "void" without any.
std::vector<std::string> declarations(const exported_function &f);
std::string argument_list(const exported_function &f);

}  // namespace catalogue
