// The command on hash calculations.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "commands.h"
#include "report.h"
#include "tarvex_pd/hash_access.h"
#include "value_text.h"
#include "verbs.h"

namespace tarvex::shell {

using enum argument_kind;

namespace {

std::string of(const hash_info &hash) { return std::string(" of ") + hash.name; }

std::uint64_t read_seed(const invocation &call, const hash_info &hash)
{
  std::uint64_t value = 0;
  function_call(function_for(family_id::hash_seed_get, hash), call.where())
      .give(seed_out, &value)
      .must("reading the seed" + of(hash));
  return value;
}

/// By own number, whether each input field is selected.
std::vector<bool> read_fields(const invocation &call, const hash_info &hash)
{
  std::vector<hash_calc_attr_t> attributes(hash.common.size());
  std::uint32_t count = 0;
  function_call(function_for(family_id::hash_fields_get, hash), call.where())
      .give(hash_number, std::uint64_t{0})
      .give(hash_attr_max, attributes.size())
      .give(hash_attrs_out, attributes.data())
      .give(hash_attr_count_out, &count)
      .must("reading the input fields" + of(hash));
  std::vector<bool> selected(hash.common.size());
  for (std::uint32_t i = 0; i < count && i < attributes.size(); ++i) {
    if (attributes[i].field < selected.size()) selected[attributes[i].field] = attributes[i].value == 0;
  }
  return selected;
}

void show(report &rows, const invocation &call, const hash_info &hash)
{
  std::string fields;
  const std::vector<bool> selected = read_fields(call, hash);
  for (std::size_t i = 0; i < selected.size(); ++i) {
    if (selected[i]) fields += (fields.empty() ? "" : " ") + std::to_string(i);
  }
  rows.cell(hash.name).hexadecimal(hash.handle).hexadecimal(read_seed(call, hash)).number(selected.size());
  rows.cell(fields).end_row();
}

void set_seed(const invocation &call, const hash_info &hash)
{
  call.expect_at_most(3);
  const std::uint64_t value = parse_number(call.word(2, "SEED"), "seed", 64);
  function_call write(function_for(family_id::hash_seed_set, hash), call.where());
  call.carry_out(write.give(seed, value), "setting the seed" + of(hash));
}

void set_fields(const invocation &call, const hash_info &hash)
{
  if (call.word(2, "FIELD") == "all") {
    call.expect_at_most(3);
    function_call write(function_for(family_id::hash_input_set, hash), call.where());
    call.carry_out(write.give(hash_number, std::uint64_t{0}), "selecting all input fields" + of(hash));
    return;
  }
  std::vector<hash_calc_attr_t> attributes;
  for (std::uint32_t i = 0; i < hash.common.size(); ++i) attributes.push_back({i, 0, 1});
  for (const std::string &word : call.words.subspan(2)) {
    const std::uint64_t field = parse_number(word, "number of an input field", 32);
    if (field >= attributes.size()) {
      throw usage_error("input field " + word + ": " + hash.name + " has the fields 0 to " +
                        std::to_string(attributes.size() - 1));
    }
    attributes[field].value = 0;
  }
  function_call write(function_for(family_id::hash_fields_set, hash), call.where());
  write.give(hash_number, std::uint64_t{0}).give(hash_attr_count, attributes.size());
  call.carry_out(write.give(hash_attrs, attributes.data()), "selecting input fields" + of(hash));
}

constexpr hash_verb verbs[] = {{"seed", set_seed}, {"fields", set_fields}};

}  // namespace

exit_code hash_calculation(const invocation &call)
{
  if (call.has(1)) return run_verb<hash_info>(verbs, call, call.words[1], hash_named(call.words[0]));
  const hash_info *const wanted = call.has(0) ? &hash_named(call.words[0]) : nullptr;
  report rows(call.out, call.chosen, "calculations",
              {{"calculation", 20}, {"handle", 10}, {"seed", 18}, {"fields"}, {"selected"}});
  for (const hash_info &hash : calls::hashes) {
    if (wanted == nullptr || wanted == &hash) show(rows, call, hash);
  }
  rows.finish();
  return exit_code::ok;
}

}  // namespace tarvex::shell
