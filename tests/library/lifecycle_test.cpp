// Start and stop, device events, and the names of actions.
//
// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <cjson/cJSON.h>

#include <cstring>
#include <memory>
#include <string>
#include <utility>

#include "reference.h"
#include "stopped.h"
#include "tarvex_pd/lifecycle.h"

namespace tarvex::test {

namespace {

using json = std::unique_ptr<cJSON, decltype(&cJSON_Delete)>;

const std::size_t profile_count = calls::profiles.size();

json parsed(const std::string &text) { return {cJSON_Parse(text.c_str()), cJSON_Delete}; }

std::uint64_t address_of(const std::string &name)
{
  return reinterpret_cast<std::uint64_t>(function_named(prefix() + name).function);
}

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
  EXPECT_EQ(invoke("init"), 0x55u);
  std::vector<std::string> expected_calls(1 + profile_count, "p4_pd_ms_init_state");
  expected_calls[0] = "p4_pd_ms_init";
  expected_calls.insert(expected_calls.end(), {"bf_drv_register", "bf_drv_client_register_callbacks"});
  ASSERT_EQ(called(), expected_calls);
  const recorded_call &client = driver().calls[1 + profile_count];
  EXPECT_EQ(std::string(client.arguments[0].record.begin(), client.arguments[0].record.end()), calls::pipeline.client);
  EXPECT_EQ(client.arguments[1].word, reinterpret_cast<std::uint64_t>(&bf_drv_hdl));
  EXPECT_EQ(bf_drv_hdl, 0x90abu);

  const recorded_call &events = driver().calls[2 + profile_count];
  std::uint64_t slots[27] = {};
  slots[3] = address_of("dev_remove");
  slots[4] = address_of("dev_log");
  slots[5] = address_of("dev_restore");
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
  const auto stop = stopped([] { invoke("init"); });
  ASSERT_TRUE(stop);
  EXPECT_EQ(stop->assertion, "r == BF_SUCCESS");
  EXPECT_EQ(stop->file, source_of("pd"));
  EXPECT_EQ(stop->function, prefix() + "init");
  EXPECT_EQ(called().back(), "bf_drv_register");
  driver().reset();
  invoke("init");
}

TEST(lifecycle, cleanup_deregisters_alone)
{
  driver().reset();
  bf_drv_hdl = 0x1357;
  driver().answer = [](const recorded_call &) { return 0x66; };
  EXPECT_EQ(invoke("cleanup"), 0x66u);
  invoke<void>("device_state_cleanup");
  ASSERT_EQ(called(), std::vector<std::string>{"bf_drv_deregister"});
  EXPECT_EQ(driver().calls[0].arguments[0].word, 0x1357u);
  EXPECT_EQ(bf_drv_hdl, 0x1357u);
}

TEST(lifecycle, dev_remove_drops_the_device_whole)
{
  driver().reset();
  driver().answer = [](const recorded_call &) { return 1; };
  EXPECT_EQ(invoke("dev_remove", 0x8000'01ffU), 0u);
  ASSERT_EQ(driver().calls.size(), profile_count + 1);
  for (std::size_t i = 0; i < profile_count; ++i) {
    EXPECT_EQ(driver().calls[i].function, "p4_pd_ms_destroy_state_for_dev");
    EXPECT_EQ(driver().calls[i].arguments[0].word, reinterpret_cast<std::uint64_t>(state_of_profile(i)));
    EXPECT_EQ(driver().calls[i].arguments[1].word, 0x8000'01ffu);
  }
  EXPECT_EQ(driver().calls[profile_count].function, "p4_pd_ms_destroy_txn_state_for_dev");
  EXPECT_EQ(driver().calls[profile_count].arguments[0].word, 0x8000'01ffu);
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
  EXPECT_EQ(invoke("dev_log", 0x1ffU, document.get()), 0u);
  const std::unique_ptr<char, decltype(&cJSON_free)> text(cJSON_PrintUnformatted(document.get()), cJSON_free);
  std::string expected;
  for (const calls::profile_info &profile : calls::profiles)
    expected += std::string(expected.empty() ? "" : ",") + R"({"name":")" + profile.name + R"("})";
  EXPECT_EQ(text.get(), R"({"name":")" + std::string(calls::pipeline.name) + R"(","act_profs":[)" + expected + "]}");
  const cJSON *logged = cJSON_GetObjectItem(document.get(), "act_profs");
  handed all;
  for (std::size_t i = 0; i < calls::profiles.size(); ++i) {
    all.push_back(state_and_object(i, cJSON_GetArrayItem(logged, static_cast<int>(i))));
  }
  EXPECT_EQ(handed_on("p4_pd_ms_log_state"), all);
  driver().reset();
  EXPECT_EQ(invoke("dev_restore", 0x1ffU, document.get()), 0u);
  EXPECT_EQ(handed_on("p4_pd_ms_restore_state"), all);
}

std::string with_names(std::string document)
{
  const std::pair<std::string, const char *> names[] = {{"LAST", calls::profiles.back().name},
                                                        {"FIRST", calls::profiles.front().name}};
  for (const auto &[word, name] : names)
    for (std::size_t at; (at = document.find(word)) != std::string::npos;) document.replace(at, word.size(), name);
  return document;
}

TEST(lifecycle, restore_takes_what_it_knows_of_any_document)
{
  struct example {
    std::string document;
    std::vector<std::pair<int, std::size_t>> restored;  // element and profile
  };
  // LAST and FIRST stand for names of profiles.
  const std::string last = R"({"name":"LAST"})";
  const std::size_t end = profile_count - 1;
  const example examples[] = {
      {R"({"act_profs":[{"name":"LAST"},{"name":"unknown"},{"name":"FIRST"}]})", {{0, end}, {2, 0}}},
      {R"({"act_profs":[{"name":"LAST","x":[1]},{"name":"LAST"}],"name":7})", {{0, end}, {1, end}}},
      {R"({"ACT_PROFS":[{"Name":"FIRST"}]})", {{0, 0}}},  // keys of any case, names of their own
      {R"({"act_profs":[{"name":"xLAST"},{"name":"LAS"},{"name":"LAST2"},{"name":""}]})", {}},
      {R"({"act_profs":[{"name":"LAST\u0020"},{"name":" LAST"}]})", {}},
      {R"({"act_profs":[{"other":"LAST"},{"name":null},{"name":["LAST"]},{"name":3},{}]})", {}},
      {R"({"act_profs":[null,1,"LAST",[],[)" + last + "],true," + last + "]}", {{6, end}}},
      {R"({"act_profs":[]})", {}},
      {R"({"act_profs":null})", {}},
      {R"({"act_profs":"LAST"})", {}},
      {R"({"act_profs":)" + last + "}", {}},
      {R"({"act_profs":{"0":)" + last + "}}", {{0, end}}},  // kinds of items do not count
      {R"({"profiles":[)" + last + "]}", {}},
      {"[" + last + "]", {}},
      {R"([{"act_profs":[)" + last + "]}]", {}},
      {"null", {}},
      {R"("act_profs")", {}},
      {"17", {}},
  };
  for (const example &example : examples) {
    const json document = parsed(with_names(example.document));
    ASSERT_NE(document, nullptr) << example.document;
    handed expected;
    for (const auto &[element, profile] : example.restored) {
      const cJSON *profiles = cJSON_GetObjectItem(document.get(), "act_profs");
      expected.push_back(state_and_object(profile, cJSON_GetArrayItem(profiles, element)));
    }
    driver().reset();
    driver().answer = [](const recorded_call &) { return 1; };
    EXPECT_EQ(invoke("dev_restore", 0xffU, document.get()), 0u) << example.document;
    EXPECT_EQ(handed_on("p4_pd_ms_restore_state"), expected) << example.document;
  }
  driver().reset();
  EXPECT_EQ(invoke("dev_restore", 0U, static_cast<cJSON *>(nullptr)), 0u);
  EXPECT_EQ(invoke("dev_log", 0U, static_cast<cJSON *>(nullptr)), 0u);
  EXPECT_TRUE(driver().calls.empty());
}

TEST(lifecycle, actions_have_names)
{
  const auto string_of = [](std::uint32_t value) { return invoke<const char *>("action_enum_to_string", value); };
  const auto value_of = [](const char *name) { return invoke("action_string_to_enum", name); };
  const auto none = static_cast<std::uint32_t>(calls::actions.size());
  for (std::uint32_t value = 0; value < none; ++value) {
    const std::string name = prefix() + calls::actions[value].name;
    EXPECT_EQ(calls::actions[value].enum_value, value);
    EXPECT_EQ(string_of(value), name);
    EXPECT_EQ(value_of(name.c_str()), value);
  }
  for (const std::uint32_t value : {none, none + 1, 0x80000000U, 0xffffffffU}) EXPECT_EQ(string_of(value), nullptr);
  const std::string bare = calls::actions.back().name, whole = prefix() + bare;
  for (const std::string &name : {bare, whole + " ", std::string(), prefix(), whole.substr(0, whole.size() - 1),
                                  " " + whole, "P" + whole.substr(1), whole + "2"}) {
    EXPECT_EQ(value_of(name.c_str()), none) << name;
  }
  EXPECT_EQ(value_of(nullptr), none);
}

}  // namespace

}  // namespace tarvex::test
