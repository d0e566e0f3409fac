// Reads entries of the stand-in, each by its table's get_entry and as value text, for a tool that counts instructions.
// With --list it tells the names of the two functions.
//
// SPDX-License-Identifier: Apache-2.0
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <vector>

#include "tarvex_pd/tarvex_pd.h"
#include "tarvex_standin/standin.h"

namespace {

constexpr std::uint32_t session = 1, device = 0, table = 0x100000a, entries = 1000;

std::vector<pd_entry_hdl_t> add_hosts()
{
  std::vector<pd_entry_hdl_t> handles;
  for (std::uint32_t i = 0; i < entries; ++i) {
    const p4_pd_tarvex_switch_ipv4Host_match_spec_t key{static_cast<std::uint16_t>(i % 7), 0x0a000000 + i * 7919};
    const p4_pd_tarvex_switch_setNextHop_action_spec_t action{i & 0xffff};
    pd_entry_hdl_t handle;
    if (p4_pd_tarvex_switch_ipv4Host_table_add_with_setNextHop(session, pd_dev_tgt(device, PD_ALL_PIPES), &key, &action,
                                                               0, &handle) == BF_SUCCESS)
      handles.push_back(handle);
  }
  return handles;
}

}  // namespace

// By these names an instruction counter tells the two apart.

extern "C" [[gnu::noinline]] pd_status_t read_by_table(pd_entry_hdl_t handle)
{
  p4_pd_tarvex_switch_ipv4Host_match_spec_t key;
  std::uint32_t action[8], number;
  std::uint8_t no_key;
  return p4_pd_tarvex_switch_ipv4Host_get_entry(session, device, handle, 0, &key, nullptr, action, &number, &no_key);
}

extern "C" [[gnu::noinline]] std::uint32_t read_as_text(pd_entry_hdl_t handle)
{
  std::array<char, PD_ENTRY_TEXT_SIZE> text;
  return p4_pd_tarvex_switch_entry_value(session, device, table, handle, 0, text.data());
}

extern "C" [[gnu::noinline]] void counted_rounds(const std::vector<pd_entry_hdl_t> &handles)
{
  for (const pd_entry_hdl_t handle : handles) {
    read_by_table(handle);
    read_as_text(handle);
  }
}

int main(int argc, char **argv)
{
  if (argc == 2 && std::strcmp(argv[1], "--list") == 0) {
    std::puts("text of an entry\tread_as_text\tread_by_table");
    return 0;
  }
  p4_pd_tarvex_switch_init();
  standin_device_add(device);
  const auto handles = add_hosts();
  if (handles.size() != entries) {
    std::fputs("the stand-in did not take all entries\n", stderr);
    return 1;
  }
  counted_rounds(handles);
  return 0;
}
