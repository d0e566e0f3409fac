// The device log read back: documents of any shape restore what they hold, or change nothing.
//
// SPDX-License-Identifier: Apache-2.0
#include <cmath>
#include <cstring>

#include "call_table.h"
#include "selector_log.h"
#include "tarvex_pd/lifecycle.h"

namespace tarvex::fuzz {

namespace {

constexpr std::uint32_t restored_device = 0;
constexpr std::uint32_t other_device = 1;
constexpr std::uint32_t second_device = 2;

constexpr char state_before[] =
    R"({"members":[{"hdl":1,"act":5},{"hdl":2}],"groups":[{"hdl":3,"act":5,"mbrs":[2,1]}]})";

// The first item of a name, in exactly this case.
const cJSON *item_of(const cJSON *object, const char *name)
{
  if (!cJSON_IsObject(object)) return nullptr;
  const cJSON *item = object->child;
  while (item != nullptr && std::strcmp(item->string, name) != 0) item = item->next;
  return item;
}

std::optional<std::uint32_t> handle_of(const cJSON *item)
{
  if (!cJSON_IsNumber(item) || !(item->valuedouble >= 0) || item->valuedouble > 4294967295.0 ||
      item->valuedouble != std::floor(item->valuedouble))
    return std::nullopt;
  return static_cast<std::uint32_t>(item->valuedouble);
}

bool read_members(const cJSON *list, plain_item &group)
{
  if (!cJSON_IsArray(list)) return false;
  std::map<std::uint32_t, bool> seen;
  for (const cJSON *each = list->child; each != nullptr; each = each->next) {
    const auto handle = handle_of(each);
    if (!handle || !seen.emplace(*handle, true).second) return false;
    group.members.push_back(*handle);
  }
  return true;
}

bool read_list(const cJSON *list, bool are_groups, std::map<std::uint32_t, plain_item> &to)
{
  if (!cJSON_IsArray(list)) return false;
  for (const cJSON *each = list->child; each != nullptr; each = each->next) {
    const auto handle = handle_of(item_of(each, "hdl"));
    plain_item item;
    if (const cJSON *action = item_of(each, "act"); action != nullptr && !(item.action = handle_of(action)))
      return false;
    if (are_groups && !read_members(item_of(each, "mbrs"), item)) return false;
    if (!handle || !to.emplace(*handle, item).second) return false;
  }
  return true;
}

// What an element of the document restores; nothing where it is to be refused.
std::optional<plain_state> state_of(const cJSON *element)
{
  plain_state state;
  const bool sound = read_list(item_of(element, "members"), false, state.members) &&
                     read_list(item_of(element, "groups"), true, state.groups);
  return sound ? std::optional(state) : std::nullopt;
}

std::string log_of(std::uint32_t device)
{
  const document log = new_object();
  require(p4_pd_tarvex_switch_dev_log(device, log.get()) == 0, "a device is logged");
  return printed(log.get());
}

// A whole log, of a state for each profile.
std::string whole_log(const std::vector<std::string> &states)
{
  std::string text = R"({"name":"tarvex_switch","act_profs":[)";
  for (std::size_t i = 0; i < states.size(); ++i) {
    text += (i == 0 ? R"({"name":")" : R"(,{"name":")") + std::string(calls::profiles[i].name) + "\"," +
            states[i].substr(1);
  }
  return text + "]}";
}

void restore(std::uint32_t device, cJSON *log)
{
  const std::string before = printed(log);
  require(p4_pd_tarvex_switch_dev_restore(device, log) == 0, "a restore gives 0");
  require_equal("a restore leaves the document", printed(log), before);
}

// One element by itself, on a state of its own.
void check_element(cJSON *element, const std::optional<plain_state> &expected)
{
  static ms_state *const state = p4_pd_ms_init_state();
  p4_pd_ms_restore_state(other_device, state, parsed(state_before).get());
  const pd_status_t status = p4_pd_ms_restore_state(other_device, state, element);
  require(status == (expected ? 0u : pd_status_t{STANDIN_BAD_DOCUMENT}), "what is no state is refused");
  if (expected)
    check_holds(other_device, state, *expected);
  else
    require_equal("a refused state changes nothing", logged(other_device, state), state_before);
}

void check_document(std::string_view text)
{
  std::vector<std::string> states(calls::profiles.size(), state_before);
  const std::string before = whole_log(states);
  for (const std::uint32_t device : {restored_device, other_device}) restore(device, parsed(before).get());
  require_equal("a log restores to itself", log_of(restored_device), before);

  const document log = parsed(text);
  // The document's own names are taken in any case.
  cJSON *const elements = cJSON_GetObjectItem(log.get(), "act_profs");
  for (cJSON *each = cJSON_IsArray(elements) ? elements->child : nullptr; each != nullptr; each = each->next) {
    const char *const name = cJSON_GetStringValue(cJSON_IsObject(each) ? cJSON_GetObjectItem(each, "name") : nullptr);
    for (std::size_t i = 0; name != nullptr && i < states.size(); ++i) {
      if (std::strcmp(name, calls::profiles[i].name) != 0) continue;
      const auto expected = state_of(each);
      check_element(each, expected);
      if (expected) states[i] = expected->log();
    }
  }
  restore(restored_device, log.get());
  const std::string after = log_of(restored_device);
  require_equal("a document restores what it holds", after, whole_log(states));
  require_equal("another device stays as it was", log_of(other_device), before);
  restore(second_device, parsed(after).get());
  require_equal("what was restored is logged in the same bytes", log_of(second_device), after);
}

}  // namespace

}  // namespace tarvex::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
  [[maybe_unused]] static const pd_status_t started = p4_pd_tarvex_switch_init();
  tarvex::fuzz::check_document({reinterpret_cast<const char *>(data), size});
  return 0;
}
