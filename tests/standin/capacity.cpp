// Fills the route table and measures time and memory: `standin_capacity ENTRIES MOST_BYTES` fails where an entry takes
// more than MOST_BYTES bytes beyond its key, mask and action data.
//
// SPDX-License-Identifier: Apache-2.0
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <vector>

#include <malloc.h>

#include "switch_fixture.h"

namespace {

std::size_t bytes_in_use()
{
  const auto info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

/// Runs work(i) for i below n; says how long one took.
bool measure(const char *what, std::uint32_t n, const std::function<bool(std::uint32_t)> &work)
{
  const auto start = std::chrono::steady_clock::now();
  for (std::uint32_t i = 0; i < n; ++i)
    if (!work(i)) {
      std::printf("%s: number %u failed\n", what, i);
      return false;
    }
  const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - start;
  std::printf("%s: %.3f s, %.0f ns each\n", what, passed.count(), passed.count() * 1e9 / n);
  return true;
}

}  // namespace

int main(int argc, char **argv)
{
  const auto entries = static_cast<std::uint32_t>(argc > 1 ? std::atol(argv[1]) : 1000000);
  const double most_bytes = argc > 2 ? std::atof(argv[2]) : 200;
  if (standin_device_add(device) != BF_SUCCESS) return EXIT_FAILURE;

  // Prefixes of 16 to 32 bits in 512 partitions; the multiplication spreads the addresses without repeating one.
  const auto prefix = [](std::uint32_t i) { return 16 + i % 17; };
  const auto address = [](std::uint32_t i) { return i / 17 * 2654435761u; };
  const auto partition = [](std::uint32_t i) { return i / 17 % 512; };
  std::vector<pd_entry_hdl_t> handles(entries);
  std::uint8_t data[] = {1, 2, 3, 4};
  drv_action_spec_t action{};
  action.act_kinds = DRV_ACT_DATA;
  action.act_data.data_bits = 32;
  action.act_data.data_bytes = 4;
  action.act_data.data = data;
  std::uint32_t held = 0;
  const std::size_t before = bytes_in_use();
  bool good = measure("add", entries, [&](std::uint32_t i) {
    key_record key = route_key(partition(i), address(i), prefix(i));
    const pd_status_t status =
        pipe_mgr_mat_ent_add(session, target, route_table, &key, route, &action, 0, 0, &handles[i]);
    held += status == BF_SUCCESS ? 1 : 0;
    return status == BF_SUCCESS || status == STANDIN_EXISTS;  // short prefixes of a partition may meet
  });
  const double each = static_cast<double>(bytes_in_use() - before) / held - 2 * 6 - 4;
  std::printf("%u entries, %.1f bytes each beyond key, mask and data\n", held, each);
  good = good && measure("get_entry", entries, [&](std::uint32_t i) {
           read_back got(6);
           return handles[i] == 0 || got.read(route_table, handles[i]) == BF_SUCCESS;
         });
  good = good && measure("lookup", 100000, [&](std::uint32_t i) {
           const key_record key = route_key(partition(i), address(i), 32);
           pd_entry_hdl_t found = 0;
           return standin_lookup(target, route_table, key.value.data(), 6, partition(i), &found) == BF_SUCCESS;
         });
  good = good && measure("delete", entries, [&](std::uint32_t i) {
           return handles[i] == 0 || pipe_mgr_mat_ent_del(session, device, route_table, handles[i], 0) == BF_SUCCESS;
         });
  standin_reset();
  return good && each <= most_bytes ? EXIT_SUCCESS : EXIT_FAILURE;
}
