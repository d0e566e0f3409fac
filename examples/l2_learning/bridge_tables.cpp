// What a bridge programs before its first frame, and keeps to the end.
//
// SPDX-License-Identifier: Apache-2.0
#include "bridge_tables.h"

#include <algorithm>
#include <vector>

#include "plan.h"

namespace tarvex::l2_learning {
namespace {

using namespace examples;

/// In bytes: what an interface may send of broadcast, unknown multicast and unknown unicast.
constexpr std::array<pd_meter_spec_t, unknown_traffic_count> first_rates{{
    {1'000'000, 64'000, 2'000'000, 128'000, PD_METER_TYPE_COLOR_UNAWARE},
    {2'000'000, 96'000, 4'000'000, 192'000, PD_METER_TYPE_COLOR_UNAWARE},
    {4'000'000, 128'000, 8'000'000, 256'000, PD_METER_TYPE_COLOR_UNAWARE},
}};

/// How frames spread over the links of a group: by all fields of the Ethernet header but the calculation's first.
constexpr char link_hash[] = "hashOuterEthHdr";
constexpr std::uint32_t link_hash_fields = 5;
constexpr std::uint64_t link_hash_seed = 0x5eed'0f11'4b5e'5ced;

/// A port of the fabric, as the parser sees it.
constexpr std::uint32_t fabric_port = 0x3f, all_port_bits = 0x1ff;
constexpr std::uint32_t fabric_port_set = 0x1ff;

bool same(const pd_meter_spec_t &a, const pd_meter_spec_t &b)
{
  return a.cir == b.cir && a.cburst == b.cburst && a.pir == b.pir && a.pburst == b.pburst &&
         a.meter_type == b.meter_type;
}

std::vector<hash_calc_attr_t> read_link_hash()
{
  std::vector<hash_calc_attr_t> fields(link_hash_fields);
  std::uint32_t count = 0;
  must(p4_pd_tarvex_switch_hash_calc_input_field_attribute_get(session, device_id, link_hash, link_hash_fields,
                                                               fields.data(), &count),
       "reading the fields of the link hash");
  fields.resize(count);
  return fields;
}

}  // namespace

bridge_tables::bridge_tables() : rates_(first_rates)
{
  add_domains();
  add_learning();
  add_unknown();
  set_links();
}

void bridge_tables::add_domains()
{
  for (std::uint16_t domain = first_domain; domain < first_domain + domain_count; ++domain) {
    p4_pd_tarvex_switch_ingL2DomainCount_match_spec_t key{};
    key.egrMd_decapType = not_decapsulated;
    key.ingMd_ingL3Aintf = domain;  // each domain has the routed interface of its number
    must(p4_pd_tarvex_switch_ingL2DomainCount_table_add_with_onMiss(session, all_pipes, &key, &domains_[domain]),
         "adding a counted domain");
  }
}

void bridge_tables::add_learning()
{
  pd_entry_hdl_t handle = 0;
  must(p4_pd_tarvex_switch_l2LearningLookup_set_default_action_setL2LearningLookupMiss(session, all_pipes, &handle),
       "setting the default of l2LearningLookup");
  must(p4_pd_tarvex_switch_l2Lookup_set_default_action_onMiss(session, all_pipes, &handle),
       "setting the default of l2Lookup");
  must(p4_pd_tarvex_switch_learningDigestGeneration_set_default_action_resetApplicationId(session, all_pipes, &handle),
       "setting the default of learningDigestGeneration");

  // A source that is not known is reported, unless it came in on a blocked interface.
  p4_pd_tarvex_switch_learningDigestGeneration_match_spec_t key{};
  key.learningDigestMd_applicationId = learning_application;
  key.ingVlanStpCheck_stpBlocked_mask = 1;
  must(p4_pd_tarvex_switch_learningDigestGeneration_table_add_with_generateMacLearningDigest(session, all_pipes, &key,
                                                                                             1, &handle),
       "having unknown sources reported");

  const std::uint8_t forwarding = 0, blocked = 1;
  must(p4_pd_tarvex_switch_register_write_all_ingStpCheckData(session, all_pipes, &forwarding),
       "opening all interfaces");
  must(p4_pd_tarvex_switch_register_write_ingStpCheckData(session, all_pipes, blocked_interface, &blocked),
       "blocking an interface");
}

void bridge_tables::add_unknown()
{
  constexpr std::array add_functions{p4_pd_tarvex_switch_l2LookupMiss_table_add_with_l2LookupBcastHit,
                                     p4_pd_tarvex_switch_l2LookupMiss_table_add_with_l2LookupUnknownMcastAction,
                                     p4_pd_tarvex_switch_l2LookupMiss_table_add_with_l2LookupUnknownUcastAction};
  std::array<p4_pd_tarvex_switch_l2LookupMiss_match_spec_t, unknown_traffic_count> keys{};
  keys[0].egrMd_dmacOui = keys[0].egrMd_dmacOui_mask = broadcast.oui;
  keys[0].egrMd_dmacStation = keys[0].egrMd_dmacStation_mask = broadcast.station;
  keys[1].egrMd_dmacOui = keys[1].egrMd_dmacOui_mask = group_bit;
  for (std::uint32_t i = 0; i < unknown_traffic_count; ++i) {  // i is the priority too: the narrowest first
    must(add_functions[i](session, all_pipes, &keys[i], i, &rates_[i], &unknown_[i]), "adding to l2LookupMiss");
  }
}

void bridge_tables::set_links()
{
  std::array<hash_calc_attr_t, link_hash_fields> fields{};
  for (std::uint32_t i = 0; i < link_hash_fields; ++i) fields[i] = {i, 0, i == 0 ? 1u : 0u};
  must(p4_pd_tarvex_switch_hash_calc_hashOuterEthHdr_input_field_attribute_set(session, device_id, 0, link_hash_fields,
                                                                               fields.data()),
       "choosing the fields of the link hash");
  must(p4_pd_tarvex_switch_hash_calc_hashOuterEthHdr_seed_set(session, device_id, link_hash_seed),
       "setting the seed of the link hash");
  std::uint32_t handle = 0;
  must(
      p4_pd_tarvex_switch_pvs_fabric_port_entry_add(session, {device_id, 0, 0, 0}, fabric_port, all_port_bits, &handle),
      "naming the fabric port");
}

void bridge_tables::throttle_broadcast()
{
  pd_meter_spec_t &rate = rates_[static_cast<std::size_t>(unknown_traffic::broadcast)];
  rate.cir /= 2;
  rate.pir /= 2;
  must(p4_pd_tarvex_switch_meter_set_stormControlMeter(session, all_pipes, unknown_entry(unknown_traffic::broadcast),
                                                       &rate),
       "throttling broadcast");
}

void bridge_tables::check(examples::tally &compared) const
{
  for (std::size_t i = 0; i < unknown_traffic_count; ++i) {
    pd_meter_spec_t read{};
    must(p4_pd_tarvex_switch_meter_read_stormControlMeter(session, all_pipes, unknown_[i], &read),
         "reading a storm-control meter");
    compared.expect(same(read, rates_[i]), [&] {
      return "storm-control meter " + std::to_string(i) + ": first rate is " + std::to_string(read.cir) +
             ", should be " + std::to_string(rates_[i].cir) + ", or another value differs";
    });
  }

  constexpr std::uint32_t interfaces = interface_count + 1;
  std::array<std::uint8_t, interfaces> blocked{};
  std::uint32_t cells = 0, values = 0;
  must(p4_pd_tarvex_switch_register_range_read_ingStpCheckData(session, all_pipes, 0, interfaces, 1, &cells,
                                                               blocked.data(), &values),
       "reading the states of all interfaces");
  compared.expect(cells == interfaces && values == interfaces, [&] {
    return "the register gives " + std::to_string(values) + " values of " + std::to_string(cells) + " interfaces";
  });
  for (std::uint32_t i = 0; i < interfaces; ++i) {
    compared.expect(blocked[i] == (i == blocked_interface),
                    [&] { return "interface " + std::to_string(i) + " reads " + std::to_string(blocked[i]); });
  }
  check_links(compared);
}

void bridge_tables::check_links(examples::tally &compared) const
{
  // By name the fields have other numbers, but they come in the calculation's own order.
  const auto fields = read_link_hash();
  const auto chosen = std::ranges::count(fields, std::uint64_t{0}, &hash_calc_attr_t::value);
  compared.expect(fields.size() == link_hash_fields && chosen == link_hash_fields - 1 && fields[0].value == 1,
                  [] { return "the link hash does not take the fields chosen"; });
  std::uint64_t seed = 0;
  must(p4_pd_tarvex_switch_hash_calc_hashOuterEthHdr_seed_get(session, device_id, &seed), "reading the hash seed");
  compared.expect(seed == link_hash_seed, [&] { return "the hash seed reads " + std::to_string(seed); });

  for (const std::uint32_t port : {fabric_port, fabric_port + 1}) {
    std::uint32_t matching = 0;
    must(standin_value_set_match(device_id, fabric_port_set, port, &matching), "asking the parser for a port");
    compared.expect(matching == (port == fabric_port), [&] {
      return "the parser matches port " + std::to_string(port) + " with " + std::to_string(matching) + " values";
    });
  }
}

}  // namespace tarvex::l2_learning
