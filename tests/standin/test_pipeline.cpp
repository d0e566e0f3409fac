// A small pipeline for the tests of the stand-in: one table of each kind, a profile, and each kind of resource.
//
// SPDX-License-Identifier: Apache-2.0
#include "test_pipeline.h"

#include "pipeline.h"

namespace tarvex::standin {
namespace {

constexpr pipeline_action host_actions[] = {{0x20000001, "forward", 16, 2, false}, {0x20000002, "miss", 0, 0, true}};
constexpr pipeline_action route_actions[] = {{0x20000003, "route", 32, 4, true}};
constexpr pipeline_action policy_actions[] = {{0x20000004, "police", 32, 4, true}, {0x20000005, "pass", 0, 0, true}};
constexpr pipeline_action member_actions[] = {{0x20000006, "port", 9, 2, false}, {0x20000007, "drop", 0, 0, false}};
constexpr pipeline_action check_actions[] = {{0x20000008, "check", 0, 0, true}};

constexpr std::uint8_t host_live[] = {0x01, 0xff, 0x7f};  // a bit of the last byte is not live
constexpr std::uint8_t route_live[] = {0, 0, 0xff, 0xff, 0xff, 0xff};
constexpr std::uint8_t policy_live[] = {0xff, 0xff};
constexpr std::uint8_t lag_live[] = {0x0f, 0xff};

constexpr pipeline_table tables[] = {
    {host_table, "host", table_kind::exact, 17, 3, host_live, 0, true, nullptr, host_actions},
    {route_table, "route", table_kind::lpm, 48, 6, route_live, 0x7fff, false, nullptr, route_actions},
    {policy_table, "policy", table_kind::ternary, 16, 2, policy_live, 0, false, nullptr, policy_actions},
    {lag_table, "lag", table_kind::exact, 12, 2, lag_live, 0, false, "ports", member_actions},
    {check_table, "check", table_kind::keyless, 0, 0, nullptr, 0, false, nullptr, check_actions},
};

constexpr pipeline_profile profiles[] = {{"ports", members_table, groups_table, lag_table, member_actions}};

constexpr pipeline_resource resources[] = {
    {host_counter, "hostCount", resource_kind::counter, true, host_table},
    {policy_counter, "policyCount", resource_kind::counter, false, policy_table},
    {free_counter, "queueCount", resource_kind::counter, false, 0},
    {wred_block, "wred", resource_kind::wred, false, 0},
    {policy_meter, "policyMeter", resource_kind::meter, false, policy_table},
    {route_meter, "routeMeter", resource_kind::meter, true, route_table},
    {check_register, "checkData", resource_kind::register_, true, check_table},
    {host_register, "hostData", resource_kind::register_, true, host_table},
};

constexpr std::uint32_t algorithms[] = {0x23000003, 0x23000004};
constexpr pipeline_hash hashes[] = {{0x22000004, 0x21000004, 7, algorithms}, {0x2200000b, 0x21000064, 31, algorithms}};

constexpr pipeline_snapshot_field ingress_fields[] = {
    {"flags", 0, 1}, {"port", 1, 2}, {"station", 3, 3}, {"label", 7, 4}, {"address", 11, 16}};
constexpr pipeline_snapshot_field egress_fields[] = {{"station", 0, 3}};

}  // namespace

const std::span<const pipeline_table> pipeline_tables = tables;
const std::span<const pipeline_profile> pipeline_profiles = profiles;
const std::span<const pipeline_resource> pipeline_resources = resources;
const std::span<const pipeline_hash> pipeline_hashes = hashes;
const pipeline_digest pipeline_learning_digest = {0x21000084, 14};
const std::uint32_t pipeline_value_set = 0x1ff;
const std::span<const pipeline_snapshot_field> pipeline_ingress_fields = ingress_fields;
const std::span<const pipeline_snapshot_field> pipeline_egress_fields = egress_fields;

}  // namespace tarvex::standin
