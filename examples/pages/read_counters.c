/*
 * Reads the counter of each entry of a table, with the label that the library gives it, then clears them.
 *
 * SPDX-License-Identifier: Apache-2.0
 */
#include "page.h"

enum { rules = 3 };

static pd_counter_value_t counted(pd_entry_hdl_t entry, uint32_t flags)
{
  pd_counter_value_t count;
  must(p4_pd_tarvex_switch_counter_read_l2DmacClassifyCount(session, all_pipes(), entry, flags, &count),
       "reading the counter");
  return count;
}

/** Entries in the order in which the driver tells them, until it names no more. */
static void show_all(void)
{
  pd_entry_hdl_t entry;
  must(p4_pd_tarvex_switch_l2DmacClassify_get_first_entry_handle(session, all_pipes(), &entry), "walking the table");
  while (entry != STANDIN_NO_HANDLE) {
    char label[PD_LABEL_TEXT_SIZE];
    const pd_counter_value_t count = counted(entry, 1);
    p4_pd_tarvex_switch_l2DmacClassify_stringify_counter_match_spec(session, device, entry, label);
    printf("%s: %llu packets, %llu bytes\n", label, (unsigned long long)count.packets, (unsigned long long)count.bytes);
    const pd_status_t status =
        p4_pd_tarvex_switch_l2DmacClassify_get_next_entry_handles(session, all_pipes(), entry, 1, &entry);
    if (status == STANDIN_END) return;
    must(status, "walking on");
  }
}

int main(void)
{
  pd_entry_hdl_t entries[rules];
  begin();

  /* A direct counter hangs on each entry of its table, and is there as soon as the entry is. */
  uint32_t table;
  must(p4_pd_tarvex_switch_l2DmacClassify_get_mat_table_handle(&table), "asking for the table's handle");
  for (uint32_t i = 0; i < rules; ++i) {
    const p4_pd_tarvex_switch_l2DmacClassify_match_spec_t key = {.ig_intr_md_ingress_port = (uint16_t)(10 + i),
                                                                 .outerEthHdr_dmacOui = 0xffffff,
                                                                 .outerEthHdr_dmacOui_mask = 0xffffff,
                                                                 .outerEthHdr_dmacStation = 0xffffff,
                                                                 .outerEthHdr_dmacStation_mask = 0xffffff};
    must(p4_pd_tarvex_switch_l2DmacClassify_table_add_with_setBcast(session, all_pipes(), &key, 10, &entries[i]),
         "adding an entry");
    must(standin_count_packets(device, table, entries[i], i + 1, 64 * (i + 1)), "counting packets");
  }

  /* Flags of 0 give what the driver knows; bit 0 has it fetch the count from the hardware first. */
  printf("known to the driver before it asks the hardware: %llu packets\n",
         (unsigned long long)counted(entries[0], 0).packets);
  printf("each entry by its label: a key field and its value, or '& mask value' if the field has a mask\n");
  show_all();

  const pd_counter_value_t zero = {0, 0};
  for (int i = 0; i < rules; ++i) {
    must(p4_pd_tarvex_switch_counter_write_l2DmacClassifyCount(session, all_pipes(), entries[i], zero),
         "clearing the counter");
  }
  printf("cleared\n");
  show_all();

  end();
  return 0;
}
