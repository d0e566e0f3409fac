// One route into a driver's records by the library, beside the same route as a netlink message by libmnl and as a
// protobuf message, built and serialised: what engineers know, in one run.
//
// SPDX-License-Identifier: Apache-2.0
#include <array>
#include <cstdint>
#include <cstring>
#include <string>

#include <benchmark/benchmark.h>
#include <google/protobuf/arena.h>
#include <libmnl/libmnl.h>
#include <linux/rtnetlink.h>

#include "entry.pb.h"
#include "tarvex_pd/tarvex_pd.h"

namespace {

struct route {
  std::uint16_t vrf;
  std::uint32_t address;
  std::uint16_t prefix_length;
  std::uint16_t partition;
  std::uint16_t group;
};

/// Another route each time.
route next_route()
{
  static std::uint32_t state = 1;
  state = state * 1664525 + 1013904223;
  return {static_cast<std::uint16_t>(state >> 24), state, static_cast<std::uint16_t>(8 + (state >> 8) % 25),
          static_cast<std::uint16_t>(state >> 16), static_cast<std::uint16_t>(state >> 3)};
}

void library_add(benchmark::State &state)
{
  for (auto _ : state) {
    const route r = next_route();
    const p4_pd_tarvex_switch_ipv4Partition_match_spec_t key{r.vrf, r.address, r.prefix_length};
    const p4_pd_tarvex_switch_setIpv4PrtIdxEcmp_action_spec_t action{r.partition, r.group};
    pd_entry_hdl_t entry = 0;
    benchmark::DoNotOptimize(p4_pd_tarvex_switch_ipv4Partition_table_add_with_setIpv4PrtIdxEcmp(
        1, pd_dev_tgt(0, PD_ALL_PIPES), &key, &action, &entry));
  }
}
BENCHMARK(library_add);

void libmnl_route(benchmark::State &state)
{
  std::array<char, 512> buffer;
  for (auto _ : state) {
    const route r = next_route();
    nlmsghdr *const header = mnl_nlmsg_put_header(buffer.data());
    header->nlmsg_type = RTM_NEWROUTE;
    header->nlmsg_flags = NLM_F_REQUEST | NLM_F_CREATE | NLM_F_EXCL;
    header->nlmsg_seq = r.address;
    auto *const message = static_cast<rtmsg *>(mnl_nlmsg_put_extra_header(header, sizeof(rtmsg)));
    message->rtm_family = AF_INET;
    message->rtm_dst_len = static_cast<unsigned char>(r.prefix_length);
    message->rtm_table = RT_TABLE_UNSPEC;
    message->rtm_protocol = RTPROT_STATIC;
    message->rtm_scope = RT_SCOPE_UNIVERSE;
    message->rtm_type = RTN_UNICAST;
    mnl_attr_put_u32(header, RTA_TABLE, r.vrf);
    mnl_attr_put_u32(header, RTA_DST, __builtin_bswap32(r.address));
    mnl_attr_put_u32(header, RTA_OIF, r.partition);
    mnl_attr_put_u32(header, RTA_GATEWAY, r.group);
    benchmark::DoNotOptimize(buffer);
    benchmark::ClobberMemory();
  }
}
BENCHMARK(libmnl_route);

template <typename Number>
std::string bytes_of(Number number)
{
  std::string bytes(sizeof number, '\0');
  for (std::size_t i = sizeof number; i-- > 0; number = static_cast<Number>(number >> 8))
    bytes[i] = static_cast<char>(number);
  return bytes;
}

void fill(tarvex::bench::Entry &entry, const route &r)
{
  entry.set_table(0x100000c);
  tarvex::bench::KeyField *field = entry.add_key();
  field->set_field(1);
  field->set_value(bytes_of(static_cast<std::uint8_t>(r.vrf)));
  field = entry.add_key();
  field->set_field(2);
  field->set_value(bytes_of(r.address));
  field->set_prefix_length(r.prefix_length);
  tarvex::bench::Action *const action = entry.mutable_action();
  action->set_action(0x200000a4);
  tarvex::bench::Parameter *parameter = action->add_parameters();
  parameter->set_parameter(1);
  parameter->set_value(bytes_of(r.partition));
  parameter = action->add_parameters();
  parameter->set_parameter(2);
  parameter->set_value(bytes_of(r.group));
}

void serialise(const tarvex::bench::Entry &entry)
{
  std::array<char, 512> buffer;
  benchmark::DoNotOptimize(entry.SerializeToArray(buffer.data(), static_cast<int>(buffer.size())));
  benchmark::DoNotOptimize(buffer);
  benchmark::ClobberMemory();
}

void protobuf_plain(benchmark::State &state)
{
  for (auto _ : state) {
    tarvex::bench::Entry entry;
    fill(entry, next_route());
    serialise(entry);
  }
}
BENCHMARK(protobuf_plain);

/// The arena begins in a block that is there for all rounds.
void protobuf_arena(benchmark::State &state)
{
  alignas(8) std::array<char, 4096> block;
  google::protobuf::ArenaOptions options;
  options.initial_block = block.data();
  options.initial_block_size = block.size();
  for (auto _ : state) {
    google::protobuf::Arena arena(options);
    auto *const entry = google::protobuf::Arena::CreateMessage<tarvex::bench::Entry>(&arena);
    fill(*entry, next_route());
    serialise(*entry);
  }
}
BENCHMARK(protobuf_arena);

}  // namespace

BENCHMARK_MAIN();
