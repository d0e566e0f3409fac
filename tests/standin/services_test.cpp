// The parser value set, the learning digest and snapshots.
//
// SPDX-License-Identifier: Apache-2.0
#include "switch_fixture.h"

namespace {

class Services : public SwitchTest {};

TEST_F(Services, ValueSet)
{
  constexpr std::uint32_t set = 0x1ff;
  std::uint32_t a = 0, b = 0, hits = 0;
  ok(pipe_mgr_pvs_entry_add(session, device, set, 1, 2, 3, 0x1200, 0xff00, &a));
  ok(pipe_mgr_pvs_entry_add(session, device, set, 1, 2, 3, 0x1234, 0xffff, &b));
  const auto matched = [&](std::uint32_t value) {
    ok(standin_value_set_match(device, set, value, &hits));
    return hits;
  };
  EXPECT_EQ(matched(0x1234), 2u);
  EXPECT_EQ(matched(0x12ff), 1u);
  ok(pipe_mgr_pvs_entry_modify(session, device, set, a, 0x5600, 0xff00));
  EXPECT_EQ(matched(0x1234), 1u);
  ok(pipe_mgr_pvs_entry_delete(session, device, set, b));
  EXPECT_EQ(matched(0x1234), 0u);
  EXPECT_EQ(pipe_mgr_pvs_entry_modify(session, device, set, b, 0, 0), STANDIN_NO_ENTRY);
  EXPECT_EQ(pipe_mgr_pvs_entry_delete(session, device, set + 1, a), STANDIN_NO_OBJECT);

  std::uint32_t value = 0;
  EXPECT_EQ(pipe_mgr_pvs_get_property(session, device, set, 1, &value, 2), STANDIN_NO_PROPERTY);
  ok(pipe_mgr_pvs_set_property(session, device, set, 1, 42, 2));
  ok(pipe_mgr_pvs_get_property(session, device, set, 1, &value, 2));
  EXPECT_EQ(value, 42u);
}

TEST_F(Services, DigestMessagesLiveUntilAcknowledged)
{
  constexpr std::uint32_t digest = 0x21000084;
  std::vector<standin_digest_msg_t *> messages;
  const standin_digest_cb_t keep = [](pd_sess_hdl_t sess, standin_digest_msg_t *message, void *cookie) {
    EXPECT_EQ(sess, session);
    static_cast<std::vector<standin_digest_msg_t *> *>(cookie)->push_back(message);
  };
  bytes entries(28);
  for (std::size_t i = 0; i < entries.size(); ++i) entries[i] = static_cast<std::uint8_t>(i + 1);
  EXPECT_EQ(standin_digest_deliver(device, digest, entries.data(), 2), STANDIN_NOT_ENABLED);
  ok(pipe_mgr_lrn_digest_notification_register(session, device, digest, reinterpret_cast<pd_callback_t>(keep),
                                               &messages));
  ok(standin_digest_deliver(device, digest, entries.data(), 2));
  ok(standin_digest_deliver(device, digest, entries.data(), 1));
  ASSERT_EQ(messages.size(), 2u);
  EXPECT_EQ(messages[0]->entry_count, 2u);
  EXPECT_EQ(messages[0]->entry_bytes, 14u);
  EXPECT_EQ(bytes(messages[0]->entries, messages[0]->entries + 28), entries);
  EXPECT_EQ(standin_digest_unacknowledged(device), 2u);
  ok(pipe_mgr_flow_lrn_notify_ack(session, digest, messages[1]));
  EXPECT_EQ(pipe_mgr_flow_lrn_notify_ack(session, digest, messages[1]), STANDIN_BAD_ARGUMENT);
  EXPECT_EQ(standin_digest_unacknowledged(device), 1u);
  ok(pipe_mgr_lrn_digest_notification_deregister(session, device, digest));
  EXPECT_EQ(pipe_mgr_lrn_digest_notification_deregister(session, device, digest), STANDIN_NOT_ENABLED);
  EXPECT_EQ(standin_digest_deliver(device, digest, entries.data(), 1), STANDIN_NOT_ENABLED);
  std::uint32_t timeout = 9;
  ok(pipe_mgr_flow_lrn_set_timeout(session, device, 250));
  ok(standin_learning_timeout(device, &timeout));
  EXPECT_EQ(timeout, 250u);
}

TEST_F(Services, SnapshotCapturesWhatItsTriggerWants)
{
  std::uint32_t ingress = 0, egress = 0;
  ok(bf_snapshot_create(device, PD_ALL_PIPES, 0, 11, STANDIN_SNAPSHOT_INGRESS, &ingress));
  ok(bf_snapshot_create(device, 1, 0, 11, STANDIN_SNAPSHOT_EGRESS, &egress));
  EXPECT_EQ(ingress & 2, 0u);
  EXPECT_EQ(egress & 2, 2u);
  EXPECT_EQ(bf_snapshot_create(device, 1, 2, 1, 0, &egress), STANDIN_BAD_ARGUMENT);
  EXPECT_EQ(bf_snapshot_create(device + 1, 1, 0, 1, 0, &egress), STANDIN_NO_DEVICE);

  bytes value(STANDIN_SNAPSHOT_FIELD_BYTES), mask(value.size()), packet(value.size(), 0x11), area(52512, 0xee);
  EXPECT_EQ(standin_snapshot_packet(ingress, 0, packet.data()), STANDIN_NOT_TRIGGERED);
  value[711] = 0x15;
  mask[711] = 0x0f;
  ok(bf_snapshot_capture_trigger_set(ingress, value.data(), mask.data()));
  ok(bf_snapshot_capture_trigger_set(egress, value.data(), mask.data()));
  EXPECT_EQ(standin_snapshot_packet(ingress, 0, packet.data()), STANDIN_NOT_TRIGGERED);
  packet[711] = 0xf5;
  EXPECT_EQ(standin_snapshot_packet(egress, 0, packet.data()), STANDIN_NOT_TRIGGERED);  // another pipe
  for (std::uint32_t i = 0; i < STANDIN_SNAPSHOT_CAPTURES; ++i)
    ok(standin_snapshot_packet(ingress, i % 2, packet.data()));
  EXPECT_EQ(standin_snapshot_packet(ingress, 0, packet.data()), STANDIN_FULL);

  snap_capture_sizes_t sizes{4376, 0, 3664}, wrong{4376, 0, 4000};
  std::uint32_t captures = 0;
  EXPECT_EQ(bf_snapshot_capture_get(ingress, 1, area.data(), &wrong, &captures), STANDIN_BAD_ARGUMENT);
  ok(bf_snapshot_capture_get(ingress, 1, area.data(), &sizes, &captures));
  EXPECT_EQ(captures, 6u);
  EXPECT_EQ(area[4376], 1);      // the pipe
  EXPECT_EQ(area[4376 + 1], 2);  // the second capture
  EXPECT_EQ(bytes(area.begin() + 3664, area.begin() + 4376), packet);
  EXPECT_EQ(area[6 * 4376], 0xee);
  ok(bf_snapshot_capture_get(ingress, PD_ALL_PIPES, area.data(), &sizes, &captures));
  EXPECT_EQ(captures, 12u);
  ok(bf_snapshot_capture_trigger_set(ingress, value.data(), mask.data()));
  ok(bf_snapshot_capture_get(ingress, PD_ALL_PIPES, area.data(), &sizes, &captures));
  EXPECT_EQ(captures, 0u);

  ok(bf_snapshot_delete(ingress));
  EXPECT_EQ(bf_snapshot_delete(ingress), STANDIN_NO_SNAPSHOT);
  ok(standin_device_remove(device));
  EXPECT_EQ(bf_snapshot_delete(egress), STANDIN_NO_SNAPSHOT);
}

}  // namespace
