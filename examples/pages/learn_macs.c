/*
 * Learns addresses: the switch reports the sources that it does not know, and each becomes an entry of the two tables
 * that forward to it.
 *
 * SPDX-License-Identifier: Apache-2.0
 */
#include <string.h>

#include "page.h"

/** A field of a reported address, which may stand at an odd place. */
static uint32_t field_of(uint8_t *entry, const char *name)
{
  uint32_t size, wide = 0;
  uint16_t narrow = 0;
  const void *const at = p4_pd_tarvex_switch_get_digest_entry_field(entry, "macLearningDigest", name, &size);
  if (at == NULL) return 0;
  if (size == sizeof narrow) {
    memcpy(&narrow, at, sizeof narrow);
    return narrow;
  }
  memcpy(&wide, at, sizeof wide);
  return wide;
}

static void learn(uint8_t *entry)
{
  const uint32_t oui = field_of(entry, "ingMd_smacOui");
  const uint32_t station = field_of(entry, "ingMd_smacStation");
  const uint16_t domain = (uint16_t)field_of(entry, "ingMd_ingL2Domain");
  const uint32_t interface = field_of(entry, "ingMd_ingL2Aintf");

  pd_entry_hdl_t source, destination;
  const p4_pd_tarvex_switch_l2LearningLookup_match_spec_t from = {
      .ingMd_smacOui = oui, .ingMd_smacStation = station, .ingMd_ingL2Domain = domain, .ingMd_ingL2Aintf = interface};
  must(p4_pd_tarvex_switch_l2LearningLookup_table_add_with_noOp(session, all_pipes(), &from, 0, &source),
       "noting the source");
  const p4_pd_tarvex_switch_l2Lookup_match_spec_t to = {
      .egrMd_dmacOui = oui, .egrMd_dmacStation = station, .egrMd_egrL2Domain = domain};
  const p4_pd_tarvex_switch_l2LookupKnownUcast_action_spec_t port = {.action_egrL2Aintf = interface};
  must(p4_pd_tarvex_switch_l2Lookup_table_add_with_l2LookupKnownUcast(session, all_pipes(), &to, &port, &destination),
       "forwarding to it");
  printf("learned %02x:%02x:%02x:%02x:%02x:%02x in domain %u on interface %u\n", (unsigned)(oui >> 16),
         (unsigned)(oui >> 8 & 0xff), (unsigned)(oui & 0xff), (unsigned)(station >> 16),
         (unsigned)(station >> 8 & 0xff), (unsigned)(station & 0xff), domain, (unsigned)interface);
}

/** The driver calls this with the addresses of many packets at once. */
static void on_digest(pd_sess_hdl_t from, standin_digest_msg_t *message, void *cookie)
{
  for (uint32_t i = 0; i < message->entry_count; ++i) {
    uint8_t entry[P4_PD_TARVEX_SWITCH_MAC_LEARNING_DIGEST_ENTRY_SIZE];
    memcpy(entry, message->entries + i * sizeof entry, sizeof entry);
    learn(entry);
    ++*(unsigned *)cookie;
  }
  must(p4_pd_tarvex_switch_macLearningDigest_notify_ack(from, message), "giving the message back");
}

/** Two packets from unknown stations, as the switch would report them. */
static void packets_arrive(void)
{
  uint8_t entries[2][P4_PD_TARVEX_SWITCH_MAC_LEARNING_DIGEST_ENTRY_SIZE] = {{0}};
  const struct {
    const char *name;
    uint32_t values[2];
  } fields[] = {{"ingMd_smacOui", {0x001c73, 0x001c73}},
                {"ingMd_smacStation", {0x00000a, 0x00000b}},
                {"ingMd_ingL2Domain", {100, 100}},
                {"ingMd_ingL2Aintf", {11, 12}}};
  for (int i = 0; i < 2; ++i) {
    for (int field = 0; field < 4; ++field) {
      uint32_t size;
      void *const at =
          p4_pd_tarvex_switch_get_digest_entry_field(entries[i], "macLearningDigest", fields[field].name, &size);
      const uint16_t narrow = (uint16_t)fields[field].values[i];
      memcpy(at, size == sizeof narrow ? (const void *)&narrow : (const void *)&fields[field].values[i], size);
    }
  }
  must(standin_digest_deliver(device, P4_PD_TARVEX_SWITCH_MAC_LEARNING_DIGEST_HANDLE, entries[0], 2),
       "reporting the addresses");
}

int main(void)
{
  unsigned learned = 0;
  begin();
  must(p4_pd_tarvex_switch_macLearningDigest_register(session, device, (pd_callback_t)on_digest, &learned),
       "asking for the digest");
  packets_arrive();
  must(p4_pd_tarvex_switch_macLearningDigest_deregister(session, device), "ending the digest");
  printf("%u addresses\n", learned);
  end();
  return 0;
}
