// The member-selector state service and its log document.
//
// SPDX-License-Identifier: Apache-2.0
#include <functional>
#include <memory>
#include <string>

#include <cjson/cJSON.h>

#include "switch_fixture.h"

namespace {

using document = std::unique_ptr<cJSON, decltype(&cJSON_Delete)>;

document parse(const char *text) { return {cJSON_Parse(text), cJSON_Delete}; }

class MemberSelector : public SwitchTest {
 protected:
  void SetUp() override
  {
    SwitchTest::SetUp();
    state_ = p4_pd_ms_init_state();
    ASSERT_NE(state_, nullptr);
  }

  pd_status_t new_member(pd_mbr_hdl_t member) { return p4_pd_ms_new_mbr(session, state_, device, member); }
  pd_status_t new_group(pd_grp_hdl_t group) { return p4_pd_ms_new_grp(session, state_, device, group); }
  pd_status_t join(pd_mbr_hdl_t member, pd_grp_hdl_t group)
  {
    return p4_pd_ms_add_mbr_to_grp(session, state_, device, member, group);
  }
  std::vector<std::uint32_t> groups_of(pd_mbr_hdl_t member)
  {
    std::vector<std::uint32_t> found;
    const p4_pd_ms_grp_fn_t visit = [](std::uint32_t dev, pd_mbr_hdl_t, pd_grp_hdl_t group, void *to) -> pd_status_t {
      EXPECT_EQ(dev, device);
      static_cast<std::vector<std::uint32_t> *>(to)->push_back(group);
      return BF_SUCCESS;
    };
    p4_pd_ms_mbr_apply_to_grps(state_, device, member, visit, &found);
    return found;
  }
  std::string log()
  {
    const document object(cJSON_CreateObject(), cJSON_Delete);
    ok(p4_pd_ms_log_state(device, state_, object.get()));
    const std::unique_ptr<char, decltype(&cJSON_free)> text(cJSON_PrintUnformatted(object.get()), cJSON_free);
    return text.get();
  }

  ms_state *state_ = nullptr;
};

TEST_F(MemberSelector, ActionsOfMembersAndGroups)
{
  std::uint32_t action = 1;
  EXPECT_EQ(p4_pd_ms_get_mbr_act(state_, device, 5, &action), STANDIN_NO_MEMBER);
  EXPECT_EQ(p4_pd_ms_set_mbr_act(state_, device, 5, 6), STANDIN_NO_MEMBER);
  ok(new_member(5));
  EXPECT_EQ(new_member(5), STANDIN_EXISTS);
  EXPECT_EQ(p4_pd_ms_get_mbr_act(state_, device, 5, &action), STANDIN_NO_ACTION);
  ok(p4_pd_ms_set_mbr_act(state_, device, 5, 0x20000119));
  ok(p4_pd_ms_get_mbr_act(state_, device, 5, &action));
  EXPECT_EQ(action, 0x20000119u);
  EXPECT_EQ(p4_pd_ms_get_mbr_act(state_, device + 1, 5, &action), STANDIN_NO_MEMBER);

  ok(new_group(5));
  EXPECT_EQ(p4_pd_ms_get_grp_act(state_, device, 5, &action), STANDIN_NO_ACTION);
  ok(p4_pd_ms_set_grp_act(state_, device, 5, 8));
  EXPECT_EQ(p4_pd_ms_del_grp(session, state_, device, 6), STANDIN_NO_GROUP);
  ok(p4_pd_ms_del_grp(session, state_, device, 5));
  EXPECT_EQ(p4_pd_ms_get_grp_act(state_, device, 5, &action), STANDIN_NO_GROUP);
  ok(p4_pd_ms_del_mbr(session, state_, device, 5));
  EXPECT_EQ(p4_pd_ms_get_mbr_act(state_, device, 5, &action), STANDIN_NO_MEMBER);
}

TEST_F(MemberSelector, MembershipsGoWithEitherSide)
{
  for (const std::uint32_t each : {1u, 2u}) ok(new_member(each) | new_group(10 + each));
  for (const std::uint32_t member : {1u, 2u})
    for (const std::uint32_t group : {12u, 11u}) ok(join(member, group));
  EXPECT_EQ(join(1, 11), STANDIN_EXISTS);
  EXPECT_EQ(join(1, 13), STANDIN_NO_GROUP);
  EXPECT_EQ(groups_of(1), (std::vector<std::uint32_t>{12, 11}));
  ok(p4_pd_ms_del_mbr_from_grp(session, state_, device, 1, 12));
  EXPECT_EQ(p4_pd_ms_del_mbr_from_grp(session, state_, device, 1, 12), STANDIN_NO_MEMBER);
  EXPECT_EQ(groups_of(1), std::vector<std::uint32_t>{11});
  ok(p4_pd_ms_del_grp(session, state_, device, 11));
  EXPECT_EQ(groups_of(1), std::vector<std::uint32_t>{});
  EXPECT_EQ(groups_of(2), std::vector<std::uint32_t>{12});
  ok(p4_pd_ms_del_mbr(session, state_, device, 2));
  EXPECT_EQ(log(), R"({"members":[{"hdl":1}],"groups":[{"hdl":12,"mbrs":[]}]})");

  // A membership may come ahead of its member, which is not known by it.
  ok(join(7, 12));
  std::uint32_t action = 0;
  EXPECT_EQ(p4_pd_ms_get_mbr_act(state_, device, 7, &action), STANDIN_NO_MEMBER);
  ok(new_member(7));
  EXPECT_EQ(groups_of(7), std::vector<std::uint32_t>{12});
}

TEST_F(MemberSelector, ResourcesPassFromMemberToGroups)
{
  ok(new_member(1) | new_group(2) | join(1, 2));
  std::uint32_t count = 9;
  pd_res_spec_t some{1, 1};
  pd_res_spec_t *list = &some;
  ok(p4_pd_ms_mbr_get_res(state_, device, 1, &count, &list));
  EXPECT_EQ(count, 0u);
  EXPECT_EQ(list, nullptr);
  const pd_res_spec_t given[] = {{0x4000003, 5}, {0x5000002, 6}};
  ok(standin_member_resources_set(state_, device, 1, 2, given));
  ok(p4_pd_ms_mbr_apply_to_grps(state_, device, 1, p4_pd_ms_grp_update_res, state_));
  ok(p4_pd_ms_grp_get_res(state_, device, 2, &count, &list));
  ASSERT_EQ(count, 2u);
  EXPECT_EQ(list[1].res_hdl, 0x5000002u);
  EXPECT_EQ(list[1].res_index, 6u);
  EXPECT_EQ(p4_pd_ms_grp_get_res(state_, device, 3, &count, &list), STANDIN_NO_GROUP);
}

TEST_F(MemberSelector, LogRestores)
{
  for (const pd_mbr_hdl_t each : {1u, 0xfffffffeu}) {
    ok(new_member(each));
    ok(p4_pd_ms_set_mbr_act(state_, device, each, 0x200001ab));
  }
  ok(new_group(3) | join(0xfffffffe, 3) | join(1, 3));
  ok(p4_pd_ms_set_grp_act(state_, device, 3, 0x200001af));
  const std::string before = log();
  EXPECT_EQ(before, R"({"members":[{"hdl":1,"act":536871339},{"hdl":4294967294,"act":536871339}],)"
                    R"("groups":[{"hdl":3,"act":536871343,"mbrs":[4294967294,1]}]})");
  ok(p4_pd_ms_destroy_state_for_dev(state_, device));
  ok(p4_pd_ms_destroy_txn_state_for_dev(device));
  EXPECT_EQ(log(), R"({"members":[],"groups":[]})");
  ok(p4_pd_ms_restore_state(device, state_, parse(before.c_str()).get()));
  EXPECT_EQ(log(), before);

  EXPECT_EQ(groups_of(1), std::vector<std::uint32_t>{3});

  // The order in which handles came is no part of the state.
  ok(p4_pd_ms_destroy_state_for_dev(state_, device));
  ok(new_group(3) | new_member(0xfffffffe) | new_member(1) | join(0xfffffffe, 3) | join(1, 3));
  ok(p4_pd_ms_set_grp_act(state_, device, 3, 0x200001af));
  for (const pd_mbr_hdl_t each : {0xfffffffeu, 1u}) ok(p4_pd_ms_set_mbr_act(state_, device, each, 0x200001ab));
  EXPECT_EQ(log(), before);
}

// `count` elements between two texts, each made of its number.
std::string list(const char *head, std::uint32_t count, const char *tail,
                 const std::function<std::string(unsigned)> &one)
{
  std::string text = head;
  for (std::uint32_t i = 0; i < count; ++i) text += (i == 0 ? "" : ",") + one(i);
  return text + tail;
}

TEST_F(MemberSelector, HostileDocumentsChangeNothing)
{
  ok(new_member(1) | new_group(2) | join(1, 2));
  const std::string before = log();
  const auto member = [](unsigned i) { return "{\"hdl\":" + std::to_string(i % 99999) + "}"; };
  const auto number = [](unsigned i) { return std::to_string(i % 99999); };
  const auto refuse = [&](const std::string &bad) {
    EXPECT_EQ(p4_pd_ms_restore_state(device, state_, parse(bad.c_str()).get()), STANDIN_BAD_DOCUMENT)
        << bad.substr(0, 80);
    EXPECT_EQ(log(), before) << bad.substr(0, 80);
  };
  for (std::size_t cut = 0; cut < before.size(); ++cut) refuse(before.substr(0, cut));
  for (const char *bad : {"{}",
                          "[]",
                          "7",
                          R"("members")",
                          R"({"members":[]})",
                          R"({"groups":[]})",
                          R"({"Members":[],"groups":[]})",
                          R"({"members":[],"GROUPS":[]})",
                          R"({"members":{},"groups":[]})",
                          R"({"members":[],"groups":{"hdl":1}})",
                          R"({"members":[{}],"groups":[]})",
                          R"({"members":[1,null,"x",[]],"groups":[]})",
                          R"({"members":[{"HDL":1}],"groups":[]})",
                          R"({"members":[{"hdl":"1"}],"groups":[]})",
                          R"({"members":[{"hdl":1.5}],"groups":[]})",
                          R"({"members":[{"hdl":-1}],"groups":[]})",
                          R"({"members":[{"hdl":4294967296}],"groups":[]})",
                          R"({"members":[{"hdl":1e999}],"groups":[]})",
                          R"({"members":[{"hdl":1},{"hdl":1}],"groups":[]})",
                          R"({"members":[{"hdl":1,"act":"x"}],"groups":[]})",
                          R"({"members":[{"hdl":1,"act":null}],"groups":[]})",
                          "{\"members\":[{\"hdl\xff\":1}],\"groups\":[]}",
                          R"({"members":[],"groups":[{"hdl":1}]})",
                          R"({"members":[],"groups":[{"hdl":1,"Mbrs":[]}]})",
                          R"({"members":[],"groups":[{"hdl":1,"mbrs":{"0":1}}]})",
                          R"({"members":[],"groups":[{"hdl":1,"mbrs":[true]}]})",
                          R"({"members":[],"groups":[{"hdl":1,"mbrs":[]},{"hdl":1,"mbrs":[]}]})",
                          R"({"members":[],"groups":[{"hdl":1,"mbrs":[1,1]}]})"})
    refuse(bad);
  refuse(R"({"members":)" + std::string(990, '[') + std::string(990, ']') + R"(,"groups":[]})");
  refuse(list(R"({"members":[)", 100000, R"(],"groups":[]})", member));
  refuse(list(R"({"members":[],"groups":[{"hdl":1,"mbrs":[)", 100000, "]}]}", number));
}

TEST_F(MemberSelector, LargeDocumentsRestore)
{
  const auto group = [](unsigned i) { return "{\"hdl\":" + std::to_string(i) + ",\"mbrs\":[7]}"; };
  const std::string large = list(R"({"members":[{"hdl":7}],"groups":[)", 100000, "]}", group);
  ok(p4_pd_ms_restore_state(device, state_, parse(large.c_str()).get()));
  EXPECT_EQ(log(), large);
  EXPECT_EQ(groups_of(7).size(), 100000u);
}

}  // namespace
