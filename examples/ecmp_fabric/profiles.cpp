// The five profiles of the pipeline with their actions and indirect tables.
//
// SPDX-License-Identifier: Apache-2.0
#include "profile.h"

namespace tarvex::examples {
namespace {

/// A profile with one action, and a table with one exact field of two bytes. `make` gives the parameters of a number.
template <typename Parameters, typename Key>
profile simple_profile(const profile_functions &functions, const member_functions<Parameters> &member,
                       Parameters (*make)(std::uint32_t number), const indirect_table_functions<Key> &table,
                       std::uint16_t Key::*field)
{
  return {functions, make_table(table, field, 2, [](Key &) {}), {action_with(member, make)}};
}

profile ecmp()
{
  using next_hop = p4_pd_tarvex_switch_setEcmpNextHop_action_spec_t;
  using key = p4_pd_tarvex_switch_ecmpGroup_match_spec_t;
  return simple_profile<next_hop, key>(
      PD_PROFILE(ecmpMemberActionProfile), PD_MEMBER(ecmpMemberActionProfile, setEcmpNextHop),
      [](std::uint32_t number) {
        next_hop parameters{};
        parameters.action_nextHop = number;
        return parameters;
      },
      PD_INDIRECT_TABLE(ecmpGroup), &key::l3_ecmpGroup);
}

profile lag()
{
  using port = p4_pd_tarvex_switch_setLagPort_action_spec_t;
  using key = p4_pd_tarvex_switch_lagGroup_match_spec_t;
  const member_functions<port> set_port = PD_MEMBER(lagPortActionProfile, setLagPort);
  const member_functions<> set_physical = PD_MEMBER(lagPortActionProfile, setPhysicalPort);
  const member_functions<> set_tunnel = PD_MEMBER(lagPortActionProfile, setTunnelInfo);
  const member_functions<> invalidate = PD_MEMBER(lagPortActionProfile, invalidateUcastEgressPort);
  const indirect_table_functions<key, std::uint32_t> table = PD_INDIRECT_TABLE(lagGroup);
  constexpr std::uint32_t priority = 100;
  return {PD_PROFILE(lagPortActionProfile),
          make_table(
              table, &key::egrMd_egrL2AintfUnresolved, 3, [](key &k) { k.egrMd_egrL2AintfUnresolved_mask = 0xfffff; },
              priority),
          {action_with(set_port, [](std::uint32_t number) { return port{static_cast<std::uint16_t>(number % 512)}; }),
           action_without(set_physical), action_without(set_tunnel), action_without(invalidate)}};
}

profile tunnel()
{
  using egress = p4_pd_tarvex_switch_setTunnelEgressInfo_action_spec_t;
  using key = p4_pd_tarvex_switch_tunnelResolve_match_spec_t;
  return simple_profile<egress, key>(
      PD_PROFILE(tunnelMember), PD_MEMBER(tunnelMember, setTunnelEgressInfo),
      [](std::uint32_t number) {
        return egress{number << 8, number << 16 | number};
      },
      PD_INDIRECT_TABLE(tunnelResolve), &key::egrMd_tunnelNextHop);
}

profile mirror_lag()
{
  using selector = p4_pd_tarvex_switch_setLagMemberSelector_action_spec_t;
  using key = p4_pd_tarvex_switch_ingressMirrorLagGroup_match_spec_t;
  return simple_profile<selector, key>(
      PD_PROFILE(mirrorLagPortActionProfile), PD_MEMBER(mirrorLagPortActionProfile, setLagMemberSelector),
      [](std::uint32_t number) { return selector{static_cast<std::uint16_t>(number)}; },
      PD_INDIRECT_TABLE(ingressMirrorLagGroup), &key::ingMirrorMd_mirrorSession);
}

profile egress_mirror_lag()
{
  using selector = p4_pd_tarvex_switch_setEgrLagMemberSelector_action_spec_t;
  using key = p4_pd_tarvex_switch_egressMirrorLagGroup_match_spec_t;
  return simple_profile<selector, key>(
      PD_PROFILE(egrMirrorLagPortActionProfile), PD_MEMBER(egrMirrorLagPortActionProfile, setEgrLagMemberSelector),
      [](std::uint32_t number) { return selector{static_cast<std::uint16_t>(number)}; },
      PD_INDIRECT_TABLE(egressMirrorLagGroup), &key::egrMirrorMd_mirrorSession);
}

}  // namespace

std::vector<profile> make_profiles()
{
  std::vector<profile> all;
  for (profile (*make)() : {ecmp, lag, tunnel, mirror_lag, egress_mirror_lag}) all.push_back(make());
  return all;
}

}  // namespace tarvex::examples
