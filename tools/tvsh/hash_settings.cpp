// An attribute of a field is 0 where the field is selected.
//
// SPDX-License-Identifier: Apache-2.0
#include "hash_settings.h"

#include <algorithm>

#include "tarvex_pd/hash_access.h"

namespace tarvex::shell {

using enum argument_kind;

std::string of_calculation(const hash_info &hash) { return std::string(" of ") + hash.name; }

hash_state read_hash(const hash_info &hash, const target &where)
{
  hash_state state;
  function_call(function_for(family_id::hash_seed_get, hash), where)
      .give(seed_out, &state.seed)
      .must("reading the seed" + of_calculation(hash));
  std::vector<hash_calc_attr_t> attributes(hash.common.size());
  std::uint32_t count = 0;
  function_call(function_for(family_id::hash_fields_get, hash), where)
      .give(hash_number, std::uint64_t{0})
      .give(hash_attr_max, attributes.size())
      .give(hash_attrs_out, attributes.data())
      .give(hash_attr_count_out, &count)
      .must("reading the input fields" + of_calculation(hash));
  state.selected.resize(hash.common.size());
  for (std::uint32_t i = 0; i < count && i < attributes.size(); ++i) {
    if (attributes[i].field < state.selected.size()) state.selected[attributes[i].field] = attributes[i].value == 0;
  }
  return state;
}

void write_hash_seed(const hash_info &hash, std::uint64_t value, const target &where)
{
  function_call(function_for(family_id::hash_seed_set, hash), where)
      .give(seed, value)
      .must("setting the seed" + of_calculation(hash));
}

void write_hash_fields(const hash_info &hash, const std::vector<bool> &selected, const target &where)
{
  if (std::ranges::count(selected, false) == 0) {
    function_call(function_for(family_id::hash_input_set, hash), where)
        .give(hash_number, std::uint64_t{0})
        .must("selecting all input fields" + of_calculation(hash));
    return;
  }
  std::vector<hash_calc_attr_t> attributes;
  for (std::uint32_t i = 0; i < selected.size(); ++i) attributes.push_back({i, 0, selected[i] ? 0u : 1u});
  function_call(function_for(family_id::hash_fields_set, hash), where)
      .give(hash_number, std::uint64_t{0})
      .give(hash_attr_count, attributes.size())
      .give(hash_attrs, attributes.data())
      .must("selecting input fields" + of_calculation(hash));
}

}  // namespace tarvex::shell
