/*
 * Mirrors what comes in at a port to another one: session, rate, the port that the copies leave by, and the header that
 * they get.
 *
 * SPDX-License-Identifier: Apache-2.0
 */
#include "page.h"

enum { mirrored = 17, destination = 33, mirror_session = 5, buffer = 5, meter = 0 };

int main(void)
{
  pd_entry_hdl_t entry;
  begin();

  /* Every field of the key has a mask; those that are left out are 0 and may be anything. */
  const p4_pd_tarvex_switch_ingressMirrorSession_match_spec_t packets = {.ig_intr_md_ingress_port = mirrored,
                                                                         .ig_intr_md_ingress_port_mask = 0x1ff};
  const p4_pd_tarvex_switch_setIngressMirrorSession_action_spec_t to_session = {.action_sessionId = mirror_session};
  must(p4_pd_tarvex_switch_ingressMirrorSession_table_add_with_setIngressMirrorSession(session, all_pipes(), &packets,
                                                                                       10, &to_session, &entry),
       "choosing the packets");

  /* The copies of a session share one meter. */
  const pd_meter_spec_t rate = {
      .cir = 5000, .cburst = 500, .pir = 10000, .pburst = 1000, .meter_type = PD_METER_TYPE_COLOR_UNAWARE};
  must(p4_pd_tarvex_switch_meter_set_ingressMirrorMeter(session, all_pipes(), meter, &rate), "setting the meter");
  const p4_pd_tarvex_switch_ingressMirrorRate_match_spec_t of_buffer = {.ingMirrorMd_mirrorBufId = buffer};
  const p4_pd_tarvex_switch_setIngressMirrorColor_action_spec_t metered = {.action_meterIndex = meter};
  must(p4_pd_tarvex_switch_ingressMirrorRate_table_add_with_setIngressMirrorColor(session, all_pipes(), &of_buffer,
                                                                                  &metered, &entry),
       "metering the session");

  /* The session leaves by a member of a profile; a group in its place would spread the copies over several ports. */
  const p4_pd_tarvex_switch_setLagMemberSelector_action_spec_t by_port = {.action_lagMemberSelector = destination};
  pd_mbr_hdl_t member;
  must(p4_pd_tarvex_switch_mirrorLagPortActionProfile_add_member_with_setLagMemberSelector(session, all_pipes(),
                                                                                           &by_port, &member),
       "adding the member");
  const p4_pd_tarvex_switch_ingressMirrorLagGroup_match_spec_t of_session = {.ingMirrorMd_mirrorSession =
                                                                                 mirror_session};
  must(p4_pd_tarvex_switch_ingressMirrorLagGroup_add_entry(session, all_pipes(), &of_session, member, &entry),
       "sending the session there");

  /* At the destination a copy gets a GRE header in IPv4. */
  const p4_pd_tarvex_switch_mirrorPacketEncap_match_spec_t at_port = {.eg_intr_md_egress_rid = mirror_session,
                                                                      .eg_intr_md_egress_port = destination};
  const p4_pd_tarvex_switch_setMirrorPacketEncapGreIpv4_action_spec_t header = {.action_srcIp = 0xc0000201,
                                                                                .action_dstIp = 0xc6336407,
                                                                                .action_ttl = 64,
                                                                                .action_greProto = 0x88be,
                                                                                .action_vlanId = 7,
                                                                                .action_dmacOui = 0x001c73,
                                                                                .action_dmacStation = 0x0000ff};
  must(p4_pd_tarvex_switch_mirrorPacketEncap_table_add_with_setMirrorPacketEncapGreIpv4(session, all_pipes(), &at_port,
                                                                                        &header, &entry),
       "giving the copies a header");

  printf("port %d is mirrored to port %d in session %d\n", mirrored, destination, mirror_session);
  char source_text[IPV4_TEXT_SIZE], destination_text[IPV4_TEXT_SIZE];
  printf("the copies go by GRE from %s to %s in VLAN %u\n", ipv4_text(header.action_srcIp, source_text),
         ipv4_text(header.action_dstIp, destination_text), header.action_vlanId);

  /* The same entry as a text for tools that know no table: key, then action and parameters, then the priority (0, the
   * table has none) and a word that is always True.
   * The order of the values is that of the table's schema. */
  char values[PD_ENTRY_TEXT_SIZE];
  p4_pd_tarvex_switch_mirrorPacketEncap_value(session, device, entry, 0, values);
  printf("for tools: %s\n", values);

  end();
  return 0;
}
