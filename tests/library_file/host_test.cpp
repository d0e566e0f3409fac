// The library in a program of another make: one that is not position-independent, with a cJSON of its own whose
// functions tell nothing of what they did.
//
// SPDX-License-Identifier: Apache-2.0
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cjson/cJSON.h>

#include <cstring>
#include <deque>
#include <string>

#include "recorder.h"
#include "tarvex_pd/tarvex_pd.h"

namespace tarvex::test {
namespace {

std::deque<cJSON> items;
unsigned deleted = 0;

cJSON *new_item() { return &items.emplace_back(); }

void append(cJSON *to, cJSON *item)
{
  cJSON **end = &to->child;
  while (*end != nullptr) end = &(*end)->next;
  *end = item;
}

template <typename Function>
std::uint64_t own_address(Function *function)
{
  Dl_info found{};
  const auto address = reinterpret_cast<std::uint64_t>(function);
  EXPECT_NE(dladdr(reinterpret_cast<void *>(address), &found), 0);
  EXPECT_NE(std::string(found.dli_fname).find("host_tests"), std::string::npos) << "the address is the library's";
  return address;
}

TEST(host, the_driver_gets_the_addresses_that_the_program_sees)
{
  driver().reset();
  EXPECT_EQ(p4_pd_tarvex_switch_init(), 0u);
  std::uint64_t slots[6] = {};
  std::memcpy(slots, driver().calls.back().arguments[1].record.data(), sizeof slots);
  EXPECT_EQ(slots[3], own_address(&p4_pd_tarvex_switch_dev_remove));
  EXPECT_EQ(slots[4], own_address(&p4_pd_tarvex_switch_dev_log));
  EXPECT_EQ(slots[5], own_address(&p4_pd_tarvex_switch_dev_restore));
}

TEST(host, another_cjson_takes_the_log_and_gives_it_back)
{
  driver().reset();
  EXPECT_EQ(p4_pd_tarvex_switch_init(), 0u);
  driver().reset();
  cJSON document{};
  EXPECT_EQ(p4_pd_tarvex_switch_dev_log(3, &document), 0u);
  EXPECT_EQ(deleted, 0u);
  const cJSON *const profiles = cJSON_GetObjectItem(&document, "act_profs");
  ASSERT_NE(profiles, nullptr);
  std::vector<std::uint64_t> objects;
  for (const cJSON *profile = profiles->child; profile != nullptr; profile = profile->next)
    objects.push_back(reinterpret_cast<std::uint64_t>(profile));
  ASSERT_EQ(objects.size(), 5u);
  ASSERT_EQ(driver().calls.size(), 5u);
  EXPECT_EQ(p4_pd_tarvex_switch_dev_restore(3, &document), 0u);
  ASSERT_EQ(driver().calls.size(), 10u);
  for (std::size_t i = 0; i < 10; ++i) {
    const recorded_call &call = driver().calls[i];
    EXPECT_EQ(call.function, i < 5 ? "p4_pd_ms_log_state" : "p4_pd_ms_restore_state");
    EXPECT_EQ(call.arguments[2].word, objects[i % 5]);
  }
}

}  // namespace
}  // namespace tarvex::test

using namespace tarvex::test;

// All types are 0 and all results too, as code whose functions have no result may leave them.
extern "C" {

cJSON *cJSON_CreateArray(void) { return new_item(); }
cJSON *cJSON_CreateObject(void) { return new_item(); }

cJSON *cJSON_CreateString(const char *string)
{
  cJSON *const item = new_item();
  item->valuestring = const_cast<char *>(string);
  return item;
}

cJSON_bool cJSON_AddItemToArray(cJSON *array, cJSON *item)
{
  append(array, item);
  return 0;
}

cJSON_bool cJSON_AddItemToObject(cJSON *object, const char *name, cJSON *item)
{
  item->string = const_cast<char *>(name);
  append(object, item);
  return 0;
}

cJSON *cJSON_GetObjectItem(const cJSON *object, const char *name)
{
  cJSON *item = object->child;
  while (item != nullptr && (item->string == nullptr || std::strcmp(item->string, name) != 0)) item = item->next;
  return item;
}

void cJSON_Delete(cJSON *) { ++deleted; }

}  // extern "C"
