// SPDX-License-Identifier: Apache-2.0
#include "state_model.h"

namespace tarvex::shell {

namespace {

/// The fields alone: what stands between them in a caller's structure means nothing.
record_bytes bytes_of(std::span<const shown_field> fields, const record_memory &record, std::size_t size)
{
  record_bytes bytes(size, '\0');
  auto *const to = reinterpret_cast<std::uint8_t *>(bytes.data());
  for (const shown_field &field : fields) {
    write_value(field, read_value(field, record.data()), to);
    if (field.has_mask()) write_mask(field, read_mask(field, record.data()), to);
    if (field.has_prefix()) write_prefix_length(field, read_prefix_length(field, record.data()), to);
  }
  return bytes;
}

}  // namespace

model_action state_model::action_of(const action_info *action, const record_memory &parameters)
{
  if (action == nullptr) return {};
  return {action, bytes_of(fields_.of(*action), parameters, action->record_size)};
}

void state_model::member(const profile_info &profile, const profile_member &state)
{
  profiles[&profile].members.push_back({state.id, action_of(state.action, state.parameters), line()});
}

void state_model::group(const profile_info &profile, const profile_group &state)
{
  profiles[&profile].groups.push_back({state, line()});
}

void state_model::fallback(const profile_info &profile, std::uint32_t member)
{
  profiles[&profile].fallback = member;
  lines_[&profile] = line();
}

void state_model::idle(const table_info &table, const idle_setting &setting)
{
  tables[&table].idle = setting;
  lines_[&table] = line();
}

model_entry state_model::entry_of(const table_info &table, const entry_state &state)
{
  model_entry entry;
  if (state.has_key) {
    entry.key = bytes_of(fields_.of(table), state.key, table.record_size);
    entry.key.append(reinterpret_cast<const char *>(&state.priority), sizeof state.priority);
  }
  entry.action = action_of(state.action, state.parameters);
  entry.is_group = state.is_group;
  entry.reference = state.is_group ? state.group : state.member;
  entry.ttl = state.ttl.value_or(0);
  entry.line = line();
  if (state.meter) entry.meter = std::make_unique<pd_meter_spec_t>(*state.meter);
  if (state.counter && counts_) entry.counter = std::make_unique<pd_counter_value_t>(*state.counter);
  return entry;
}

void state_model::default_entry(const table_info &table, const entry_state &state)
{
  tables[&table].default_entry = std::make_unique<model_entry>(entry_of(table, state));
}

void state_model::entry(const table_info &table, const entry_state &state)
{
  tables[&table].entries.push_back(entry_of(table, state));
}

void state_model::cell(const resource_info &resource, const cell_state &state)
{
  if (resource.kind == resource_kind::counter && !counts_) return;
  if (state.index) {
    resources[&resource].cells[*state.index] = state.value;
    if (at_ != nullptr) resources[&resource].lines[*state.index] = line();
  } else {
    resources[&resource].rest = state.value;
    lines_[&resource] = line();
  }
}

void state_model::hash(const hash_info &hash, const hash_state &state)
{
  hashes[&hash] = state;
  lines_[&hash] = line();
}

void state_model::value_set(const value_set_entry &entry)
{
  if (value_sets.empty()) lines_[&value_sets] = line();
  value_sets.insert(entry);
}

void state_model::learning_timeout(std::uint32_t told)
{
  timeout = told;
  lines_[&timeout] = line();
}

}  // namespace tarvex::shell
