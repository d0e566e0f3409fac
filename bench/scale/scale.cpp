// A control loop that programs hosts into the stand-in switch, at sizes up to millions of entries, through the library
// or, for comparison, by the driver's function alone with records that are ready but for the address.
//
//   scale fill library|driver ENTRIES      seconds, and bytes of memory for each entry
//   scale writers library|driver ENTRIES   seconds of one writer, and of two on two devices at once
//   scale read ENTRIES                     nanoseconds of get_entry and of entry_value, entries at random
//   scale count ENTRIES                    adds the last 1000 within counted_rounds, for a tool that counts
//   instructions
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string_view>
#include <thread>
#include <vector>

#include <unistd.h>

#include "tarvex_pd/tarvex_pd.h"
#include "tarvex_platform/driver.h"
#include "tarvex_standin/standin.h"

namespace {

constexpr std::uint32_t session = 1, table = 0x100000a, set_next_hop = 0x2000007b;

/// Every number once, in an order that no cache foresees.
std::uint32_t address_of(std::uint32_t entry) { return entry * 2654435761u; }

[[noreturn]] void refused(pd_status_t status)
{
  std::fprintf(stderr, "scale: the stand-in answers with status %u\n", status);
  std::exit(1);
}

pd_entry_hdl_t add_by_library(std::uint32_t device, std::uint32_t entry)
{
  const p4_pd_tarvex_switch_ipv4Host_match_spec_t key{1, address_of(entry)};
  const p4_pd_tarvex_switch_setNextHop_action_spec_t action{entry & 0xffff};
  pd_entry_hdl_t handle = 0;
  const pd_status_t status = p4_pd_tarvex_switch_ipv4Host_table_add_with_setNextHop(
      session, pd_dev_tgt(device, PD_ALL_PIPES), &key, &action, 0, &handle);
  if (status != BF_SUCCESS) refused(status);
  return handle;
}

pd_entry_hdl_t add_by_driver(std::uint32_t device, std::uint32_t entry)
{
  struct ready_records {
    std::uint8_t value[5] = {1}, mask[5] = {0xff, 0xff, 0xff, 0xff, 0xff}, data[2] = {};
    drv_match_spec_t key{};
    drv_action_spec_t action{};

    ready_records()
    {
      key.key_bits = 40;
      key.key_bytes = sizeof value;
      key.key_value = value;
      key.key_mask = mask;
      action.act_kinds = DRV_ACT_DATA;
      action.act_data.data_bits = 16;
      action.act_data.data_bytes = sizeof data;
      action.act_data.data = data;
    }
  };
  thread_local ready_records records;
  const std::uint32_t address = __builtin_bswap32(address_of(entry));
  std::memcpy(records.value + 1, &address, sizeof address);
  pd_entry_hdl_t handle = 0;
  const pd_status_t status = pipe_mgr_mat_ent_add(session, pd_dev_tgt(device, PD_ALL_PIPES), table, &records.key,
                                                  set_next_hop, &records.action, 0, 0, &handle);
  if (status != BF_SUCCESS) refused(status);
  return handle;
}

using add_function = pd_entry_hdl_t (*)(std::uint32_t device, std::uint32_t entry);

add_function add_by(std::string_view way)
{
  if (way == "library") return add_by_library;
  if (way == "driver") return add_by_driver;
  return nullptr;
}

template <typename Work>
double seconds_of(Work work)
{
  const auto begin = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

void fill_device(add_function add, std::uint32_t device, std::uint32_t entries)
{
  for (std::uint32_t i = 0; i < entries; ++i) add(device, i);
}

std::size_t resident_bytes()
{
  unsigned long all = 0, resident = 0;
  if (std::FILE *const file = std::fopen("/proc/self/statm", "r")) {
    if (std::fscanf(file, "%lu %lu", &all, &resident) != 2) resident = 0;
    std::fclose(file);
  }
  return resident * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
}

void fill(add_function add, std::uint32_t entries)
{
  standin_device_add(0);
  const std::size_t before = resident_bytes();
  const double seconds = seconds_of([&] { fill_device(add, 0, entries); });
  std::printf("%.6f %.1f\n", seconds, static_cast<double>(resident_bytes() - before) / entries);
}

void race_writers(add_function add, std::uint32_t entries)
{
  double one = std::numeric_limits<double>::max(), two = one;
  for (int turn = 0; turn < 5; ++turn) {
    standin_reset();
    standin_device_add(0);
    one = std::min(one, seconds_of([&] { fill_device(add, 0, entries); }));
    standin_reset();
    standin_device_add(0);
    standin_device_add(1);
    two = std::min(two, seconds_of([&] {
                     std::thread other(fill_device, add, 1, entries);
                     fill_device(add, 0, entries);
                     other.join();
                   }));
  }
  std::printf("%.6f %.6f\n", one, two);
}

/// Nanoseconds of one read. Each waits for the answer of the one before, as a tool's does: the processor shall not hide
/// what the next read waits for behind the text of this one. `read_entry` answers with 0, which the compiler cannot
/// know.
template <class Read>
double time_of_reads(const std::vector<pd_entry_hdl_t> &handles, Read read_entry)
{
  const auto entries = static_cast<std::uint32_t>(handles.size());
  const double seconds = seconds_of([&] {
    std::uint32_t answer = 0;
    for (std::uint32_t i = 0; i < entries; ++i) answer = read_entry(handles[(address_of(i) + answer) % entries]);
  });
  return seconds * 1e9 / entries;
}

/// 0, once what was read is there.
std::uint32_t nothing_of(std::uint32_t read)
{
  static const volatile std::uint32_t no_bits = 0;
  return read & no_bits;
}

void read_at_random(std::uint32_t entries)
{
  standin_device_add(0);
  std::vector<pd_entry_hdl_t> handles;
  for (std::uint32_t i = 0; i < entries; ++i) handles.push_back(add_by_library(0, i));
  double typed = std::numeric_limits<double>::max(), text = typed;
  for (int turn = 0; turn < 7; ++turn) {
    typed = std::min(typed, time_of_reads(handles, [](pd_entry_hdl_t handle) {
                       p4_pd_tarvex_switch_ipv4Host_match_spec_t key;
                       std::uint32_t action[8], number;
                       std::uint8_t no_key;
                       p4_pd_tarvex_switch_ipv4Host_get_entry(session, 0, handle, 0, &key, nullptr, action, &number,
                                                              &no_key);
                       return nothing_of(key.ingIpv4_dip);
                     }));
    text = std::min(text, time_of_reads(handles, [](pd_entry_hdl_t handle) {
                      std::array<char, PD_ENTRY_TEXT_SIZE> to;
                      return nothing_of(p4_pd_tarvex_switch_entry_value(session, 0, table, handle, 0, to.data()));
                    }));
  }
  std::printf("%.1f %.1f\n", typed, text);
}

}  // namespace

extern "C" [[gnu::noinline]] void counted_rounds(std::uint32_t from, std::uint32_t to)
{
  for (std::uint32_t i = from; i < to; ++i) add_by_library(0, i);
}

namespace {

void count_last_adds(std::uint32_t entries)
{
  constexpr std::uint32_t counted = 1000;
  const std::uint32_t first = entries > counted ? entries - counted : 0;
  standin_device_add(0);
  fill_device(add_by_library, 0, first);
  counted_rounds(first, entries);
}

int usage()
{
  std::fputs("usage: scale fill|writers library|driver ENTRIES | read|count ENTRIES\n", stderr);
  return 2;
}

}  // namespace

int main(int argc, char **argv)
{
  if (argc < 3) return usage();
  const std::string_view what = argv[1];
  const auto entries = static_cast<std::uint32_t>(std::strtoul(argv[argc - 1], nullptr, 10));
  if (entries == 0) return usage();
  p4_pd_tarvex_switch_init();
  if (argc == 3) {
    if (what != "read" && what != "count") return usage();
    (what == "read" ? read_at_random : count_last_adds)(entries);
    return 0;
  }
  const add_function add = add_by(argv[2]);
  if (argc != 4 || add == nullptr || (what != "fill" && what != "writers")) return usage();
  (what == "fill" ? fill : race_writers)(add, entries);
  return 0;
}
