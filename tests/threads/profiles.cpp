// Members, groups and entries of all profiles from eight threads at once, on two devices of the stand-in switch:
// each thread reads back what it wrote, while the devices are logged beside them, and nothing is left at the end.
//
// SPDX-License-Identifier: Apache-2.0
#include <cjson/cJSON.h>

#include <atomic>
#include <barrier>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <thread>
#include <vector>

#include "caller.h"
#include "tarvex_pd/actions.h"
#include "tarvex_pd/driver_records.h"
#include "tarvex_pd/types.h"
#include "tarvex_standin/standin.h"

namespace {

using namespace tarvex::calls;
using enum argument_kind;

constexpr unsigned thread_count = 8, device_count = 2;
constexpr std::uint32_t group_size = 4;
// A handle comes again when its slot was given out 128 times. The library changes the driver first and its own state
// after that, so no thread may fall so far behind the others meanwhile.
constexpr unsigned rounds_apart = 4;
static_assert(thread_count / device_count * rounds_apart * group_size < 128);

std::atomic<unsigned> faults = 0;

void expect(bool holds, const char *what, const char *where)
{
  if (holds) return;
  if (faults++ == 0) std::fprintf(stderr, "%s: does not hold: %s\n", where, what);
}

using record = std::vector<std::uint8_t>;

void put(record &to, std::size_t at, std::size_t size, std::uint32_t number) { std::memcpy(&to[at], &number, size); }

// One thread's work on one profile.
class worker {
 public:
  worker(const profile_info &profile, unsigned number)
      : profile_(profile), number_(number), target_(pd_dev_tgt(number % device_count, PD_ALL_PIPES))
  {
    for (const exported_function &each : functions)
      if (each.table != nullptr && each.table->handle == profile.table) functions_.push_back(&each);
  }

  void run()
  {
    std::vector<std::uint32_t> members;
    for (std::uint32_t i = 0; i < group_size; ++i) {
      members.push_back(member(profile_.actions[i % profile_.actions.size()], i));
      point_entry(i, mbr_hdl, members.back(), members.front());
    }
    const std::uint32_t group = made(family_id::create_group, [](raw_call &c) { c.give(max_grp_size, group_size); });
    for (const std::uint32_t each : members) {
      change(family_id::add_member_to_group, group, each);
      set_state(group, each, P4_PD_GRP_MBR_STATE_INACTIVE);
      set_state(group, each, P4_PD_GRP_MBR_STATE_ACTIVE);
    }
    check_members(group, members);
    point_entry(group_size, grp_hdl, group, group);
    for (const std::uint32_t each : members) change(family_id::del_member_from_group, group, each);
    change(family_id::del_group, group, 0);
    for (const std::uint32_t each : members) change(family_id::del_member, 0, each);
  }

 private:
  const exported_function &function(family_id family, const use_info *use, argument_kind with) const
  {
    for (const exported_function *each : functions_)
      if (each->family == family && (use == nullptr || each->use->handle == use->handle) && raw_call(*each).takes(with))
        return *each;
    std::abort();
  }
  // Makes a call that must go well.
  template <typename Prepare>
  void make(family_id family, const use_info *use, argument_kind with, Prepare prepare)
  {
    const exported_function &what = function(family, use, with);
    raw_call call(what);
    for (std::size_t i = 0; i < what.arguments.size(); ++i) call.set(i, std::uint64_t{0});
    call.give(sess_hdl, number_).give(dev_tgt, target_).give(dev_id, number_ % device_count);
    prepare(call);
    expect(static_cast<pd_status_t>(call.make()) == BF_SUCCESS, "the call goes well", what.name);
  }
  template <typename Prepare>
  std::uint32_t made(family_id family, Prepare prepare)
  {
    std::uint32_t handle = 0;
    make(family, nullptr, sess_hdl, [&](raw_call &c) {
      c.give(grp_hdl_out, &handle).give(entry_hdl_out, &handle).give(entry_count_out, &handle);
      prepare(c);
    });
    return handle;
  }
  void change(family_id family, std::uint32_t group, std::uint32_t member)
  {
    make(family, nullptr, sess_hdl, [&](raw_call &c) { c.give(grp_hdl, group).give(mbr_hdl, member); });
  }

  // A new member, written twice and read back.
  std::uint32_t member(const use_info &use, std::uint32_t nth)
  {
    std::uint32_t handle = 0;
    for (const family_id family : {family_id::add_member, family_id::modify_member}) {
      const auto number =
          static_cast<std::uint32_t>(0x10 * number_ + nth + (family == family_id::modify_member ? 0x80 : 0));
      record params(use.action->record_size + 1u);
      for (const param_info &each : use.action->params) put(params, each.member, each.member_size, number);
      make(family, &use, sess_hdl,
           [&](raw_call &c) { c.give(action_spec, params.data()).give(mbr_hdl_out, &handle).give(mbr_hdl, handle); });
      plcmt_action_t read{};
      make(family_id::get_member, nullptr, sess_hdl,
           [&](raw_call &c) { c.give(mbr_hdl, handle).give(member_action_out, &read); });
      expect(
          read.action == use.action->enum_value && std::memcmp(read.parameters, params.data(), params.size() - 1) == 0,
          "a member is read as it was written", profile_.name);
    }
    return handle;
  }

  void set_state(std::uint32_t group, std::uint32_t member, std::uint32_t state)
  {
    std::uint32_t read = ~state;
    const auto on = [&](raw_call &c) -> raw_call & { return c.give(grp_hdl, group).give(mbr_hdl, member); };
    make(family_id::group_member_state_set, nullptr, sess_hdl, [&](raw_call &c) { on(c).give(member_state, state); });
    make(family_id::group_member_state_get, nullptr, sess_hdl,
         [&](raw_call &c) { on(c).give(member_state_out, &read); });
    expect(read == state, "a member has the state that it was given", profile_.name);
  }

  void check_members(std::uint32_t group, const std::vector<std::uint32_t> &members)
  {
    std::vector<std::uint32_t> read(members.size());
    make(family_id::get_first_group_member, nullptr, sess_hdl,
         [&](raw_call &c) { c.give(grp_hdl, group).give(mbr_hdl_out, read.data()); });
    make(family_id::get_next_group_members, nullptr, sess_hdl, [&](raw_call &c) {
      c.give(grp_hdl, group).give(mbr_hdl, read[0]).give(handle_count, read.size() - 1);
      c.give(next_mbr_hdls_out, &read[1]);
    });
    expect(read == members, "a group has the members that joined it", profile_.name);
  }

  // An entry that points at one member or group, then at another; read back and deleted.
  void point_entry(std::uint32_t nth, argument_kind at, std::uint32_t first, std::uint32_t second)
  {
    const table_info &table = *functions_.front()->table;
    const field_info &field = table.fields.front();
    record key(table.record_size), read_key(table.record_size);
    put(key, field.member, field.member_size, 0x10 * number_ + nth);
    if (field.match == match_kind::ternary) put(key, field.companion, field.member_size, (1u << field.bits) - 1);
    pd_entry_hdl_t entry = 0;
    make(family_id::add_indirect_entry, nullptr, at,
         [&](raw_call &c) { c.give(match_spec, key.data()).give(at, first).give(entry_hdl_out, &entry); });
    make(family_id::modify_indirect_entry, nullptr, at,
         [&](raw_call &c) { c.give(entry_hdl, entry).give(at, second); });
    std::uint32_t read_priority = 0, member = 0, group = 0;
    std::uint8_t is_member = 9, is_group = 9, no_key = 9;
    make(family_id::get_indirect_entry, nullptr, sess_hdl, [&](raw_call &c) {
      c.give(entry_hdl, entry).give(match_spec_out, read_key.data()).give(priority_out, &read_priority);
      c.give(mbr_hdl_out, &member).give(grp_hdl_out, &group).give(no_key_out, &no_key);
      c.give(is_member_out, &is_member).give(is_group_out, &is_group);
    });
    expect(read_key == key && no_key == 0 && is_member == (at == mbr_hdl) && is_group == (at == grp_hdl) &&
               (at == mbr_hdl ? member : group) == second,
           "an entry is read as it was written", table.name);
    make(family_id::entry_delete, nullptr, sess_hdl, [&](raw_call &c) { c.give(entry_hdl, entry); });
  }

  const profile_info &profile_;
  unsigned number_;
  pd_dev_tgt_t target_;
  std::vector<const exported_function *> functions_;
};

// Logs a device; the text where it is wanted.
bool is_empty(std::uint32_t device)
{
  cJSON *const log = cJSON_CreateObject();
  tarvex::test::invoke("dev_log", device, log);
  char *const text = cJSON_PrintUnformatted(log);
  const bool none = std::strstr(text, "hdl") == nullptr;
  cJSON_free(text);
  cJSON_Delete(log);
  return none;
}

}  // namespace

int main(int argc, char **argv)
{
  const std::chrono::duration<double> time(argc > 1 ? std::atof(argv[1]) : 2);
  for (unsigned device = 0; device < device_count; ++device) standin_device_add(device);
  if (tarvex::test::invoke("init") != BF_SUCCESS) return 1;
  std::atomic<unsigned> rounds = 0, running = thread_count;
  const auto end = std::chrono::steady_clock::now() + time;
  std::barrier together(thread_count);
  std::vector<std::thread> threads;
  for (unsigned number = 0; number < thread_count; ++number) {
    threads.emplace_back([&, number] {
      std::vector<worker> workers;
      for (const profile_info &each : profiles) workers.emplace_back(each, number);
      unsigned done = 0;
      do {
        for (worker &each : workers) each.run();
        ++rounds;
        if (++done % rounds_apart == 0) together.arrive_and_wait();
      } while (std::chrono::steady_clock::now() < end);
      together.arrive_and_drop();
      --running;
    });
  }
  while (running != 0)
    for (unsigned device = 0; device < device_count; ++device) is_empty(device);
  for (std::thread &each : threads) each.join();
  for (unsigned device = 0; device < device_count; ++device) expect(is_empty(device), "nothing is left", "the log");
  tarvex::test::invoke("cleanup");
  std::printf("%u rounds over %zu profiles from %u threads on %u devices, %u faults\n", rounds.load(), profiles.size(),
              thread_count, device_count, faults.load());
  return faults == 0 ? 0 : 1;
}
