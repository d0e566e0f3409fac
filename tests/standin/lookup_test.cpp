// Lookups of packets, against a list that is searched from end to end.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <optional>
#include <random>

#include "switch_fixture.h"

namespace {

class Lookup : public SwitchTest {
 protected:
  static std::optional<pd_entry_hdl_t> look(std::uint32_t table, const bytes &key, std::uint32_t partition = 0)
  {
    pd_entry_hdl_t entry = 0;
    const pd_status_t status = standin_lookup(target, table, key.data(), key.size(), partition, &entry);
    if (status == BF_SUCCESS) return entry;
    EXPECT_EQ(status, STANDIN_NO_ENTRY);
    return std::nullopt;
  }
};

TEST_F(Lookup, MissGivesTheDefaultEntry)
{
  pd_entry_hdl_t entry = 0, by_default = 0;
  const bytes key{1, 2, 3};
  EXPECT_EQ(standin_lookup(target, host_table, key.data(), 3, 0, &entry), STANDIN_NO_ENTRY);
  EXPECT_EQ(entry, STANDIN_NO_HANDLE);
  action_record none(0, {});
  ok(pipe_mgr_mat_default_entry_set(session, target, host_table, miss, &none, 0, &by_default));
  EXPECT_EQ(standin_lookup(target, host_table, key.data(), 3, 0, &entry), STANDIN_NO_ENTRY);
  EXPECT_EQ(entry, by_default);
  EXPECT_EQ(standin_lookup(target, host_table, key.data(), 2, 0, &entry), STANDIN_BAD_KEY);
  const pd_entry_hdl_t host = add_host(1, 2, 3);
  EXPECT_EQ(look(host_table, {0xff, 2, 0x83}), host);  // only live bits count
  EXPECT_EQ(look(host_table, {1, 2, 0x13}), std::nullopt);
}

struct listed {
  key_record key;
  pd_entry_hdl_t handle;
};

/// Live masks as the pipeline of the tests has them.
bool matches(const listed &entry, const bytes &key, std::uint32_t partition, bool partitioned)
{
  if (partitioned && ((entry.key.partition_index ^ partition) & 0x7fff) != 0) return false;
  for (std::size_t i = partitioned ? 2 : 0; i < key.size(); ++i)
    if (((entry.key.value[i] ^ key[i]) & entry.key.mask[i]) != 0) return false;
  return true;
}

bool same_key(const listed &entry, const key_record &key, bool partitioned)
{
  return matches(entry, key.value, key.partition_index, partitioned) && entry.key.mask == key.mask &&
         (partitioned || entry.key.priority == key.priority);
}

TEST_F(Lookup, AgreesWithASearchOfAllEntries)
{
  for (const bool routes : {true, false}) {
    const std::uint32_t table = routes ? std::uint32_t{route_table} : std::uint32_t{policy_table};
    std::mt19937 random(routes ? 1 : 2);
    const auto below = [&](unsigned n) { return static_cast<std::uint32_t>(random() % n); };
    const auto address = [&] { return below(4) << 30 | below(4) << 20 | below(8) << 8 | below(4); };
    const auto make_key = [&] {
      if (routes) return route_key(below(3) | below(2) << 15, address(), below(33));
      return policy_key(static_cast<std::uint16_t>(random()), static_cast<std::uint16_t>(0xff << below(10)), below(6));
    };
    std::vector<listed> all;
    for (int step = 0; step < 2500; ++step) {
      const key_record key = make_key();
      const auto known =
          std::find_if(all.begin(), all.end(), [&](const listed &e) { return same_key(e, key, routes); });
      const bool adding = below(3) != 0;
      if (adding) {
        action_record act(32, {0, 0, 0, 0});
        pd_entry_hdl_t handle = 0;
        const pd_status_t status = add(table, key, routes ? route : police, act, &handle);
        ASSERT_EQ(status, known == all.end() ? pd_status_t{BF_SUCCESS} : pd_status_t{STANDIN_EXISTS});
        if (status == BF_SUCCESS) all.push_back({key, handle});
      } else if (!all.empty()) {
        const std::size_t gone = below(static_cast<unsigned>(all.size()));
        key_record by(all[gone].key);
        ok(below(2) != 0 ? pipe_mgr_mat_ent_del(session, device, table, all[gone].handle, 0)
                         : pipe_mgr_mat_ent_del_by_match_spec(session, target, table, &by, 0));
        std::vector<listed> rest;
        for (std::size_t i = 0; i < all.size(); ++i)
          if (i != gone) rest.push_back({all[i].key, all[i].handle});
        all.swap(rest);
      }

      const bytes packet = make_key().value;
      const std::uint32_t partition = routes ? below(3) : 0;
      const listed *best = nullptr;
      for (const listed &each : all)
        if (matches(each, packet, partition, routes) && (best == nullptr || each.key.priority < best->key.priority))
          best = &each;
      const auto found = look(table, packet, partition);
      ASSERT_EQ(found.has_value(), best != nullptr);
      if (best == nullptr) continue;
      const auto won = std::find_if(all.begin(), all.end(), [&](const listed &e) { return e.handle == *found; });
      ASSERT_NE(won, all.end());
      ASSERT_TRUE(matches(*won, packet, partition, routes));
      ASSERT_EQ(won->key.priority, best->key.priority);
    }
    EXPECT_EQ(count(table), all.size());
  }
}

TEST_F(Lookup, EqualPrioritiesGoToTheLongerMask)
{
  action_record none(0, {});
  pd_entry_hdl_t wide = 0, narrow = 0;
  ok(add(policy_table, policy_key(0, 0, 5), pass, none, &wide));
  ok(add(policy_table, policy_key(0x12, 0xff, 5), pass, none, &narrow));
  EXPECT_EQ(look(policy_table, {0, 0x12}), narrow);
  EXPECT_EQ(look(policy_table, {0, 0x13}), wide);
}

}  // namespace
