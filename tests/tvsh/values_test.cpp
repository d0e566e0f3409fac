// Values as text: each kind of display, there and back.
//
// SPDX-License-Identifier: Apache-2.0
#include "value_text.h"

#include <gtest/gtest.h>

#include "nearest.h"
#include "records.h"
#include "shell_error.h"

namespace tarvex::shell {
namespace {

struct text_case {
  const char *table;
  const char *field;
  const char *given;
  const char *shown;
  const char *raw;
};

TEST(values, are_shown_by_their_display_kind)
{
  static constexpr text_case cases[] = {
      {"ipv4Host", "dip", "255.0.1.2", "255.0.1.2", "0xff000102"},
      {"ipv4Host", "vrfId", "0x10", "16", "0x10"},
      {"ipv4Host", "vrfId", "255", "255", "0xff"},
      {"ipv6Host", "dip", "2001:DB8::1", "2001:db8::1", "0x20010db8000000000000000000000001"},
      {"ipv6Host", "dip", "ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff", "ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff",
       "0xffffffffffffffffffffffffffffffff"},
      {"l2Lookup", "dmac", "02-1C-73-aB-cd-eF", "02:1c:73:ab:cd:ef", "0x21c73abcdef"},
      {"l2Lookup", "dmac", "0x1", "00:00:00:00:00:01", "0x1"},
      {"ipv4ShortMaskLpm", "dip", "10.0.0.0/8", "10.0.0.0/8", "0xa000000/8"},
      {"ipv4ShortMaskLpm", "dip", "10.0.0.0", "10.0.0.0/32", "0xa000000/32"},
      {"ipv6ShortMaskLpm", "dip", "::/0", "::/0", "0x0/0"},
      {"tunnelTermination", "dip", "10.1.0.0/16", "10.1.0.0/16", "0xa010000/0xffff0000"},
      {"tunnelTermination", "dip", "10.1.0.0/255.0.255.0", "10.1.0.0/255.0.255.0", "0xa010000/0xff00ff00"},
      {"tunnelTermination", "dip", "0.0.0.0/0", "*", "*"},
      {"tunnelTermination", "tunnelType", "5/6", "5/0x6", "0x5/0x6"},
      {"tunnelTermination", "tunnelType", "5", "5", "0x5"},
      {"tunnelTermination", "tunnelType", "5/0", "5/0x0", "0x5/0x0"},
      {"tunnelTermination", "dmac", "02:00:00:00:00:00/8", "02:00:00:00:00:00/ff:00:00:00:00:00",
       "0x20000000000/0xff0000000000"},
      {"tunnelTermination", "dmac", "02:00:00:00:00:00/ff:00:00:00:00:00", "02:00:00:00:00:00/ff:00:00:00:00:00",
       "0x20000000000/0xff0000000000"},
  };
  for (const text_case &each : cases) {
    const auto fields = key_fields(table_named(each.table));
    const shown_field *const field = find_field(fields, each.field);
    ASSERT_NE(field, nullptr) << each.table << ' ' << each.field;
    record_memory record;
    parse_match(*field, each.given, record.data());
    for (const bool raw : {false, true}) {
      std::string text;
      append_match(text, *field, record.data(), raw);
      EXPECT_EQ(text, raw ? each.raw : each.shown) << each.table << ' ' << each.given;
      EXPECT_LE(text.size(), longest_text(*field, raw)) << text;
    }
  }
}

TEST(values, that_are_none_are_refused)
{
  const auto fields = key_fields(table_named("tunnelTermination"));
  for (const auto &[name, given] : std::initializer_list<std::pair<const char *, const char *>>{
           {"tunnelType", ""},
           {"tunnelType", "8"},
           {"tunnelType", "-1"},
           {"tunnelType", "1 "},
           {"tunnelType", "0x"},
           {"tunnelType", "1/"},
           {"tunnelType", "1/8"},
           {"tunnelType", "340282366920938463463374607431768211457"},
           {"dip", "10.0.0.0/33"},
           {"dmac", "02:00:00:00:00:00/49"},
           {"dip", "1.2.3.4.5"},
           {"dip", "10.0.0.0/8/8"},
           {"dmac", "00:00:00:00:00"},
           {"dmac", "00:00:00:00:00:0g"},
           {"dmac", "0000:00:00:00:00"},
           {"dmac", "0x1000000000000"}}) {
    record_memory record;
    EXPECT_THROW(parse_match(*find_field(fields, name), given, record.data()), usage_error) << name << '=' << given;
  }
}

TEST(nearest_names, come_by_distance)
{
  static constexpr std::string_view tables[] = {"ipv4Host", "ipv6Host", "nextHop", "ipv4McGroupVlan"};
  EXPECT_EQ(no_such("table", "ipv4host", tables), "there is no table 'ipv4host'; did you mean ipv4Host or ipv6Host?");
  EXPECT_EQ(no_such("table", "McGroup", tables), "there is no table 'McGroup'; did you mean ipv4McGroupVlan?");
  EXPECT_EQ(no_such("table", "zzzzz", tables),
            "there is no table 'zzzzz'; there are ipv4Host, ipv6Host, nextHop, ipv4McGroupVlan");
}

}  // namespace
}  // namespace tarvex::shell
