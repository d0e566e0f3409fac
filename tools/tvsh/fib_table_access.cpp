// SPDX-License-Identifier: Apache-2.0
#include "fib_table_access.h"

#include <algorithm>
#include <array>

#include "entry_reader.h"
#include "entry_search.h"
#include "handle_walk.h"
#include "status_text.h"

namespace tarvex::shell {

using enum argument_kind;

namespace {

namespace routes = route_load;

// The actions of a table carry the kind of the result at the end of their names.
constexpr std::array<std::string_view, 4> endings = {"NextHop", "NextHop2", "NextHop3", "Ecmp"};
// One without a result, where a table has it, is for a block that no route covers.
constexpr std::string_view ending_without_result = "PartIdx";

bool is_partition_index(const shown_field &parameter) { return parameter.name.find("artition") != std::string::npos; }

bool is_ipv4(std::string_view table) { return table.starts_with("ipv4"); }

/// Length of the prefix that ends with the lowest bit the switch looks at: a longer one matches no less.
unsigned live_length(const shown_field &field)
{
  unsigned length = field.bits;
  while (length > 0 && (field.live >> (field.bits - length) & 1) == 0) --length;
  return length;
}

}  // namespace

fib_table_access::fib_table_access(routes::fib_table table, const target &where)
    : number_(table), table_(table_named(routes::table_name(table))), where_(where), key_fields_(key_fields(table_))
{
  for (const use_info &use : table_.actions) actions_.push_back({&use, parameter_fields(*use.action)});
}

void fib_table_access::write(const routes::fib_entry &entry, family_id family, const char *what)
{
  fill_key(entry);
  const ready_action &action = action_for(entry);
  for (const shown_field &field : action.parameters) {
    write_value(field, is_partition_index(field) ? entry.partition_index : entry.result.value, parameters_.data());
  }
  const exported_function &function = function_for(family, *action.use);
  std::unique_ptr<function_call> &call = calls_[&function];
  if (call == nullptr) {
    call = std::make_unique<function_call>(function, where_);
    call->give(match_spec, key_.data()).give(action_spec, parameters_.data());
    call->give(ttl, std::uint64_t{0}).give(entry_hdl_out, &handle_);
  }
  const auto status = static_cast<pd_status_t>(call->make());
  if (family == family_id::entry_add) require_added(status, what + to_string(entry), table_, key_, 0, where_);
  if (status != BF_SUCCESS) throw refused_error(status, what + to_string(entry));
}

void fib_table_access::fill_key(const routes::fib_entry &entry)
{
  for (const shown_field &field : key_fields_) {
    if (field.match == match_kind::partition) {
      write_value(field, entry.partition_index, key_.data());
    } else if (field.bits < 32) {
      write_value(field, routes::load_vrf, key_.data());
    } else {
      const wide_number address = wide_number{entry.destination.addr.hi} << 64 | entry.destination.addr.lo;
      write_value(field, address >> (128 - field.bits), key_.data());
      if (field.has_prefix()) write_prefix_length(field, entry.destination.length, key_.data());
    }
  }
}

const fib_table_access::ready_action &fib_table_access::action_for(const routes::fib_entry &entry) const
{
  if (entry.result == routes::no_route) {
    if (const ready_action *const found = ending_in(ending_without_result)) return *found;
  }
  const std::string_view ending = endings[static_cast<std::size_t>(entry.result.kind)];
  if (const ready_action *const found = ending_in(ending)) return *found;
  throw usage_error("table '" + std::string(table_.name) + "' has no action for routes: none ends in '" +
                    std::string(ending) + "'");
}

const fib_table_access::ready_action *fib_table_access::ending_in(std::string_view ending) const
{
  const auto found = std::ranges::find_if(
      actions_, [&](const auto &each) { return std::string_view(each.use->action->name).ends_with(ending); });
  return found == actions_.end() ? nullptr : &*found;
}

void fib_table_access::read(const std::function<void(const switch_fib_entry &)> &visit) const
{
  if (entry_count(table_, where_) == 0) return;
  entry_reader reader(table_, where_, false);
  handle_walk walk = handle_walk::entries(table_, where_);
  while (const auto handle = walk.next()) {
    const table_entry *const there = reader.read_if_there(*handle);
    if (there == nullptr) continue;
    switch_fib_entry found;
    found.entry.table = number_;
    found.other_vrf = !read_key(there->key, found.entry);
    found.foreign = !read_result(*there->action, there->parameters, found.entry);
    visit(found);
  }
}

bool fib_table_access::read_key(const record_memory &key, routes::fib_entry &entry) const
{
  entry.destination.fam = is_ipv4(table_.name) ? routes::family::ipv4 : routes::family::ipv6;
  for (const shown_field &field : key_fields_) {
    const wide_number value = read_value(field, key.data());
    if (field.match == match_kind::partition) {
      entry.partition_index = static_cast<std::uint16_t>(value);
    } else if (field.bits < 32) {
      if (value != routes::load_vrf) return false;
    } else {
      const wide_number address = value << (128 - field.bits);
      const unsigned length = field.has_prefix()
                                  ? std::min<unsigned>(read_prefix_length(field, key.data()), live_length(field))
                                  : field.bits;
      entry.destination.length = static_cast<std::uint8_t>(length);
      entry.destination.addr =
          routes::top_bits({static_cast<std::uint64_t>(address >> 64), static_cast<std::uint64_t>(address)}, length);
    }
  }
  return true;
}

bool fib_table_access::read_result(const action_info &action, const record_memory &parameters,
                                   routes::fib_entry &entry) const
{
  const std::string_view name = action.name;
  const auto ending = std::ranges::find_if(endings, [&](std::string_view each) { return name.ends_with(each); });
  const bool has_result = ending != endings.end();
  if (!has_result && !name.ends_with(ending_without_result)) return false;
  const ready_action &ready = *std::ranges::find(actions_, &action, [](const auto &each) { return each.use->action; });
  bool has_index = false;
  for (const shown_field &field : ready.parameters) {
    const auto value = static_cast<std::uint16_t>(read_value(field, parameters.data()));
    const bool is_index = is_partition_index(field);
    (is_index ? entry.partition_index : entry.result.value) = value;
    has_index = has_index || is_index;
  }
  if (!has_result) return true;
  entry.result.kind = static_cast<routes::hop_kind>(ending - endings.begin());
  // No route has the value 0; a block that no route covers has it where its table has no action for that.
  return entry.result.value != 0 || has_index;
}

}  // namespace tarvex::shell
