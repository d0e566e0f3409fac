/*
 * Polices what goes to the processor: packets of BGP are put into a class, and the class has a meter and a counter.
 *
 * SPDX-License-Identifier: Apache-2.0
 */
#include "page.h"

enum { tcp = 6, bgp = 179, class_id = 3, port = 17, cell = 40 };

int main(void)
{
  pd_entry_hdl_t entry;
  begin();

  /* A field whose mask is 0 may be anything. Of the entries that match, the one with the smallest priority wins. */
  const p4_pd_tarvex_switch_pdpClassify_match_spec_t packets = {.egrMd_trapToCpu = 1,
                                                                .egrMd_trapToCpu_mask = 1,
                                                                .ingMd_protocol = tcp,
                                                                .ingMd_protocol_mask = 0xff,
                                                                .ingMd_dstPort = bgp,
                                                                .ingMd_dstPort_mask = 0xffff};
  const p4_pd_tarvex_switch_setPdpClass_action_spec_t class_of_bgp = {.action_pdpClassId = class_id};
  must(p4_pd_tarvex_switch_pdpClassify_table_add_with_setPdpClass(session, all_pipes(), &packets, 10, &class_of_bgp,
                                                                  &entry),
       "classifying BGP");

  /* Counter and meter are indirect: the entry names the cell of both, and other entries may share it. */
  const pd_meter_spec_t rate = {
      .cir = 1000, .cburst = 100, .pir = 2000, .pburst = 200, .meter_type = PD_METER_TYPE_COLOR_UNAWARE};
  must(p4_pd_tarvex_switch_meter_set_pdpMeter(session, all_pipes(), cell, &rate), "setting the meter");
  const p4_pd_tarvex_switch_pdpPolicy_match_spec_t of_port = {.ig_intr_md_ingress_port = port,
                                                              .qosMd_pdpClassId = class_id};
  const p4_pd_tarvex_switch_pdpPolice_action_spec_t police = {.action_pdpResourceIndex = cell};
  must(p4_pd_tarvex_switch_pdpPolicy_table_add_with_pdpPolice(session, all_pipes(), &of_port, &police, &entry),
       "policing the class");

  pd_meter_spec_t now;
  must(p4_pd_tarvex_switch_meter_read_pdpMeter(session, all_pipes(), cell, &now), "reading the meter");
  printf("class %d of port %d: committed %u (burst %u), peak %u (burst %u)\n", class_id, port, (unsigned)now.cir,
         (unsigned)now.cburst, (unsigned)now.pir, (unsigned)now.pburst);

  /* Seven packets hit the entry. Bit 0 of the flags has the driver fetch the count from the hardware. */
  uint32_t table;
  must(p4_pd_tarvex_switch_pdpPolicy_get_mat_table_handle(&table), "asking for the table's handle");
  must(standin_count_packets(device, table, entry, 7, 7 * 64), "counting packets");
  pd_counter_value_t count;
  must(p4_pd_tarvex_switch_counter_read_pdpClassCount(session, all_pipes(), cell, 1, &count), "reading the counter");
  printf("%llu packets, %llu bytes\n", (unsigned long long)count.packets, (unsigned long long)count.bytes);

  end();
  return 0;
}
