// What a switch refuses: each fault has its status and changes nothing.
//
// SPDX-License-Identifier: Apache-2.0
#include <functional>
#include <string>

#include "switch_fixture.h"

namespace {

class Faults : public SwitchTest {};

TEST_F(Faults, AddRefusesWhatDoesNotFit)
{
  add_host(1, 2, 3);
  struct parts {
    std::uint32_t table = host_table;
    key_record key = host_key(9, 9, 9);
    std::uint32_t act_hdl = forward;
    action_record action{16, {1, 2}};
    std::uint32_t ttl = 0;
  };
  const struct {
    const char *what;
    pd_status_t status;
    void (*spoil)(parts &);
  } cases[] = {
      {"nothing", BF_SUCCESS, [](parts &) {}},
      {"table", STANDIN_NO_OBJECT, [](parts &p) { p.table = 0x1000004; }},
      {"table below", STANDIN_NO_OBJECT, [](parts &p) { p.table = 0x1000000; }},
      {"table above", STANDIN_NO_OBJECT, [](parts &p) { p.table = 0x1000007; }},
      {"keyless table", STANDIN_BAD_KEY, [](parts &p) { p.table = check_table; }},
      {"key", STANDIN_EXISTS,
       [](parts &p) {
         p.key.value = {1, 2, 3}, p.key.key_value = p.key.value.data();
       }},
      {"key bits", STANDIN_BAD_KEY, [](parts &p) { p.key.key_bits = 16; }},
      {"key bytes", STANDIN_BAD_KEY, [](parts &p) { p.key.key_bytes = 2; }},
      {"mask of an exact key", STANDIN_BAD_KEY, [](parts &p) { p.key.key_mask[0] = 0x01; }},
      {"partition", STANDIN_BAD_KEY, [](parts &p) { p.key.partition_index = 1; }},
      {"value pointer", STANDIN_BAD_ARGUMENT, [](parts &p) { p.key.key_value = nullptr; }},
      {"action of another table", STANDIN_NO_ACTION, [](parts &p) { p.act_hdl = route; }},
      {"data bits", STANDIN_BAD_ACTION, [](parts &p) { p.action.act_data.data_bits = 15; }},
      {"data bytes", STANDIN_BAD_ACTION, [](parts &p) { p.action.act_data.data_bytes = 1; }},
      {"data pointer", STANDIN_BAD_ACTION, [](parts &p) { p.action.act_data.data = nullptr; }},
      {"kind", STANDIN_BAD_ACTION, [](parts &p) { p.action.act_kinds = DRV_ACT_MEMBER; }},
      {"resource of another table", STANDIN_BAD_RESOURCE,
       [](parts &p) { p.action.res[p.action.res_count++] = resource(policy_counter, 0, DRV_RES_ATTACHED); }},
      {"resource tag", STANDIN_BAD_RESOURCE,
       [](parts &p) { p.action.res[p.action.res_count++] = resource(host_counter, 0, 3); }},
      {"resource count", STANDIN_BAD_ARGUMENT, [](parts &p) { p.action.res_count = 5; }},
  };
  for (const auto &each : cases) {
    SCOPED_TRACE(each.what);
    parts p;
    each.spoil(p);
    pd_entry_hdl_t entry = 0;
    EXPECT_EQ(pipe_mgr_mat_ent_add(session, target, p.table, &p.key, p.act_hdl, &p.action, p.ttl, 0, &entry),
              each.status);
    EXPECT_EQ(count(host_table), each.status == BF_SUCCESS ? 2u : 1u);
    if (each.status == BF_SUCCESS) pipe_mgr_mat_ent_del(session, device, host_table, entry, 0);
  }
  pd_entry_hdl_t entry = 0;
  action_record none(0, {});
  EXPECT_EQ(add(policy_table, policy_key(1, 1, 1), pass, none, &entry, 5), STANDIN_NOT_ENABLED);
  EXPECT_EQ(pipe_mgr_mat_ent_add(session, target + 1, host_table, nullptr, forward, nullptr, 0, 0, &entry),
            STANDIN_NO_DEVICE);
  EXPECT_EQ(pipe_mgr_mat_ent_del(session, 256, host_table, entry, 0), STANDIN_NO_DEVICE);
}

TEST_F(Faults, ReadWantsRoom)
{
  const pd_entry_hdl_t entry = add_host(1, 2, 3);
  read_back small_key(2), small_data(3);
  EXPECT_EQ(small_key.read(host_table, entry), STANDIN_BAD_KEY);
  small_data.action.act_data.data_bytes = 1;
  EXPECT_EQ(small_data.read(host_table, entry), STANDIN_BAD_ACTION);
  EXPECT_EQ(small_data.value, bytes(3));
  EXPECT_EQ(read_back(3).read(host_table, entry + 1), STANDIN_NO_ENTRY);
}

TEST_F(Faults, SmallTablesFillUp)
{
  ok(standin_size_limit(device, host_table, 2));
  const pd_entry_hdl_t first = add_host(0, 1, 0);
  add_host(0, 2, 0);
  pd_entry_hdl_t entry = 0;
  action_record to(16, {0, 0});
  EXPECT_EQ(add(host_table, host_key(0, 3, 0), forward, to, &entry), STANDIN_FULL);
  EXPECT_EQ(add(host_table, host_key(0, 1, 0), forward, to, &entry), STANDIN_EXISTS);
  ok(pipe_mgr_mat_ent_del(session, device, host_table, first, 0));
  ok(add(host_table, host_key(0, 3, 0), forward, to, &entry));

  ok(standin_size_limit(device, policy_counter, 8));
  action_record beyond(32, {0, 0, 0, 0}, {resource(policy_counter, 8, DRV_RES_ATTACHED)});
  EXPECT_EQ(add(policy_table, policy_key(1, 1, 1), police, beyond, &entry), STANDIN_BAD_INDEX);
  EXPECT_EQ(standin_size_limit(device, 0x1000004, 1), STANDIN_NO_OBJECT);
}

struct heard {
  std::string function;
  std::uint32_t handle;
};

TEST_F(Faults, ListenerHearsAndRefusalStopsTheNthCall)
{
  std::vector<heard> calls;
  standin_set_listener(
      [](const char *function, std::uint32_t handle, void *cookie) {
        static_cast<std::vector<heard> *>(cookie)->push_back({function, handle});
      },
      &calls);
  standin_refuse_call(2, 0x99);
  const pd_entry_hdl_t entry = add_host(1, 2, 3);
  EXPECT_EQ(pipe_mgr_mat_ent_del(session, device, host_table, entry, 0), 0x99u);
  ok(pipe_mgr_mat_ent_del(session, device, host_table, entry, 0));
  standin_refuse_call(1, 0x98);
  EXPECT_EQ(p4_pd_ms_init_state(), nullptr);
  standin_refuse_call(1, 0x98);
  standin_refuse_call(0, 0);
  ok(p4_pd_ms_init());
  standin_set_listener(nullptr, nullptr);
  p4_pd_ms_init();
  ASSERT_EQ(calls.size(), 5u);
  EXPECT_EQ(calls[0].function, "pipe_mgr_mat_ent_add");
  EXPECT_EQ(calls[1].function, "pipe_mgr_mat_ent_del");
  EXPECT_EQ(calls[1].handle, host_table);
}

TEST_F(Faults, AllocatorCountsAndFails)
{
  const std::size_t before = standin_live_blocks();
  standin_fail_calloc(2);
  auto *const block = static_cast<std::uint8_t *>(bf_sys_calloc(3, 5));
  ASSERT_NE(block, nullptr);
  EXPECT_EQ(bytes(block, block + 15), bytes(15));
  EXPECT_EQ(bf_sys_calloc(1, 1), nullptr);
  void *const next = bf_sys_calloc(1, 1);
  EXPECT_NE(next, nullptr);
  EXPECT_EQ(standin_live_blocks(), before + 2);
  bf_sys_free(block);
  bf_sys_free(next);
  bf_sys_free(nullptr);
  EXPECT_EQ(standin_live_blocks(), before);
}

TEST_F(Faults, StatusesHaveNamesAndKeepClearOfTheLibrary)
{
  EXPECT_STREQ(standin_status_name(STANDIN_NO_DEVICE), "STANDIN_NO_DEVICE");
  EXPECT_STREQ(standin_status_name(STANDIN_NO_MEMORY), "STANDIN_NO_MEMORY");
  for (const pd_status_t status : {2u, 3u, 6u, 0xffffffffu, 0x3fu, STANDIN_NO_MEMORY + 1u})
    EXPECT_EQ(standin_status_name(status), nullptr) << status;
}

}  // namespace
