// Values as text: each kind of display, there and back.
//
// SPDX-License-Identifier: Apache-2.0
#include "value_text.h"

#include <gtest/gtest.h>

#include "catalogue.h"
#include "match_fault.h"
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
      {"l2Lookup", "dmac", "001122334455", "00:11:22:33:44:55", "0x1122334455"},
      {"l2Lookup", "dmac", "021c.73aB.cdef", "02:1c:73:ab:cd:ef", "0x21c73abcdef"},
      {"ipv4ShortMaskLpm", "dip", "10.0.0.0/8", "10.0.0.0/8", "0xa000000/8"},
      {"ipv4FinalResolve", "dip", "0.0.2.1", "0.0.2.1/32", "0x201/32"},
      {"ipv6ShortMaskLpm", "dip", "::/0", "::/0", "0x0/0"},
      {"tunnelTermination", "dip", "10.1.0.0/16", "10.1.0.0/16", "0xa010000/0xffff0000"},
      {"tunnelTermination", "dip", "10.0.1.0/255.0.255.0", "10.0.1.0/255.0.255.0", "0xa000100/0xff00ff00"},
      {"tunnelTermination", "dip", "0.0.0.0/0", "*", "*"},
      {"tunnelTermination", "tunnelType", "4/6", "4/0x6", "0x4/0x6"},
      {"tunnelTermination", "tunnelType", "5", "5", "0x5"},
      {"tunnelTermination", "dmac", "02-00-00-00-00-00/ff-00-00-00-00-00", "02:00:00:00:00:00/ff:00:00:00:00:00",
       "0x20000000000/0xff0000000000"},
      {"tunnelTermination", "dmac", "100000000000/100000000000", "10:00:00:00:00:00/10:00:00:00:00:00",
       "0x100000000000/0x100000000000"},
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
    parse_match(*field, each.given, record.data(), value_source::typed);
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
           {"tunnelType", ""},           {"tunnelType", "8"},
           {"tunnelType", "-1"},         {"tunnelType", "1 "},
           {"tunnelType", "0x"},         {"tunnelType", "1/"},
           {"tunnelType", "1/8"},        {"tunnelType", "340282366920938463463374607431768211457"},
           {"dip", "10.0.0.0/33"},       {"dmac", "02:00:00:00:00:00/49"},
           {"dip", "1.2.3.4.5"},         {"dip", "10.0.0.0/8/8"},
           {"dmac", "00:00:00:00:00"},   {"dmac", "00:00:00:00:00:0g"},
           {"dmac", "0000:00:00:00:00"}, {"dmac", "5"},
           {"dmac", "01122334455"},      {"dmac", "00:11-22:33-44:55"},
           {"dmac", "0011.2233:4455"},   {"dmac", "0x1000000000000"}}) {
    record_memory record;
    EXPECT_THROW(parse_match(*find_field(fields, name), given, record.data(), value_source::typed), usage_error)
        << name << '=' << given;
  }
}

// What a person types is refused where the switch would take it for something else; what was read back stays as it is.
TEST(values, that_say_something_else_than_they_match_are_refused_where_typed)
{
  struct mistaken {
    const char *table, *field, *given;
    const char *told;  // nullptr: accepted
    const char *kept;  // as it is shown when it is read back
  };
  static constexpr mistaken cases[] = {
      {"ipv4ShortMaskLpm", "dip", "11.1.2.3", "looks at 255.240.0.0; it would match 11.0.0.0/12.", "11.1.2.3/32"},
      {"ipv4ShortMaskLpm", "dip", "11.0.0.0", "looks at 255.240.0.0; it would match 11.0.0.0/12.", "11.0.0.0/32"},
      {"ipv4ShortMaskLpm", "dip", "11.0.0.0/12", nullptr, "11.0.0.0/12"},
      {"ipv4ShortMaskLpm", "dip", "10.0.0.0/6", "beyond its prefix length; it would match 8.0.0.0/6.", "10.0.0.0/6"},
      {"ipv4Partition", "dipAndVrf", "167772163/8", "beyond its prefix length; it would match 10.0.0.0/8.",
       "10.0.0.3/8"},
      {"ipv4FinalResolve", "dip", "10.17.2.0/24", "looks at 0.15.255.255; it would match 0.1.2.0/24.", "10.17.2.0/24"},
      {"ipv4FinalResolve", "dip", "0.1.2.0/24", nullptr, "0.1.2.0/24"},
      {"ipv4FinalResolve", "fibPartitionIndex", "32768", "looks at 0x7fff; it would match 0.", "32768"},
      {"ipv6FinalResolve", "dip", "2001:db8::/48", "looks at 0:3ff:ffff:ffff::; it would match 0:1b8::/48.",
       "2001:db8::/48"},
      {"ipv6FinalResolve", "dip", "0:1b8::/65", "it would match 0:1b8::/64.", "0:1b8::/65"},
      {"finalDropControl", "ingressPort", "300", "looks at 0x7f; it would match 44.", "300"},
      {"finalDropControl", "ingressPort", "44", nullptr, "44"},
      {"finalDropControl", "ingressPort", "44/0xff", "looks at 0x7f; it would match 44/0x7f.", "44/0xff"},
      {"finalDropControl", "ingressPort", "0xffff", "too wide; the largest value is 511", "65535"},
      {"trapToCpu", "etherType", "0x806/0x0f", "0x806/0x0f has bits outside its mask; it would match 6/0xf.",
       "2054/0xf"},
      {"tunnelTermination", "dip", "10.1.2.3/8", "outside its mask; it would match 10.0.0.0/8.", "10.1.2.3/8"},
      {"tunnelTermination", "tunnelType", "5/0", "it would match *.", "5/0x0"},
      {"tunnelTermination", "dmac", "02:00:00:00:00:01/8", "it would match 02:00:00:00:00:00/ff:00:00:00:00:00.",
       "02:00:00:00:00:01/ff:00:00:00:00:00"},
  };
  for (const mistaken &each : cases) {
    const auto fields = key_fields(table_named(each.table));
    const shown_field &field = *find_field(fields, each.field);
    std::string told;
    record_memory record;
    try {
      parse_meant_match(field, each.given, record.data(), value_source::typed);
    } catch (const usage_error &error) {
      told = error.what();
    }
    EXPECT_EQ(told.empty(), each.told == nullptr) << each.given << ": " << told;
    EXPECT_NE(told.find(each.told != nullptr ? each.told : ""), std::string::npos) << told;
    parse_match(field, each.given, record.data(), value_source::read_back);
    EXPECT_EQ(needs_force(std::span(&field, 1), record.data()), each.told != nullptr) << each.given;
    std::string shown;
    append_match(shown, field, record.data(), false);
    EXPECT_EQ(shown, each.kept);
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
