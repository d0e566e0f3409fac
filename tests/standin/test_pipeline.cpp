// A small pipeline for the tests of the stand-in: one table of each kind, a profile, and each kind of resource.
//
// SPDX-License-Identifier: Apache-2.0
#include "test_pipeline.h"

#include "pipeline_rows.h"

namespace tarvex::rows {
namespace {

constexpr action_info named(const char *name, std::uint16_t data_bits)
{
  return {name, "", 0, data_bits, static_cast<std::uint16_t>((data_bits + 7) / 8), 0, {}, {}};
}

constexpr action_info forward_action = named("forward", 16), miss_action = named("miss", 0),
                      route_action = named("route", 32), police_action = named("police", 32),
                      pass_action = named("pass", 0), port_action = named("port", 9), drop_action = named("drop", 0),
                      check_action = named("check", 0);

constexpr use_info host_actions[] = {{forward, &forward_action, false, {}}, {miss, &miss_action, true, {}}};
constexpr use_info route_actions[] = {{route, &route_action, true, {}}};
constexpr use_info policy_actions[] = {{police, &police_action, true, {}}, {pass, &pass_action, true, {}}};
constexpr use_info member_actions[] = {{port, &port_action, false, {}}, {drop, &drop_action, false, {}}};
constexpr use_info check_actions[] = {{check, &check_action, true, {}}};

/// A field of which the low bits `live` count, at most 32 of them.
constexpr field_info field(match_kind match, std::uint16_t bits, std::uint16_t key_at, std::uint32_t live)
{
  field_info made{"", "", nullptr, bits, 0, 0, 0, key_at, static_cast<std::uint16_t>((bits + 7) / 8), match, {}, -1};
  for (unsigned i = 0; i < 4; ++i) made.live[15 - i] = static_cast<std::uint8_t>(live >> 8 * i);
  return made;
}

constexpr field_info host_fields[] = {field(match_kind::exact, 9, 0, 0x1ff),
                                      field(match_kind::exact, 8, 2, 0x7f)};  // a bit of the last byte is not live
constexpr field_info route_fields[] = {field(match_kind::partition, 16, 0, 0x7fff),
                                       field(match_kind::lpm, 32, 2, 0xffffffff)};
constexpr field_info policy_fields[] = {field(match_kind::ternary, 16, 0, 0xffff)};
constexpr field_info lag_fields[] = {field(match_kind::exact, 12, 0, 0xfff)};

constexpr profile_info all_profiles[] = {{"ports", members_table, groups_table, lag_table, member_actions}};

constexpr table_info all_tables[] = {
    {"host", "", host_table, table_kind::exact, 17, 3, 0, true, false, nullptr, host_fields, host_actions},
    {"route", "", route_table, table_kind::lpm, 48, 6, 0, false, false, nullptr, route_fields, route_actions},
    {"policy", "", policy_table, table_kind::ternary, 16, 2, 0, false, false, nullptr, policy_fields, policy_actions},
    {"lag", "", lag_table, table_kind::exact, 12, 2, 0, false, false, &all_profiles[0], lag_fields, {}},
    {"check", "", check_table, table_kind::keyless, 0, 0, 0, false, false, nullptr, {}, check_actions},
};

constexpr resource_info all_resources[] = {
    {"hostCount", host_counter, resource_kind::counter, true, host_table},
    {"policyCount", policy_counter, resource_kind::counter, false, policy_table},
    {"queueCount", free_counter, resource_kind::counter, false, 0},
    {"wred", wred_block, resource_kind::wred, false, 0},
    {"policyMeter", policy_meter, resource_kind::meter, false, policy_table},
    {"routeMeter", route_meter, resource_kind::meter, true, route_table},
    {"checkData", check_register, resource_kind::register_, true, check_table},
    {"hostData", host_register, resource_kind::register_, true, host_table},
};

// Of 3 fields, and of 5.
constexpr std::uint32_t common[] = {1, 2, 3, 4, 5};
constexpr std::uint32_t algorithms[] = {0x23000003, 0x23000004};
constexpr hash_info all_hashes[] = {{"three", 0x22000004, 0x21000004, std::span(common).first(3), algorithms},
                                    {"five", 0x2200000b, 0x21000064, common, algorithms}};

constexpr digest_info all_digests[] = {{"learnt", 0x21000084, 14, {}}};
constexpr value_set_info all_value_sets[] = {{"types", 0x1ff}};

constexpr snapshot_field_info ingress[] = {
    {"flags", 0, 1}, {"port", 1, 2}, {"station", 3, 3}, {"label", 7, 4}, {"address", 11, 16}};
constexpr snapshot_field_info egress[] = {{"station", 0, 3}};

}  // namespace

const std::span<const table_info> tables = all_tables;
const std::span<const profile_info> profiles = all_profiles;
const std::span<const resource_info> resources = all_resources;
const std::span<const hash_info> hashes = all_hashes;
const std::span<const digest_info> digests = all_digests;
const std::span<const value_set_info> value_sets = all_value_sets;
const std::span<const snapshot_field_info> ingress_fields = ingress;
const std::span<const snapshot_field_info> egress_fields = egress;

}  // namespace tarvex::rows
