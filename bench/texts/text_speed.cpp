// How fast the library writes its texts: entries as value text against the same text by snprintf, and the schema of all
// tables against a copy of the same bytes. Both sides run in turns, and the best turn of each counts.
//
// With --assert the status is 1 where value text is less than 8 times as fast as snprintf, or schema text has less than
// a third of the speed of the copy. With --once there is one turn of few texts, for a tool that counts instructions.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include "tarvex_pd/tarvex_pd.h"

namespace {

constexpr double value_speed_wanted = 8, schema_speed_wanted = 1.0 / 3;

struct host {
  p4_pd_tarvex_switch_ipv4Host_match_spec_t key;
  p4_pd_tarvex_switch_setNextHop_action_spec_t action;
};

/// How much is measured.
struct work {
  int turns = 15;
  std::size_t hosts = 1'000'000;
  int schema_rounds = 200;
};

/// Hosts whose values have digits of all kinds.
std::vector<host> make_hosts(std::size_t count)
{
  std::vector<host> hosts(count);
  std::uint32_t state = 1;
  for (host &host : hosts) {
    state = state * 1664525 + 1013904223;
    host.key.l3Info_vrfId = static_cast<std::uint16_t>(state >> 24);
    host.key.ingIpv4_dip = state ^ state >> 13;
    host.action.action_nextHop = state >> 16;
  }
  return hosts;
}

}  // namespace

// By these names an instruction counter tells the two apart.

extern "C" [[gnu::noinline]] std::uint32_t write_by_library(const host &host, char *to)
{
  const std::uint32_t key = p4_pd_tarvex_switch_ipv4Host_match_spec_value(&host.key, to);
  return key + p4_pd_tarvex_switch_setNextHop_value(&host.action, to + key);
}

extern "C" [[gnu::noinline]] std::uint32_t write_by_snprintf(const host &host, char *to)
{
  constexpr std::size_t room = 128;
  const int key = std::snprintf(to, room, "( 0x%02x,0x%08x,),", static_cast<unsigned>(host.key.l3Info_vrfId & 0xff),
                                host.key.ingIpv4_dip);
  const int action = std::snprintf(to + key, room, "('setNextHop',(0x%04x,)),", host.action.action_nextHop & 0xffff);
  return static_cast<std::uint32_t>(key + action);
}

namespace {

template <typename Write>
std::size_t write_all(const std::vector<host> &hosts, Write write)
{
  std::array<char, 256> text;
  std::size_t characters = 0;
  for (const host &host : hosts) {
    characters += write(host, text.data());
    asm volatile("" : : "r"(text.data()) : "memory");
  }
  return characters;
}

struct schema {
  std::uint32_t handle;
  std::string text;
};

std::vector<schema> make_schemas()
{
  std::vector<schema> schemas;
  std::array<char, 4096> text;
  for (std::uint32_t handle = 0x1000001; handle <= 0x100007b; ++handle) {
    if (p4_pd_tarvex_switch_cli_schema(handle, text.data()) > 2) schemas.push_back({handle, text.data()});
  }
  return schemas;
}

template <typename Write>
std::size_t write_schemas(const std::vector<schema> &schemas, int rounds, Write write)
{
  std::array<char, 4096> text;
  std::size_t characters = 0;
  for (int round = 0; round < rounds; ++round) {
    for (const schema &schema : schemas) {
      characters += write(schema, text.data());
      asm volatile("" : : "r"(text.data()) : "memory");
    }
  }
  return characters;
}

struct measured {
  double seconds = std::numeric_limits<double>::max();
  std::size_t characters = 0;

  template <typename Work>
  void take(Work work)
  {
    const auto begin = std::chrono::steady_clock::now();
    characters = work();
    seconds = std::min(seconds, std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count());
  }
};

/// Tells of two measurements of the same text; whether the first is fast enough.
bool compare(const char *what, const measured &library, const measured &other, double wanted)
{
  const double ratio = other.seconds / library.seconds;
  std::printf("%-12s %8.1f MB/s, %s %8.1f MB/s: %.2f times as fast, %.2f wanted\n", what,
              static_cast<double>(library.characters) / library.seconds / 1e6, wanted > 1 ? "snprintf" : "copying ",
              static_cast<double>(other.characters) / other.seconds / 1e6, ratio, wanted);
  if (library.characters != other.characters) std::printf("%s: lengths differ\n", what);
  return ratio >= wanted && library.characters == other.characters;
}

}  // namespace

int main(int argc, char **argv)
{
  const bool asserted = argc == 2 && std::strcmp(argv[1], "--assert") == 0;
  const bool once = argc == 2 && std::strcmp(argv[1], "--once") == 0;
  if (argc > 1 && !asserted && !once) {
    std::fputs("usage: text_speed [--assert | --once]\n", stderr);
    return 2;
  }
  const work work = once ? ::work{1, 1000, 1} : ::work{};
  const auto hosts = make_hosts(work.hosts);
  const auto schemas = make_schemas();
  measured values, printed, composed, copied;
  for (int turn = 0; turn < work.turns; ++turn) {
    values.take([&] { return write_all(hosts, write_by_library); });
    printed.take([&] { return write_all(hosts, write_by_snprintf); });
    composed.take([&] {
      return write_schemas(schemas, work.schema_rounds, [](const schema &schema, char *to) {
        return static_cast<std::size_t>(p4_pd_tarvex_switch_cli_schema(schema.handle, to));
      });
    });
    copied.take([&] {
      return write_schemas(schemas, work.schema_rounds, [](const schema &schema, char *to) {
        std::memcpy(to, schema.text.c_str(), schema.text.size() + 1);
        return schema.text.size();
      });
    });
  }
  const bool fast_values = compare("value text", values, printed, value_speed_wanted);
  const bool fast_schemas = compare("schema text", composed, copied, schema_speed_wanted);
  return asserted && !(fast_values && fast_schemas) ? 1 : 0;
}
