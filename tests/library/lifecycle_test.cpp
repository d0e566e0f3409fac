// Start and stop, device events, and the names of actions.
//
// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <cjson/cJSON.h>

#include <cstring>
#include <memory>
#include <string>
#include <utility>

#include "caller.h"
#include "recorder.h"
#include "stopped.h"
#include "tarvex_pd/tarvex_pd.h"

namespace tarvex::test {

namespace {

using json = std::unique_ptr<cJSON, decltype(&cJSON_Delete)>;

json parsed(const std::string &text) { return {cJSON_Parse(text.c_str()), cJSON_Delete}; }

std::vector<std::string> called()
{
  std::vector<std::string> names;
  for (const recorded_call &call : driver().calls) names.push_back(call.function);
  return names;
}

TEST(lifecycle, init_registers_after_the_states_are_there)
{
  driver().reset();
  std::size_t states = 0;
  driver().answer = [&](const recorded_call &call) -> std::uint64_t {
    if (call.function == "p4_pd_ms_init_state") return reinterpret_cast<std::uint64_t>(state_of_profile(states++));
    if (call.function == "bf_drv_register") call.at<std::uint32_t>(1) = 0x90ab;
    return call.function == "bf_drv_client_register_callbacks" || call.function == "p4_pd_ms_init" ? 0x55 : 0;
  };
  EXPECT_EQ(p4_pd_tarvex_switch_init(), 0x55u);
  const std::string state = "p4_pd_ms_init_state";
  ASSERT_EQ(called(), (std::vector<std::string>{"p4_pd_ms_init", state, state, state, state, state, "bf_drv_register",
                                                "bf_drv_client_register_callbacks"}));
  const recorded_call &client = driver().calls[6];
  EXPECT_EQ(std::string(client.arguments[0].record.begin(), client.arguments[0].record.end()),
            "p4_pd_tarvex_switch_pd");
  EXPECT_EQ(client.arguments[1].word, reinterpret_cast<std::uint64_t>(&bf_drv_hdl));
  EXPECT_EQ(bf_drv_hdl, 0x90abu);

  const recorded_call &events = driver().calls[7];
  std::uint64_t slots[27] = {};
  slots[3] = reinterpret_cast<std::uint64_t>(&p4_pd_tarvex_switch_dev_remove);
  slots[4] = reinterpret_cast<std::uint64_t>(&p4_pd_tarvex_switch_dev_log);
  slots[5] = reinterpret_cast<std::uint64_t>(&p4_pd_tarvex_switch_dev_restore);
  bytes expected(sizeof slots);
  std::memcpy(expected.data(), slots, sizeof slots);
  EXPECT_EQ(hex(events.arguments[1].record), hex(expected));
  EXPECT_EQ(events.arguments[0].word, 0x90abu);
  EXPECT_EQ(events.arguments[2].word, 2u);
  EXPECT_EQ(events.arguments[3].word, 0u);
}

TEST(lifecycle, a_refused_client_stops_the_process)
{
  driver().reset();
  driver().answer = [](const recorded_call &call) { return call.function == "bf_drv_register" ? 1 : 0; };
  const auto stop = stopped([] { p4_pd_tarvex_switch_init(); });
  ASSERT_TRUE(stop);
  EXPECT_EQ(stop->assertion, "r == BF_SUCCESS");
  EXPECT_EQ(stop->file, "bf_tarvex_switch_mpls_baremetal/src/pd");
  EXPECT_EQ(stop->function, "p4_pd_tarvex_switch_init");
  EXPECT_EQ(called().back(), "bf_drv_register");
  driver().reset();
  p4_pd_tarvex_switch_init();
}

TEST(lifecycle, cleanup_deregisters_alone)
{
  driver().reset();
  bf_drv_hdl = 0x1357;
  driver().answer = [](const recorded_call &) { return 0x66; };
  EXPECT_EQ(p4_pd_tarvex_switch_cleanup(), 0x66u);
  p4_pd_tarvex_switch_device_state_cleanup();
  ASSERT_EQ(called(), std::vector<std::string>{"bf_drv_deregister"});
  EXPECT_EQ(driver().calls[0].arguments[0].word, 0x1357u);
  EXPECT_EQ(bf_drv_hdl, 0x1357u);
}

TEST(lifecycle, dev_remove_drops_the_device_whole)
{
  driver().reset();
  driver().answer = [](const recorded_call &) { return 1; };
  EXPECT_EQ(p4_pd_tarvex_switch_dev_remove(0x8000'01ff), 0u);
  ASSERT_EQ(driver().calls.size(), 6u);
  for (std::size_t i = 0; i < 5; ++i) {
    EXPECT_EQ(driver().calls[i].function, "p4_pd_ms_destroy_state_for_dev");
    EXPECT_EQ(driver().calls[i].arguments[0].word, reinterpret_cast<std::uint64_t>(state_of_profile(i)));
    EXPECT_EQ(driver().calls[i].arguments[1].word, 0x8000'01ffu);
  }
  EXPECT_EQ(driver().calls[5].function, "p4_pd_ms_destroy_txn_state_for_dev");
  EXPECT_EQ(driver().calls[5].arguments[0].word, 0x8000'01ffu);
}

// Which profile's state got which object.
using handed = std::vector<std::pair<std::uint64_t, std::uint64_t>>;

handed handed_on(const char *function)
{
  handed result;
  for (const recorded_call &call : driver().calls) {
    EXPECT_EQ(call.function, function);
    EXPECT_EQ(call.arguments[0].word, 0xffu);
    result.emplace_back(call.arguments[1].word, call.arguments[2].word);
  }
  return result;
}

std::pair<std::uint64_t, std::uint64_t> state_and_object(std::size_t profile, const cJSON *object)
{
  return {reinterpret_cast<std::uint64_t>(state_of_profile(profile)), reinterpret_cast<std::uint64_t>(object)};
}

TEST(lifecycle, the_log_document_goes_back_in)
{
  driver().reset();
  const json document(cJSON_CreateObject(), cJSON_Delete);
  EXPECT_EQ(p4_pd_tarvex_switch_dev_log(0x1ff, document.get()), 0u);
  const std::unique_ptr<char, decltype(&cJSON_free)> text(cJSON_PrintUnformatted(document.get()), cJSON_free);
  EXPECT_STREQ(text.get(),
               R"({"name":"tarvex_switch","act_profs":[{"name":"ecmpMemberActionProfile"},)"
               R"({"name":"lagPortActionProfile"},{"name":"tunnelMember"},{"name":"mirrorLagPortActionProfile"},)"
               R"({"name":"egrMirrorLagPortActionProfile"}]})");
  const cJSON *profiles = cJSON_GetObjectItem(document.get(), "act_profs");
  handed all;
  for (int i = 0; i < 5; ++i) {
    all.push_back(state_and_object(static_cast<std::size_t>(i), cJSON_GetArrayItem(profiles, i)));
  }
  EXPECT_EQ(handed_on("p4_pd_ms_log_state"), all);
  driver().reset();
  EXPECT_EQ(p4_pd_tarvex_switch_dev_restore(0x1ff, document.get()), 0u);
  EXPECT_EQ(handed_on("p4_pd_ms_restore_state"), all);
}

TEST(lifecycle, restore_takes_what_it_knows_of_any_document)
{
  struct example {
    std::string document;
    std::vector<std::pair<int, std::size_t>> restored;  // element and profile
  };
  const std::string tunnel = R"({"name":"tunnelMember"})";
  const example examples[] = {
      {R"({"act_profs":[{"name":"tunnelMember"},{"name":"unknown"},{"name":"ecmpMemberActionProfile"}]})",
       {{0, 2}, {2, 0}}},
      {R"({"act_profs":[{"name":"tunnelMember","x":[1]},{"name":"tunnelMember"}],"name":7})", {{0, 2}, {1, 2}}},
      {R"({"ACT_PROFS":[{"Name":"lagPortActionProfile"}]})", {{0, 1}}},  // keys of any case, names of their own
      {R"({"act_profs":[{"name":"TunnelMember"},{"name":"tunnelMembe"},{"name":"tunnelMember2"},{"name":""}]})", {}},
      {R"({"act_profs":[{"name":"tunnelMember\u0020"},{"name":" tunnelMember"}]})", {}},
      {R"({"act_profs":[{"other":"tunnelMember"},{"name":null},{"name":["tunnelMember"]},{"name":3},{}]})", {}},
      {R"({"act_profs":[null,1,"tunnelMember",[],[)" + tunnel + "],true," + tunnel + "]}", {{6, 2}}},
      {R"({"act_profs":[]})", {}},
      {R"({"act_profs":null})", {}},
      {R"({"act_profs":"tunnelMember"})", {}},
      {R"({"act_profs":)" + tunnel + "}", {}},
      {R"({"act_profs":{"0":)" + tunnel + "}}", {}},
      {R"({"profiles":[)" + tunnel + "]}", {}},
      {"[" + tunnel + "]", {}},
      {R"([{"act_profs":[)" + tunnel + "]}]", {}},
      {"null", {}},
      {R"("act_profs")", {}},
      {"17", {}},
  };
  for (const example &example : examples) {
    const json document = parsed(example.document);
    ASSERT_NE(document, nullptr) << example.document;
    handed expected;
    for (const auto &[element, profile] : example.restored) {
      const cJSON *profiles = cJSON_GetObjectItem(document.get(), "act_profs");
      expected.push_back(state_and_object(profile, cJSON_GetArrayItem(profiles, element)));
    }
    driver().reset();
    driver().answer = [](const recorded_call &) { return 1; };
    EXPECT_EQ(p4_pd_tarvex_switch_dev_restore(0xff, document.get()), 0u) << example.document;
    EXPECT_EQ(handed_on("p4_pd_ms_restore_state"), expected) << example.document;
  }
  driver().reset();
  EXPECT_EQ(p4_pd_tarvex_switch_dev_restore(0, nullptr), 0u);
  EXPECT_EQ(p4_pd_tarvex_switch_dev_log(0, nullptr), 0u);
  EXPECT_TRUE(driver().calls.empty());
}

TEST(lifecycle, actions_have_names)
{
  ASSERT_EQ(calls::actions.size(), 231u);
  for (std::uint32_t value = 0; value < 231; ++value) {
    const std::string name = std::string("p4_pd_tarvex_switch_") + calls::actions[value].name;
    EXPECT_EQ(calls::actions[value].enum_value, value);
    EXPECT_EQ(p4_pd_tarvex_switch_action_name_strings[value], name);
    EXPECT_EQ(p4_pd_tarvex_switch_action_enum_to_string(value), name);
    EXPECT_EQ(p4_pd_tarvex_switch_action_string_to_enum(name.c_str()), value);
    EXPECT_LT(name.size(), std::size_t{P4_PD_TARVEX_SWITCH_ACTION_NAME_SIZE});
  }
  const std::pair<std::uint32_t, const char *> by_hand[] = {{0, "setPhase0"},
                                                            {8, "onMiss"},
                                                            {42, "setEcmpNextHop"},
                                                            {86, "invalidateUcastEgressPort"},
                                                            {95, "setTunnelEgressInfo"},
                                                            {114, "noDecapNoEncapBridgeIpv4"},
                                                            {218, "setLagMemberSelector"},
                                                            {223, "setEgrLagMemberSelector"},
                                                            {230, "setEcn"}};
  for (const auto &[value, name] : by_hand) {
    EXPECT_EQ(p4_pd_tarvex_switch_action_enum_to_string(value), std::string("p4_pd_tarvex_switch_") + name);
  }
  for (const std::uint32_t value : {231U, 232U, 0x80000000U, 0xffffffffU}) {
    EXPECT_EQ(p4_pd_tarvex_switch_action_enum_to_string(value), nullptr);
  }
  for (const char *name :
       {"onMiss", "p4_pd_tarvex_switch_onMiss ", "", "p4_pd_tarvex_switch_", "p4_pd_tarvex_switch_onMis",
        " p4_pd_tarvex_switch_onMiss", "p4_pd_tarvex_switch_OnMiss", "p4_pd_tarvex_switch_onMiss2"}) {
    EXPECT_EQ(p4_pd_tarvex_switch_action_string_to_enum(name), 231u) << name;
  }
  EXPECT_EQ(p4_pd_tarvex_switch_action_string_to_enum(nullptr), 231u);
}

}  // namespace

}  // namespace tarvex::test
