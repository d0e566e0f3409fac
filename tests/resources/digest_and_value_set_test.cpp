// The learning digest from subscription to acknowledgement, and the parser value set.
//
// SPDX-License-Identifier: Apache-2.0
#include <cstring>

#include "resource_test.h"

namespace tarvex::resource_tests {
namespace {

constexpr std::uint32_t digest = 0x21000084, value_set = 0x1ff;

class Digest : public ResourceTest {};
class ValueSet : public ResourceTest {};

TEST_F(Digest, MessagesComeUntilTheEndAndGoWithTheirAcknowledgement)
{
  std::vector<standin_digest_msg_t *> messages;
  const standin_digest_cb_t keep = [](pd_sess_hdl_t, standin_digest_msg_t *message, void *cookie) {
    static_cast<std::vector<standin_digest_msg_t *> *>(cookie)->push_back(message);
  };
  std::uint8_t entries[2 * P4_PD_TARVEX_SWITCH_MAC_LEARNING_DIGEST_ENTRY_SIZE];
  for (std::size_t i = 0; i < sizeof entries; ++i) entries[i] = static_cast<std::uint8_t>(i);
  ok(p4_pd_tarvex_switch_macLearningDigest_register(session, 0x100 + device, reinterpret_cast<pd_callback_t>(keep),
                                                    &messages));
  ok(standin_digest_deliver(device, digest, entries, 2));
  ok(standin_digest_deliver(device, digest, entries, 1));
  ASSERT_EQ(messages.size(), 2u);
  ASSERT_EQ(messages[0]->entry_bytes, p4_pd_tarvex_switch_get_digest_entry_size("macLearningDigest"));
  ASSERT_EQ(messages[0]->entry_count, 2u);

  // The fields of the second entry, in the order in which they stand there, fill it.
  std::vector<std::uint8_t> entry(messages[0]->entries + 14, messages[0]->entries + 28);
  std::ptrdiff_t at = 0;
  for (const char *name : {"ingMd_smacStation", "ingMd_ingL2Domain", "ingMd_ingL2Aintf", "ingMd_smacOui"}) {
    std::uint32_t size = 0;
    const auto *field = static_cast<std::uint8_t *>(
        p4_pd_tarvex_switch_get_digest_entry_field(entry.data(), "macLearningDigest", name, &size));
    EXPECT_EQ(field, entry.data() + at) << name;
    EXPECT_EQ(*field, 14 + at) << name;
    at += size;
  }
  EXPECT_EQ(at, 14);
  const std::pair<const char *, const char *> strangers[] = {
      {"macLearningDigest", "ingMd_smac"}, {"macLearningDigest", "ingMd_smacOuis"}, {"macLearning", "ingMd_smacOui"}};
  for (const auto &[of, name] : strangers) {
    std::uint32_t size = 9;
    EXPECT_EQ(p4_pd_tarvex_switch_get_digest_entry_field(entry.data(), of, name, &size), nullptr) << of << name;
    EXPECT_EQ(size, 0u);
  }

  EXPECT_EQ(standin_digest_unacknowledged(device), 2u);
  ok(p4_pd_tarvex_switch_macLearningDigest_notify_ack(session, messages[1]));
  EXPECT_EQ(p4_pd_tarvex_switch_macLearningDigest_notify_ack(session, messages[1]), pd_status_t{STANDIN_BAD_ARGUMENT});
  ok(p4_pd_tarvex_switch_macLearningDigest_notify_ack(session, messages[0]));
  EXPECT_EQ(standin_digest_unacknowledged(device), 0u);
  ok(p4_pd_tarvex_switch_macLearningDigest_deregister(session, device));
  EXPECT_EQ(standin_digest_deliver(device, digest, entries, 1), pd_status_t{STANDIN_NOT_ENABLED});
  std::uint32_t timeout = 0;
  ok(p4_pd_tarvex_switch_set_learning_timeout(session, device, 0xfffffff0));
  ok(standin_learning_timeout(device, &timeout));
  EXPECT_EQ(timeout, 0xfffffff0u);
}

TEST_F(ValueSet, MatchesUnderMasksAndKeepsProperties)
{
  const auto matching = [](std::uint32_t parsed) {
    std::uint32_t count = 99;
    ok(standin_value_set_match(device, value_set, parsed, &count));
    return count;
  };
  const pd_parser_tgt_t here{device, 1, 2, 3};
  std::uint32_t wide = 0, exact = 0;
  ok(p4_pd_tarvex_switch_pvs_fabric_port_entry_add(session, here, 0x80000000, 0xff000000, &wide));
  ok(p4_pd_tarvex_switch_pvs_fabric_port_entry_add(session, here, 0x80000001, 0xffffffff, &exact));
  EXPECT_EQ(matching(0x80000001), 2u);
  EXPECT_EQ(matching(0x80ffffff), 1u);
  ok(p4_pd_tarvex_switch_pvs_fabric_port_entry_modify(session, device, wide, 0x01000000, 0xff000000));
  EXPECT_EQ(matching(0x80000001), 1u);
  ok(p4_pd_tarvex_switch_pvs_fabric_port_entry_delete(session, device, exact));
  EXPECT_EQ(matching(0x80000001), 0u);
  EXPECT_EQ(p4_pd_tarvex_switch_pvs_fabric_port_entry_delete(session, device, exact), pd_status_t{STANDIN_NO_ENTRY});
  const pd_parser_tgt_t nowhere{device + 0x100, 0, 0, 0};  // all 32 bits of the device count here
  EXPECT_EQ(p4_pd_tarvex_switch_pvs_fabric_port_entry_add(session, nowhere, 0, 0, &exact),
            pd_status_t{STANDIN_NO_DEVICE});

  std::uint32_t value = 5;
  EXPECT_EQ(p4_pd_tarvex_switch_pvs_fabric_port_get_property(session, device, 6, &value, 7),
            pd_status_t{STANDIN_NO_PROPERTY});
  EXPECT_EQ(value, 0xffffffffu);
  ok(p4_pd_tarvex_switch_pvs_fabric_port_set_property(session, device, 6, 42, 7));
  ok(p4_pd_tarvex_switch_pvs_fabric_port_get_property(session, device, 6, &value, 7));
  EXPECT_EQ(value, 42u);
}

}  // namespace
}  // namespace tarvex::resource_tests
