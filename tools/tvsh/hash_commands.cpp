// The command on hash calculations.
//
// SPDX-License-Identifier: Apache-2.0
#include "commands.h"
#include "hash_settings.h"
#include "report.h"
#include "value_text.h"
#include "verbs.h"

namespace tarvex::shell {

namespace {

void show(report &rows, const invocation &call, const hash_info &hash)
{
  std::string fields;
  std::string json = "[";
  const hash_state state = read_hash(hash, call.where());
  for (std::size_t i = 0; i < state.selected.size(); ++i) {
    if (!state.selected[i]) continue;
    if (!fields.empty()) fields += ' ', json += ',';
    append_decimal(fields, i);
    append_decimal(json, i);
  }
  rows.cell(hash.name).handle(hash.handle).hexadecimal(state.seed).number(state.selected.size());
  rows.cell_as(fields, json += ']').end_row();
}

void set_seed(const invocation &call, const hash_info &hash)
{
  call.expect_at_most(3);
  const std::uint64_t value = parse_number(call.word(2, "SEED"), "seed", 64);
  if (!call.only_checked("setting the seed" + of_calculation(hash))) write_hash_seed(hash, value, call.where());
}

void set_fields(const invocation &call, const hash_info &hash)
{
  const bool all = call.word(2, "FIELD") == "all";
  if (all) call.expect_at_most(3);
  std::vector<bool> selected(hash.common.size(), all);
  for (const std::string &word : call.words.subspan(all ? 3 : 2)) {
    const std::uint64_t field = parse_number(word, "number of an input field", 32);
    if (field >= selected.size()) {
      throw usage_error("input field " + word + ": " + hash.name + " has the fields 0 to " +
                        std::to_string(selected.size() - 1));
    }
    selected[field] = true;
  }
  if (!call.only_checked("selecting input fields" + of_calculation(hash)))
    write_hash_fields(hash, selected, call.where());
}

constexpr hash_verb hash_verbs[] = {{"seed", set_seed}, {"fields", set_fields}};

}  // namespace

exit_code hash_calculation(const invocation &call)
{
  if (call.has(1)) return run_verb<hash_info>(hash_verbs, call, call.words[1], hash_named(call.words[0]));
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
