// The command that loads a routing table: which route goes into which tables is planned as the example does.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <array>
#include <memory>

#include "commands.h"
#include "counted.h"
#include "fib_entries.h"
#include "fields.h"
#include "plain_file.h"
#include "records.h"
#include "route_file.h"
#include "session.h"
#include "status_text.h"

namespace tarvex::shell {

using enum argument_kind;

namespace {

namespace routes = route_load;

/// An action of a forwarding table, ready to be added with.
struct ready_action {
  const use_info *use;
  std::vector<shown_field> parameters;
  std::unique_ptr<function_call> add;
};

/// Adds entries to one forwarding table, by its rows.
class fib_writer {
 public:
  fib_writer(routes::fib_table table, const target &where)
      : table_(table_named(routes::table_name(table))), key_fields_(key_fields(table_))
  {
    for (const use_info &use : table_.actions) {
      ready_action ready{&use, parameter_fields(*use.action), nullptr};
      ready.add = std::make_unique<function_call>(function_for(family_id::entry_add, use), where);
      ready.add->give(match_spec, key_.data()).give(action_spec, parameters_.data());
      ready.add->give(ttl, std::uint64_t{0}).give(entry_hdl_out, &handle_);
      actions_.push_back(std::move(ready));
    }
  }
  fib_writer(const fib_writer &) = delete;
  fib_writer &operator=(const fib_writer &) = delete;

  void add(const routes::fib_entry &entry)
  {
    fill_key(entry);
    ready_action &action = action_for(entry);
    for (const shown_field &field : action.parameters) {
      const bool index = field.name.find("artition") != std::string::npos;
      write_value(field, index ? entry.partition_index : entry.result.value, parameters_.data());
    }
    const auto status = static_cast<pd_status_t>(action.add->make());
    if (status != BF_SUCCESS) throw refused_error(status, "adding " + to_string(entry));
  }

 private:
  void fill_key(const routes::fib_entry &entry)
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

  /// The actions of a table carry the kind of the result at the end of their names; one without a result, where a table
  /// has it, is for a block that no route covers.
  ready_action &action_for(const routes::fib_entry &entry)
  {
    static constexpr std::array<std::string_view, 4> endings = {"NextHop", "NextHop2", "NextHop3", "Ecmp"};
    if (entry.result == routes::no_route) {
      if (ready_action *const found = ending_in("PartIdx")) return *found;
    }
    return *ending_in(endings[static_cast<std::size_t>(entry.result.kind)]);
  }

  ready_action *ending_in(std::string_view ending)
  {
    const auto found = std::ranges::find_if(
        actions_, [&](const auto &each) { return std::string_view(each.use->action->name).ends_with(ending); });
    return found == actions_.end() ? nullptr : &*found;
  }

  const table_info &table_;
  std::vector<shown_field> key_fields_;
  std::vector<ready_action> actions_;
  record_memory key_;
  record_memory parameters_;
  std::uint32_t handle_ = 0;
};

routes::route_list read_routes(const invocation &call, const std::string &file)
{
  const plain_file readable(file);  // the reader of routes would wait for the writer of a pipe
  try {
    return routes::read_route_file(file, [&](std::uint64_t done, std::uint64_t total) {
      call.shell.check_interrupt();
      call.out.progress("reading", done, total);
    });
  } catch (const routes::file_error &error) {
    throw file_error(error.what());
  }
}

}  // namespace

exit_code load_routes(const invocation &call)
{
  call.expect_at_most(1);
  const std::string file = call.path(call.word(0, "FILE"));
  const routes::route_list list = read_routes(call, file);
  for (const routes::bad_line &bad : list.bad_lines.kept()) {
    call.out.note(file + ':' + std::to_string(bad.line) + ": " + bad.reason);
  }
  if (list.routes.empty()) throw file_error(file + ": holds no route");
  const routes::load_plan plan = routes::make_plan(list.routes);
  const std::vector<routes::fib_entry> entries = routes::make_entries(list.routes, plan);
  if (!call.chosen.dry_run) {
    std::array<std::unique_ptr<fib_writer>, routes::fib_table_count> writers;
    std::uint64_t done = 0;
    for (const routes::fib_entry &entry : entries) {
      call.shell.check_interrupt();
      auto &writer = writers[static_cast<std::size_t>(entry.table)];
      if (writer == nullptr) writer = std::make_unique<fib_writer>(entry.table, call.where());
      writer->add(entry);
      if (++done % 4096 == 0) call.out.progress("loading", done, entries.size());
    }
  }
  const std::uint64_t loaded = list.routes.size() - plan.routes_not_loaded;
  call.result(counted(loaded, "route") + " in " + counted(entries.size(), "entry", "entries") +
                  (call.chosen.dry_run ? ", checked only" : ""),
              {{"done", !call.chosen.dry_run},
               {"routes", loaded},
               {"entries", entries.size()},
               {"routes_not_loaded", plan.routes_not_loaded},
               {"bad_lines", list.bad_lines.count()}});
  if (plan.routes_not_loaded != 0) {
    call.out.note(counted(plan.routes_not_loaded, "route") + " found no partition index");
  }
  if (list.bad_lines.count() != 0)
    call.out.note(counted(list.bad_lines.count(), "line is no route", "lines are no routes"));
  return exit_code::ok;
}

}  // namespace tarvex::shell
