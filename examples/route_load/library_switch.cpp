// A device of the stand-in switch, programmed and read through the library, and looked up in directly.
//
// SPDX-License-Identifier: Apache-2.0
#include "library_switch.h"

#include <tarvex_standin/standin.h>

#include <algorithm>
#include <type_traits>

#include "table_access.h"

namespace tarvex::route_load {
namespace {

constexpr std::uint32_t device_id = 0;
constexpr switch_target target{1, device_id, std::uint64_t{PD_ALL_PIPES} << 32 | device_id};

void must(pd_status_t status, const std::string &what)
{
  if (status == BF_SUCCESS) return;
  const char *name = standin_status_name(status);
  throw driver_refused(what + ": the driver answers status " + std::to_string(status) +
                       (name != nullptr ? std::string(" (") + name + ')' : ""));
}

/// The text is made when it is wanted only: a full table would pay for it a million times.
template <typename Text>
requires std::is_invocable_v<Text>
void must(pd_status_t status, Text what)
{
  if (status != BF_SUCCESS) must(status, what());
}

/// More than any table holds: a walk that comes this far runs in a circle.
constexpr std::size_t most_entries = std::size_t{1} << 24;

std::string walk_of(fib_table table) { return std::string("walking ") + table_name(table); }

}  // namespace

library_switch::library_switch()
{
  must(standin_device_add(device_id), "adding device " + std::to_string(device_id));
  must(p4_pd_tarvex_switch_init(), "starting the library");
}

library_switch::~library_switch()
{
  p4_pd_tarvex_switch_cleanup();
  standin_device_remove(device_id);
}

entry_handle library_switch::add(const fib_entry &entry)
{
  pd_entry_hdl_t handle = 0;
  must(access_to(entry.table).add(target, entry, handle), [&] { return "adding " + to_string(entry); });
  return handle;
}

std::vector<entry_handle> library_switch::walk(fib_table table)
{
  const auto &access = access_to(table);
  std::vector<entry_handle> handles;
  std::array<pd_entry_hdl_t, 1024> batch{};
  pd_status_t status = access.first(target, batch[0]);
  std::size_t got = 1;
  while (status != STANDIN_END && got != 0) {
    must(status, [&] { return walk_of(table); });
    handles.insert(handles.end(), batch.begin(), batch.begin() + static_cast<std::ptrdiff_t>(got));
    if (handles.size() > most_entries) throw driver_refused(walk_of(table) + ": it does not end");
    status = access.next(target, handles.back(), batch);
    got = static_cast<std::size_t>(std::ranges::find(batch, STANDIN_NO_HANDLE) - batch.begin());
  }
  return handles;
}

fib_entry library_switch::read(fib_table table, entry_handle handle)
{
  fib_entry entry;
  must(access_to(table).read(target, handle, entry),
       [&] { return std::string("reading ") + table_name(table) + ", entry handle " + std::to_string(handle); });
  return entry;
}

bool library_switch::reads_back_as(const fib_entry &expected, entry_handle handle)
{
  bool same = false;
  must(access_to(expected.table).compare(target, handle, expected, same),
       [&] { return "reading back " + to_string(expected); });
  return same;
}

std::optional<entry_handle> library_switch::lookup(fib_table table, const lookup_key &key)
{
  pd_entry_hdl_t handle = 0;
  const auto status = standin_lookup(target.all_pipes, access_to(table).table_handle(), key.bytes.data(), key.size,
                                     key.partition_index, &handle);
  if (status == STANDIN_NO_ENTRY) return std::nullopt;
  must(status, [&] { return std::string("looking up in ") + table_name(table); });
  return handle;
}

}  // namespace tarvex::route_load
