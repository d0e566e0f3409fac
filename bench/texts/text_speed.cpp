// How fast the library writes its texts: value text, labels, print text and schemas against the same text by formatted
// output of the C library, and schemas against a copy of the same bytes. Both sides run in turns, and the best turn of
// each counts. Ahead of that both sides' texts are compared.
//
// With --assert the status is 1 where value text is less than 8 times as fast as snprintf, or schema text has less than
// a third of the speed of the copy. With --json FILE the figures go there too. With --once there is one turn of few
// value texts, for a tool that counts instructions, and with --list the names of the two functions to count.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

#include "tarvex_pd/tarvex_pd.h"

namespace {

constexpr int turns = 15;
constexpr std::size_t room = 4096;

struct host {
  p4_pd_tarvex_switch_ipv4Host_match_spec_t key;
  p4_pd_tarvex_switch_setNextHop_action_spec_t action;
};

struct schema {
  std::uint32_t handle;
  std::string text;
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

std::vector<p4_pd_tarvex_switch_l2DmacClassify_match_spec_t> make_addresses(const std::vector<host> &hosts)
{
  std::vector<p4_pd_tarvex_switch_l2DmacClassify_match_spec_t> addresses(hosts.size());
  for (std::size_t i = 0; i < hosts.size(); ++i) {
    addresses[i].ig_intr_md_ingress_port = hosts[i].key.l3Info_vrfId;
    addresses[i].outerEthHdr_dmacOui = hosts[i].key.ingIpv4_dip;
    addresses[i].outerEthHdr_dmacStation = hosts[i].action.action_nextHop;
  }
  return addresses;
}

std::vector<schema> make_schemas()
{
  std::vector<schema> schemas;
  std::array<char, room> text;
  for (std::uint32_t handle = 0x1000001; handle <= 0x100007b; ++handle)
    if (p4_pd_tarvex_switch_cli_schema(handle, text.data()) > 2) schemas.push_back({handle, text.data()});
  return schemas;
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
  const int key = std::snprintf(to, room, "( 0x%02x,0x%08x,),", static_cast<unsigned>(host.key.l3Info_vrfId & 0xff),
                                host.key.ingIpv4_dip);
  const int action = std::snprintf(to + key, room, "('setNextHop',(0x%04x,)),", host.action.action_nextHop & 0xffff);
  return static_cast<std::uint32_t>(key + action);
}

extern "C" [[gnu::noinline]] void counted_rounds(const std::vector<host> &hosts)
{
  std::array<char, room> text;
  for (const host &host : hosts) {
    write_by_library(host, text.data());
    write_by_snprintf(host, text.data());
  }
}

namespace {

/// Characters that `write` makes of all items.
template <typename Item, typename Write>
std::size_t write_all(const std::vector<Item> &items, Write write)
{
  std::array<char, room> text;
  std::size_t characters = 0;
  for (const Item &item : items) {
    characters += static_cast<std::size_t>(write(item, text.data()));
    asm volatile("" : : "r"(text.data()) : "memory");
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
  double nanoseconds_each(std::size_t count) const { return seconds * 1e9 / static_cast<double>(count); }
};

struct figures {
  const char *what;
  const char *other;
  double wanted;  // speed against the other; 0 where it is told alone
  double library_ns, other_ns;
  bool same;

  double speed() const { return other_ns / library_ns; }
  bool good() const { return same && speed() >= wanted; }
};

/// Measures both ways over the same items, having compared the texts of the first ones.
template <typename Item, typename Library, typename Other>
figures compare(const char *what, const char *other_name, double wanted, const std::vector<Item> &items,
                Library library, Other other)
{
  bool same = true;
  std::array<char, room> ours, theirs;
  for (std::size_t i = 0; i < std::min<std::size_t>(items.size(), 1000); ++i) {
    const auto length = library(items[i], ours.data());
    same = same && length == other(items[i], theirs.data()) && std::strcmp(ours.data(), theirs.data()) == 0;
  }
  measured by_library, by_other;
  for (int turn = 0; turn < turns; ++turn) {
    by_library.take([&] { return write_all(items, library); });
    by_other.take([&] { return write_all(items, other); });
  }
  same = same && by_library.characters == by_other.characters;
  return {what, other_name, wanted, by_library.nanoseconds_each(items.size()), by_other.nanoseconds_each(items.size()),
          same};
}

/// Print text goes to a descriptor, whose texts stand in a file for the comparison and nowhere for the measurement.
struct print_target {
  int fd = ::open("/dev/null", O_WRONLY | O_CLOEXEC);

  static std::int32_t by_library(int fd, const host &host)
  {
    return p4_pd_tarvex_switch_ipv4Host_match_spec_print(fd, 2, &host.key);
  }
  static std::int32_t by_dprintf(int fd, const host &host)
  {
    dprintf(fd, "%*sp4_pd_tarvex_switch_ipv4Host_match_spec_t:\n", 2, "");
    dprintf(fd, "%*c l3Info_vrfId: 0x%02x\n", 2, ' ', static_cast<unsigned>(host.key.l3Info_vrfId & 0xff));
    return dprintf(fd, "%*c ingIpv4_dip: 0x%08x\n", 2, ' ', host.key.ingIpv4_dip);
  }
};

/// What a printer wrote.
template <typename Print>
std::string printed(Print print, const host &host)
{
  std::FILE *const file = std::tmpfile();
  if (file == nullptr) return "no temporary file";
  print(fileno(file), host);
  std::string text(room, '\0');
  std::rewind(file);
  text.resize(std::fread(text.data(), 1, text.size(), file));
  std::fclose(file);
  return text;
}

std::vector<figures> measure_all()
{
  const auto hosts = make_hosts(200'000);
  const auto addresses = make_addresses(hosts);
  std::vector<schema> schemas;
  for (int round = 0; round < 40; ++round)
    for (schema &schema : make_schemas()) schemas.push_back(std::move(schema));
  const auto compose = [](const schema &schema, char *to) {
    return static_cast<std::size_t>(p4_pd_tarvex_switch_cli_schema(schema.handle, to));
  };
  const print_target target;

  std::vector<figures> all;
  all.push_back(compare("value text", "snprintf", 8, hosts, write_by_library, write_by_snprintf));
  all.push_back(compare(
      "counter label", "snprintf", 0, addresses,
      [](const auto &key, char *to) {
        return p4_pd_tarvex_switch_l2DmacClassify_match_spec_stringify_for_counter(&key, to);
      },
      [](const auto &key, char *to) {
        return static_cast<std::uint32_t>(
            std::snprintf(to, room, "Ingress Port 0x%x dmacOui & 0xffffff 0x%x dmacStation & 0xffffff 0x%x ",
                          key.ig_intr_md_ingress_port & 0x7fu, key.outerEthHdr_dmacOui & 0xffffff,
                          key.outerEthHdr_dmacStation & 0xffffff));
      }));
  const std::vector<host> few(hosts.begin(), hosts.begin() + 50'000);
  all.push_back(compare(
      "print text", "dprintf", 0, few,
      [&](const host &host, char *to) {
        *to = '\0';
        return print_target::by_library(target.fd, host);
      },
      [&](const host &host, char *to) {
        *to = '\0';
        return print_target::by_dprintf(target.fd, host);
      }));
  all.back().same &= printed(print_target::by_library, few[0]) == printed(print_target::by_dprintf, few[0]);
  all.push_back(compare("schema text", "snprintf", 0, schemas, compose, [](const schema &schema, char *to) {
    return static_cast<std::size_t>(std::snprintf(to, room, "%s", schema.text.c_str()));
  }));
  all.push_back(compare("schema text", "a copy", 1.0 / 3, schemas, compose, [](const schema &schema, char *to) {
    std::memcpy(to, schema.text.c_str(), schema.text.size() + 1);
    return schema.text.size();
  }));
  return all;
}

bool write_json(const char *path, const std::vector<figures> &all)
{
  std::FILE *const file = std::fopen(path, "w");
  if (file == nullptr) return false;
  const char *before = "[\n";
  for (const figures &f : all) {
    std::fprintf(file, "%s{\"what\": \"%s\", \"other\": \"%s\", \"library_ns\": %.2f, \"other_ns\": %.2f}", before,
                 f.what, f.other, f.library_ns, f.other_ns);
    before = ",\n";
  }
  std::fputs("\n]\n", file);
  return std::fclose(file) == 0;
}

}  // namespace

int main(int argc, char **argv)
{
  const auto asked = [&](const char *option, int arguments) {
    return argc == 2 + arguments && std::strcmp(argv[1], option) == 0;
  };
  if (asked("--list", 0)) {
    std::puts("value text\twrite_by_library\twrite_by_snprintf");
    return 0;
  }
  if (asked("--once", 0)) {
    counted_rounds(make_hosts(1000));
    return 0;
  }
  if (argc > 1 && !asked("--assert", 0) && !asked("--json", 1)) {
    std::fputs("usage: text_speed [--assert | --json FILE | --once | --list]\n", stderr);
    return 2;
  }
  const auto all = measure_all();
  for (const figures &f : all)
    std::printf("%-14s %8.1f ns, %-8s %8.1f ns: %5.2f times as fast%s\n", f.what, f.library_ns, f.other, f.other_ns,
                f.speed(), f.same ? "" : ", and the texts differ");
  if (asked("--json", 1) && !write_json(argv[2], all)) {
    std::fprintf(stderr, "text_speed: cannot write %s\n", argv[2]);
    return 1;
  }
  const bool same = std::all_of(all.begin(), all.end(), [](const figures &f) { return f.same; });
  const bool good = std::all_of(all.begin(), all.end(), [](const figures &f) { return f.good(); });
  return same && (good || !asked("--assert", 0)) ? 0 : 1;
}
