// The command that shows updates as they come.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <array>
#include <condition_variable>
#include <deque>

#include "commands.h"
#include "counted.h"
#include "entry_contents.h"
#include "entry_words.h"
#include "nearest.h"
#include "placed_contents.h"
#include "report.h"
#include "session.h"
#include "time_text.h"
#include "update_feed.h"

namespace tarvex::shell {

namespace {

using namespace std::chrono_literals;

constexpr std::array<std::string_view, 7> event_names = {"added",         "changed", "deleted", "default-set",
                                                         "default-reset", "enabled", "disabled"};

std::string_view event_name(std::uint32_t event) { return event < event_names.size() ? event_names[event] : "?"; }

/// Between the switch, which does not wait, and a reader that may be slow: what finds no room is counted.
class update_queue : public update_receiver {
 public:
  static constexpr std::size_t most_kept = 8192;

  void take(const switch_update &update) override
  {
    const std::lock_guard lock(mutex_);
    if (kept_.size() == most_kept) {
      ++lost_;
      return;
    }
    kept_.push_back(update);
    filled_.notify_one();
  }

  struct batch {
    std::deque<switch_update> updates;
    std::uint64_t lost = 0;  // ahead of these or behind them
  };

  batch wait(std::chrono::milliseconds time)
  {
    std::unique_lock lock(mutex_);
    filled_.wait_for(lock, time, [&] { return !kept_.empty(); });
    return {std::exchange(kept_, {}), std::exchange(lost_, 0)};
  }

 private:
  std::mutex mutex_;
  std::condition_variable filled_;
  std::deque<switch_update> kept_;
  std::uint64_t lost_ = 0;
};

/// Receives while it lives.
class listening {
 public:
  listening(update_feed &feed, const target &where, const update_sources &sources, update_receiver &receiver)
      : feed_(feed), receiver_(receiver)
  {
    feed.begin(where, sources, receiver);
  }
  listening(const listening &) = delete;
  listening &operator=(const listening &) = delete;
  ~listening() { feed_.end(receiver_); }

 private:
  update_feed &feed_;
  update_receiver &receiver_;
};

/// Shows updates as lines, of text or of JSON.
class update_lines {
 public:
  explicit update_lines(const invocation &call) : call_(call) {}

  void show(const switch_update &update)
  {
    for (const profile_info &profile : calls::profiles) {
      if (update.source == profile.action_data_table) return show_member(update, profile);
      if (update.source == profile.selector_table) return show_group(update, profile);
    }
    show_entry(update, table_of(update.source));
  }

 private:
  void begin(const switch_update &update, std::string_view kind, std::string_view name)
  {
    line_.clear();
    if (call_.chosen.json) {
      json_.open();
      json_.number("schema_version", schema_version);
      json_.text("time", time_text(update.time));
      json_.text(kind, name);
      json_.text("event", event_name(update.event));
    } else {
      line_ += time_text(update.time) + ' ';
      line_ += name;
      line_ += ' ';
      line_ += event_name(update.event);
    }
  }

  void handle(std::string_view what, std::uint32_t number)
  {
    if (call_.chosen.json) {
      json_.number(what, number);
    } else {
      line_ += ' ';
      line_ += what;
      line_ += ' ';
      line_ += std::to_string(number);
    }
  }

  void end()
  {
    if (call_.chosen.json) json_.close();
    call_.out.line(line_);
  }

  void show_entry(const switch_update &update, const table_info &table)
  {
    const table_entry entry = placed_entry_of(table, update.placement, call_.where());
    begin(update, "table", table.name);
    handle("entry", update.handle);
    if (!call_.chosen.json) {
      line_ += ": " + texts_.entry(table, entry);
    } else {
      if (entry.has_key) contents_.key(table, entry);
      if (entry.action != nullptr) {
        contents_.action(*entry.action, entry.parameters);
      } else {
        json_.number(entry.is_group ? "group" : "member", entry.is_group ? entry.group : entry.member);
      }
    }
    end();
  }

  void show_member(const switch_update &update, const profile_info &profile)
  {
    const profile_member member = placed_member_of(profile, update.placement, call_.where());
    begin(update, "profile", profile.name);
    handle("member", update.handle);
    if (call_.chosen.json) {
      contents_.action(*member.action, member.parameters);
    } else {
      line_ += ':' + texts_.action(*member.action, member.parameters);
    }
    end();
  }

  void show_group(const switch_update &update, const profile_info &profile)
  {
    begin(update, "profile", profile.name);
    handle("group", update.handle);
    if (update.member != 0) handle("member", update.member);
    end();
  }

  const invocation &call_;
  std::string line_;
  json_objects json_{line_};
  entry_json contents_{json_};
  entry_texts texts_;
};

update_sources sources_named(std::string_view name)
{
  for (const profile_info &profile : calls::profiles) {
    if (profile.name == name) return sources_of(profile);
  }
  return sources_of(table_named(name));
}

}  // namespace

exit_code monitor_updates(const invocation &call)
{
  static constexpr std::array<std::string_view, 2> allowed = {"count", "seconds"};
  update_sources sources;
  std::vector<std::string> limits;
  for (const std::string &word : call.words) {
    if (assignment_of(word)) {
      limits.push_back(word);
    } else {
      std::ranges::copy(sources_named(word), std::back_inserter(sources));
    }
  }
  const own_words own = parse_own_words(limits, allowed);
  const auto most = own.number("count", 64);
  const auto seconds = own.number("seconds", 31);
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(seconds.value_or(0));
  if (sources.empty()) sources = all_sources();

  update_queue queue;
  const listening on(call.shell.memory().updates, call.where(), sources, queue);
  update_lines lines(call);
  std::uint64_t shown = 0;
  while (!most || shown < *most) {
    call.shell.check_interrupt();
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
    if (seconds && left <= 0ms) break;
    const update_queue::batch got = queue.wait(seconds ? std::min<std::chrono::milliseconds>(left, 100ms) : 100ms);
    for (const switch_update &each : got.updates) {
      if (most && shown == *most) break;
      call.shell.check_interrupt();
      lines.show(each);
      ++shown;
    }
    if (got.lost != 0) call.out.note(counted(got.lost, "update") + " came faster than they could be shown");
    if (!got.updates.empty()) call.out.flush();
  }
  return exit_code::ok;
}

}  // namespace tarvex::shell
