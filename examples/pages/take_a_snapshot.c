/*
 * Catches what a packet holds in the pipeline: arms a snapshot with the value of a field, lets packets pass, and shows
 * the fields of the one that was caught.
 *
 * SPDX-License-Identifier: Apache-2.0
 */
#include <string.h>

#include "page.h"

enum { first_stage = 0, last_stage = 11, pipe = 0 };

static uint32_t show(uint32_t context, const char *field, uint32_t size, const uint8_t *value, const uint8_t *mask)
{
  (void)context;
  (void)mask;
  /* Up to four bytes are a number of the host; longer fields are bytes. */
  uint32_t number = 0;
  if (size <= sizeof number) {
    memcpy(&number, value, size);
    printf("  %s = %u\n", field, (unsigned)number);
    return 0;
  }
  printf("  %s =", field);
  for (uint32_t i = 0; i < size; ++i) printf(" %02x", value[i]);
  printf("\n");
  return 0;
}

/** A packet with these two fields passes the pipe; whether the snapshot caught it. */
static int passes(pd_snapshot_hdl_t snapshot, uint32_t vlan, uint32_t protocol)
{
  uint8_t fields[STANDIN_SNAPSHOT_FIELD_BYTES] = {0};
  must(standin_snapshot_field_set(STANDIN_SNAPSHOT_INGRESS, "vlanHdr_0__vlanId", &vlan, fields), "making a packet");
  must(standin_snapshot_field_set(STANDIN_SNAPSHOT_INGRESS, "ingMd_protocol", &protocol, fields), "making a packet");
  return standin_snapshot_packet(snapshot, pipe, fields) == BF_SUCCESS;
}

int main(void)
{
  begin();

  pd_snapshot_hdl_t snapshot;
  must(p4_pd_tarvex_switch_snapshot_create(all_pipes(), first_stage, last_stage, STANDIN_SNAPSHOT_INGRESS, &snapshot),
       "creating the snapshot");

  /* The trigger is made field by field, by name; a field that is not named does not count. */
  static snap_trig_spec_t values, masks;
  const uint32_t vlan = 100;
  if (!p4_pd_tarvex_switch_snapshot_capture_trigger_add(snapshot, &values, &masks, "vlanHdr_0__vlanId", &vlan)) {
    fprintf(stderr, "the pipeline has no such field\n");
    return 1;
  }
  must(p4_pd_tarvex_switch_snapshot_capture_trigger_set(snapshot, &values, &masks), "arming the snapshot");
  printf("armed:\n");
  p4_pd_tarvex_switch_snapshot_capture_trigger_show(0, snapshot, &values, &masks, show);

  printf("a packet of VLAN 99: %s\n", passes(snapshot, 99, 6) ? "caught" : "passed by");
  printf("a packet of VLAN 100: %s\n", passes(snapshot, 100, 17) ? "caught" : "passed by");

  /* Captures come in one area, and are taken out of it one by one. */
  static uint8_t area[P4_PD_TARVEX_SWITCH_SNAPSHOT_CAPTURE_AREA_BYTES];
  static uint8_t control[P4_PD_TARVEX_SWITCH_SNAPSHOT_CTRL_BYTES];
  static uint8_t fields[P4_PD_TARVEX_SWITCH_SNAPSHOT_FIELD_BYTES];
  uint32_t captures, first;
  must(p4_pd_tarvex_switch_snapshot_capture_data_get(snapshot, pipe, area, &captures), "fetching the captures");
  for (uint32_t i = 0; i < captures; ++i) {
    p4_pd_tarvex_switch_snapshot_capture_data_single_get((int32_t)i, 0, area, &first, control, fields);
    printf("capture %u:\n", (unsigned)i);
    p4_pd_tarvex_switch_snapshot_capture_field_show(0, snapshot, fields, show);
  }

  must(p4_pd_tarvex_switch_snapshot_delete(snapshot), "deleting the snapshot");
  end();
  return 0;
}
