// The halo access lists: addresses and ports become classes, five stages match the classes, results are counted.
//
// SPDX-License-Identifier: Apache-2.0
#include "halo_tables.h"

namespace tarvex::examples {
namespace {

struct network4 {
  const char *note;
  std::uint32_t address;
  unsigned length;
  std::uint16_t group;
};

// The smaller the priority the better, so that longer prefixes stand first.
constexpr network4 networks4[] = {
    {"name server", 0x0a020035, 32, 20}, {"log server", 0x0a020202, 32, 21}, {"management", 0x0a0200f0, 28, 12},
    {"web servers", 0x0a020100, 24, 11}, {"storage", 0x0a020200, 24, 13},    {"offices", 0x0a010000, 16, 1},
    {"servers", 0x0a020000, 16, 2},      {"guests", 0x0a030000, 16, 3},      {"site", 0x0a000000, 8, 4},
    {"partner", 0xac100000, 12, 5},
};

struct network6 {
  const char *note;
  std::array<std::uint8_t, 4> address;
  unsigned length;
  std::uint16_t group;
};

constexpr network6 networks6[] = {
    {"offices", {0x20, 0x01, 0x0d, 0xb8}, 32, 1},
    {"guests", {0x3f, 0xff, 0x00, 0x03}, 32, 3},
    {"site", {0xfd, 0x00}, 8, 4},
    {"multicast", {0xff, 0x00}, 8, 30},
};

/// Rules of the access lists: who may talk to whom, by class. `result` has bit 15 for a denial, bit 16 for a log of it.
struct flow {
  const char *note;
  halo_key classes;
  std::uint32_t result;
};

constexpr std::uint32_t deny = 0x8000, deny_and_log = 0x18000;
constexpr std::uint8_t any = 0, tcp = 6, udp = 17;
constexpr std::uint16_t ssh = 1, dns = 2, web = 3;

struct stage_plan {
  halo_key masks;
  std::array<flow, 3> flows;
};

// From the coarse to the fine: each hit replaces the result of the stages ahead of it.
constexpr stage_plan stage_plans[] = {
    {{0, 0, 0, 0, 0xff},
     {{{"TCP", {0, 0, 0, 0, tcp}, 1}, {"UDP", {0, 0, 0, 0, udp}, 2}, {"GRE", {0, 0, 0, 0, 47}, deny | 3}}}},
    {{0xffff, 0, 0, 0, 0},
     {{{"from offices", {1, 0, 0, 0, any}, 4},
       {"from guests", {3, 0, 0, 0, any}, deny | 5},
       {"from partner", {5, 0, 0, 0, any}, deny_and_log | 6}}}},
    {{0xffff, 0xffff, 0, 0, 0},
     {{{"offices to storage", {1, 13, 0, 0, any}, 7},
       {"offices to management", {1, 12, 0, 0, any}, deny | 8},
       {"site to storage", {4, 13, 0, 0, any}, 9}}}},
    {{0, 0xffff, 0, 0xffff, 0xff},
     {{{"anyone to name server", {0, 20, 0, dns, udp}, 10},
       {"anyone to web servers", {0, 11, 0, web, tcp}, 11},
       {"anyone to servers by SSH", {0, 2, 0, ssh, tcp}, deny_and_log | 12}}}},
    {{0xffff, 0xffff, 0xffff, 0xffff, 0xff},
     {{{"offices to servers by SSH", {1, 2, 9, ssh, tcp}, 13},
       {"guests to web servers", {3, 11, 9, web, tcp}, 14},
       {"partner to log server", {5, 21, 9, any, udp}, 15}}}},
};
constexpr std::uint8_t access_lists = 4;

constexpr std::uint32_t mask4(unsigned length) { return ~std::uint32_t{0} << (32 - length); }

/// Both address tables of a family take the same networks.
template <typename Parameters, typename Rules, typename Action>
void add_networks4(Rules &rules, const Action &action)
{
  std::uint32_t priority = 10;
  for (const network4 &each : networks4) {
    rules.add(each.note, ++priority, {each.address, mask4(each.length)}, action, Parameters{each.group, each.group});
  }
}

template <typename Parameters, typename Rules, typename Action>
void add_networks6(Rules &rules, const Action &action)
{
  std::uint32_t priority = 10;
  for (const network6 &each : networks6) {
    typename Rules::key_type key{};
    auto &[address, mask] = key;
    std::copy(each.address.begin(), each.address.end(), address);
    std::fill_n(mask, each.length / 8, std::uint8_t{0xff});
    rules.add(each.note, ++priority, key, action, Parameters{each.group, each.group});
  }
}

}  // namespace

halo_tables::halo_tables()
    : source4(PD_TERNARY_TABLE(haloXformIpv4Sip),
              {{&decltype(source4)::key_type::ingIpv4_sip, &decltype(source4)::key_type::ingIpv4_sip_mask, 32}}),
      source6(PD_TERNARY_TABLE(haloXformIpv6Sip),
              {{&decltype(source6)::key_type::ingIpv6_sip, &decltype(source6)::key_type::ingIpv6_sip_mask, 128}}),
      destination4(PD_TERNARY_TABLE(haloXformIpv4Dip), {{&decltype(destination4)::key_type::ingIpv4_dip,
                                                         &decltype(destination4)::key_type::ingIpv4_dip_mask, 32}}),
      destination6(PD_TERNARY_TABLE(haloXformIpv6Dip), {{&decltype(destination6)::key_type::ingIpv6_dip,
                                                         &decltype(destination6)::key_type::ingIpv6_dip_mask, 128}}),
      source_port(PD_TERNARY_TABLE(haloXformSrcPort), {{&decltype(source_port)::key_type::ingMd_srcPort,
                                                        &decltype(source_port)::key_type::ingMd_srcPort_mask, 16}}),
      destination_port(PD_TERNARY_TABLE(haloXformDstPort),
                       {{&decltype(destination_port)::key_type::ingMd_dstPort,
                         &decltype(destination_port)::key_type::ingMd_dstPort_mask, 16}}),
      counters(PD_EXACT_TABLE(haloCounters), {{&decltype(counters)::key_type::haloResultRow1_bestResult, 32, 0x7fff}},
               p4_pd_tarvex_switch_counter_read_haloCount)
{
}

halo_tables::~halo_tables() = default;

std::vector<rule_table *> halo_tables::all()
{
  std::vector<rule_table *> tables{&source4, &source6, &destination4, &destination6, &source_port, &destination_port};
  std::apply([&](auto &...stage) { (tables.insert(tables.end(), {&stage.masks, &stage.rules}), ...); }, stages);
  tables.push_back(&counters);
  return tables;
}

void halo_tables::program()
{
  program_addresses();
  program_ports();
  program_stages();
}

void halo_tables::program_addresses()
{
  using source4_class = p4_pd_tarvex_switch_setHaloXformIpv4Sip_action_spec_t;
  using source6_class = p4_pd_tarvex_switch_setHaloXformIpv6Sip_action_spec_t;
  using destination_class = p4_pd_tarvex_switch_setHaloXformDip_action_spec_t;
  add_networks4<source4_class>(source4, PD_ACTION(haloXformIpv4Sip, setHaloXformIpv4Sip));
  add_networks4<destination_class>(destination4, PD_ACTION(haloXformIpv4Dip, setHaloXformDip));
  add_networks6<source6_class>(source6, PD_ACTION(haloXformIpv6Sip, setHaloXformIpv6Sip));
  add_networks6<destination_class>(destination6, PD_ACTION(haloXformIpv6Dip, setHaloXformDip));
  source4.add("loopback source", 1, {0x7f000000, mask4(8)}, PD_ACTION(haloXformIpv4Sip, setHaloInvalidSip));
  source4.add("multicast source", 2, {0xe0000000, mask4(3)}, PD_ACTION(haloXformIpv4Sip, setHaloInvalidSip));
  destination4.add("loopback", 1, {0x7f000000, mask4(8)}, PD_ACTION(haloXformIpv4Dip, setHaloInvalidDip));
  source4.set_default("any source", PD_DEFAULT(haloXformIpv4Sip, setHaloIpv4Common));
  source6.set_default("any source", PD_DEFAULT(haloXformIpv6Sip, setHaloIpv6Common));
  destination4.set_default("any destination", PD_DEFAULT(haloXformIpv4Dip, setHaloXformDip), destination_class{});
  destination6.set_default("any destination", PD_DEFAULT(haloXformIpv6Dip, setHaloXformDip), destination_class{});
}

void halo_tables::program_ports()
{
  constexpr struct {
    const char *note;
    std::uint16_t port, mask, group;
  } ports[] = {{"SSH", 22, 0xffff, ssh},     {"DNS", 53, 0xffff, dns},         {"HTTP", 80, 0xffff, web},
               {"HTTPS", 443, 0xffff, web},  {"syslog", 514, 0xffff, 4},       {"HTTP, high", 8080, 0xfff0, web},
               {"well known", 0, 0xfc00, 8}, {"ephemeral", 0x8000, 0x8000, 9}, {"registered", 0, 0, 10}};
  std::uint32_t priority = 0;
  for (const auto &[note, port, mask, group] : ports) {
    priority += 10;
    source_port.add(note, priority, {port, mask}, PD_ACTION(haloXformSrcPort, setHaloXformSrcPort),
                    p4_pd_tarvex_switch_setHaloXformSrcPort_action_spec_t{group});
    destination_port.add(note, priority, {port, mask}, PD_ACTION(haloXformDstPort, setHaloXformDstPort),
                         p4_pd_tarvex_switch_setHaloXformDstPort_action_spec_t{group});
  }
}

void halo_tables::program_stages()
{
  const auto *plan = stage_plans;
  const auto program_stage = [&](auto &stage) {
    for (std::uint8_t list = 1; list <= access_lists; ++list) {
      stage.mask_list(list, plan->masks);
      for (const flow &each : plan->flows) {
        const std::uint32_t result = each.result + 100u * list;
        stage.add(each.note + std::string(", list ") + std::to_string(list), list, each.classes & plan->masks, result);
        counters.add(each.note + std::string(", list ") + std::to_string(list), {result},
                     PD_ACTION(haloCounters, onMiss));
      }
    }
    ++plan;
  };
  std::apply([&](auto &...stage) { (program_stage(stage), ...); }, stages);
}

void halo_tables::change()
{
  source4.change_some(PD_ACTION(haloXformIpv4Sip, setHaloXformIpv4Sip),
                      p4_pd_tarvex_switch_setHaloXformIpv4Sip_action_spec_t{0xabcd, 0x1234});
  destination6.change_some(PD_ACTION(haloXformIpv6Dip, setHaloInvalidDip));
  destination_port.change_some(PD_ACTION(haloXformDstPort, setHaloXformDstPort),
                               p4_pd_tarvex_switch_setHaloXformDstPort_action_spec_t{0xfffe});
  counters.change_some(PD_ACTION(haloCounters, onMiss));
  std::apply([](auto &...stage) { (stage.change(0x12345678), ...); }, stages);
}

}  // namespace tarvex::examples
