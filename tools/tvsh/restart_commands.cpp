// The command that does a warm restart of the library while the switch goes on: what it knows of members and groups is
// forgotten, and comes back by the document that it logs, or by the replay of the driver.
//
// SPDX-License-Identifier: Apache-2.0
#include <cjson/cJSON.h>

#include <algorithm>
#include <memory>

#include "commands.h"
#include "handle_walk.h"
#include "pd_calls.h"
#include "report.h"
#include "session.h"
#include "status_text.h"
#include "verbs.h"

namespace tarvex::shell {

namespace {

struct json_deleter {
  void operator()(cJSON *item) const { cJSON_Delete(item); }
  void operator()(char *text) const { cJSON_free(text); }
};
using json_document = std::unique_ptr<cJSON, json_deleter>;

/// What the library knows of the device.
json_document log_of(const invocation &call)
{
  json_document log(cJSON_CreateObject());
  if (log == nullptr) throw std::bad_alloc();
  require_success(calls::pd::dev_log(call.where().device, log.get()), "logging what the library knows");
  return log;
}

void restart_by_log(const invocation &call, cJSON *log)
{
  // By way of text, as it comes out of a file in another process.
  const std::unique_ptr<char, json_deleter> text(cJSON_PrintUnformatted(log));
  if (text == nullptr) throw std::bad_alloc();
  const json_document read(cJSON_Parse(text.get()));
  require_success(calls::pd::dev_restore(call.where().device, read.get()), "restoring from the log");
}

void restart_by_replay(const invocation &call, cJSON *)
{
  require_success(calls::pd::restore_virtual_dev_state(call.where().session, call.where().device, 0, 0, 0),
                  "replaying what the switch holds");
}

struct road {
  std::string_view name;
  void (*restore)(const invocation &, cJSON *);
};
constexpr road roads[] = {{"log", restart_by_log}, {"replay", restart_by_replay}};

cJSON *part_of(cJSON *log, const profile_info &profile)
{
  cJSON *each = nullptr;
  cJSON_ArrayForEach(each, cJSON_GetObjectItem(log, "act_profs"))
  {
    const char *const name = cJSON_GetStringValue(cJSON_GetObjectItem(each, "name"));
    if (name != nullptr && std::string_view(name) == profile.name) return each;
  }
  return nullptr;
}

std::uint64_t count_of(handle_walk walk)
{
  std::uint64_t count = 0;
  while (walk.next()) ++count;
  return count;
}

std::uint64_t memberships_of(const invocation &call, const profile_info &profile)
{
  std::uint64_t count = 0;
  handle_walk walk = handle_walk::groups(profile, call.where());
  while (const auto group = walk.next()) count += count_of(handle_walk::group_members(profile, *group, call.where()));
  return count;
}

}  // namespace

exit_code restart_library(const invocation &call)
{
  call.expect_at_most(1);
  const std::string &name = call.word(0, "log|replay");
  const auto chosen = std::ranges::find(roads, name, &road::name);
  if (chosen == std::end(roads)) throw usage_error(no_such("road back", name, names_of(roads)));
  const change_queue::turn turn = call.take_turn("restart " + name);
  const json_document before = log_of(call);
  if (call.only_checked("restarting by the " + name)) return exit_code::ok;
  require_success(calls::pd::dev_remove(call.where().device), "forgetting what the library knows");
  try {
    chosen->restore(call, before.get());
  } catch (const refused_error &error) {
    throw shell_error(error.code(), std::string(error.what()) +
                                        "; the library knows members and groups in part: 'restart replay' again "
                                        "restores what the switch holds");
  }
  const json_document after = log_of(call);

  bool same = true;
  report rows(call.out, call.chosen, "profiles",
              {{"profile", longest_name(names_of(calls::profiles))},
               {"members", 10},
               {"groups", 10},
               {"memberships", 11},
               {"restored"}},
              {{"by", name}});
  for (const profile_info &profile : calls::profiles) {
    const bool back = cJSON_Compare(part_of(before.get(), profile), part_of(after.get(), profile), 1) != 0;
    same = same && back;
    rows.cell(profile.name).number(count_of(handle_walk::members(profile, call.where())));
    rows.number(count_of(handle_walk::groups(profile, call.where()))).number(memberships_of(call, profile));
    rows.cell_as(back ? "came back" : "differs", back ? "true" : "false").end_row();
  }
  rows.finish();
  return same ? exit_code::ok : exit_code::differences;
}

}  // namespace tarvex::shell
