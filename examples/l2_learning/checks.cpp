// Compares what a run has come to with what the plan says.
//
// SPDX-License-Identifier: Apache-2.0
#include "checks.h"

#include <string>
#include <vector>

#include "destination_entry.h"

namespace tarvex::l2_learning {
namespace {

using namespace examples;

void expect_number(tally &compared, const std::string &what, std::uint64_t got, std::uint64_t wanted)
{
  compared.expect(got == wanted,
                  [&] { return what + ": " + std::to_string(got) + ", should be " + std::to_string(wanted); });
}

template <typename Figures, typename Names>
void expect_figures(tally &compared, const Names &names, const Figures &got, const Figures &wanted)
{
  for (const auto &[name, figure] : names) expect_number(compared, name, got.*figure, wanted.*figure);
}

/// A key that no frame was planned for has to read as zeros.
template <typename Key>
void expect_traffic(tally &compared, const char *what, Key key, const pd_counter_value_t &got,
                    const std::map<Key, traffic> &planned)
{
  const auto found = planned.find(key);
  const traffic wanted = found != planned.end() ? found->second : traffic{};
  const std::string name = std::string(what) + ' ' + std::to_string(key);
  expect_number(compared, name + ", packets", got.packets, wanted.packets);
  expect_number(compared, name + ", bytes", got.bytes, wanted.bytes);
}

/// The stations that a table has entries of, each once.
class found_stations {
 public:
  found_stations(tally &compared, const char *table, const plan &planned, const learner &control)
      : compared_(compared), table_(table), planned_(planned), control_(control)
  {
  }

  /// Checks that the entry is a station's that has to be there, in that place, and is the one the learner knows of.
  void add(const station_id &id, std::uint32_t interface, pd_entry_hdl_t handle,
           pd_entry_hdl_t learned_station::*known_as)
  {
    const auto wanted = planned_.survivors.find(id);
    const auto known = control_.stations().find(id);
    compared_.expect(wanted != planned_.survivors.end() && wanted->second.interface == interface &&
                         known != control_.stations().end() && known->second.*known_as == handle,
                     [&] {
                       return std::string(table_) + ": " + to_text(id) + " at interface " + std::to_string(interface) +
                              " should not be there, or not as entry " + std::to_string(handle);
                     });
    ++count_;
  }

  /// Distinct keys, none unexpected and as many as wanted: all that are wanted.
  void finish(pd_status_t (*get_count)(pd_sess_hdl_t, pd_dev_tgt_t, std::uint32_t *)) const
  {
    std::uint32_t entries = 0;
    must(get_count(session, all_pipes, &entries), "counting entries");
    expect_number(compared_, std::string("entries of ") + table_, entries, planned_.survivors.size());
    expect_number(compared_, std::string("entries walked of ") + table_, count_, planned_.survivors.size());
  }

 private:
  tally &compared_;
  const char *table_;
  const plan &planned_;
  const learner &control_;
  std::uint64_t count_ = 0;
};

template <typename First, typename Next>
std::vector<pd_entry_hdl_t> walk(const char *table, First first, Next next)
{
  return examples::walk(
      table, [&](pd_entry_hdl_t *handle) { return first(session, all_pipes, handle); },
      [&](pd_entry_hdl_t behind, std::uint32_t count, pd_entry_hdl_t *handles) {
        return next(session, all_pipes, behind, count, handles);
      });
}

void expect_age(tally &compared, const station_id &id, pd_entry_hdl_t handle, const survivor &wanted)
{
  std::uint32_t ttl_left = 0, hit_state = 0;
  must(p4_pd_tarvex_switch_l2LearningLookup_get_ttl(session, device_id, handle, &ttl_left),
       [&] { return "reading the ttl of " + to_text(id); });
  expect_number(compared, "ttl of " + to_text(id), ttl_left, wanted.ttl_left);
  must(p4_pd_tarvex_switch_l2LearningLookup_get_hit_state(session, device_id, handle, &hit_state),
       [&] { return "reading the hit state of " + to_text(id); });
  expect_number(compared, "hit state of " + to_text(id), hit_state, wanted.was_hit ? STANDIN_ACTIVE : STANDIN_IDLE);
}

void check_sources(const plan &planned, const learner &control, tally &compared)
{
  constexpr char table[] = "l2LearningLookup";
  must(p4_pd_tarvex_switch_l2LearningLookup_update_hit_state(session, device_id, 0, 0), "updating the hit states");
  found_stations found(compared, table, planned, control);
  for (const pd_entry_hdl_t handle : walk(table, p4_pd_tarvex_switch_l2LearningLookup_get_first_entry_handle,
                                          p4_pd_tarvex_switch_l2LearningLookup_get_next_entry_handles)) {
    p4_pd_tarvex_switch_l2LearningLookup_match_spec_t key{};
    char action[P4_PD_TARVEX_SWITCH_ACTION_NAME_SIZE];
    std::uint8_t no_key = 0;
    must(p4_pd_tarvex_switch_l2LearningLookup_get_entry(session, device_id, handle, 0, &key, action, nullptr, nullptr,
                                                        &no_key),
         "reading an entry of l2LearningLookup");
    const station_id id{{key.ingMd_smacOui, key.ingMd_smacStation}, key.ingMd_ingL2Domain};
    compared.expect(action == std::string("p4_pd_tarvex_switch_noOp"),
                    [&] { return to_text(id) + " has the action " + action; });
    found.add(id, key.ingMd_ingL2Aintf, handle, &learned_station::source);
    if (const auto wanted = planned.survivors.find(id); wanted != planned.survivors.end()) {
      expect_age(compared, id, handle, wanted->second);
    }
  }
  found.finish(p4_pd_tarvex_switch_l2LearningLookup_get_entry_count);
}

void check_destinations(const plan &planned, const learner &control, tally &compared)
{
  constexpr char table[] = "l2Lookup";
  found_stations found(compared, table, planned, control);
  for (const pd_entry_hdl_t handle : walk(table, p4_pd_tarvex_switch_l2Lookup_get_first_entry_handle,
                                          p4_pd_tarvex_switch_l2Lookup_get_next_entry_handles)) {
    const destination_entry entry = read_destination(handle);
    compared.expect(entry.known_unicast, [&] { return to_text(entry.id) + " is not a known station in l2Lookup"; });
    found.add(entry.id, entry.interface, handle, &learned_station::destination);
  }
  found.finish(p4_pd_tarvex_switch_l2Lookup_get_entry_count);
}

}  // namespace

void check_figures(const plan &planned, const learner &control, const data_plane &pipeline, tally &compared)
{
  const learning_figures &did = control.figures();
  expect_figures(compared, learning_figure_names, did, planned.learning);
  expect_figures(compared, forwarding_figure_names, pipeline.figures(), planned.forwarding);
  const std::uint64_t there = control.stations().size();
  expect_number(compared, "stations still there", there, planned.survivors.size());
  expect_number(compared, "reports that taught, refreshed or moved", did.learned + did.refreshed + did.moved,
                did.reported);
  expect_number(compared, "stations aged or still there", did.aged + there, did.learned);
  expect_number(compared, "messages acknowledged", control.acknowledged(), pipeline.messages());
  expect_number(compared, "messages that wait", standin_digest_unacknowledged(device_id), 0);
}

void check_stations(const plan &planned, const learner &control, tally &compared)
{
  check_sources(planned, control, compared);
  check_destinations(planned, control, compared);
}

void check_counters(const plan &planned, const bridge_tables &bridge, tally &compared)
{
  constexpr std::uint32_t synchronise = 1;
  for (std::uint16_t domain = first_domain; domain < first_domain + domain_count; ++domain) {
    pd_counter_value_t value{};
    must(p4_pd_tarvex_switch_counter_read_ingL2DomainCounters(session, all_pipes, bridge.domain_entry(domain),
                                                              synchronise, &value),
         "reading the counter of a domain");
    expect_traffic(compared, "domain", domain, value, planned.by_domain);
  }

  // All cells at once this time, and the driver says when it is done.
  bool done = false;
  const standin_done_cb_t note = [](std::uint32_t, std::uint32_t, void *cookie) {
    *static_cast<bool *>(cookie) = true;
  };
  must(p4_pd_tarvex_switch_counter_hw_sync_egressPortQueueCount(session, all_pipes,
                                                                reinterpret_cast<pd_callback_t>(note), &done),
       "synchronising the counters of the interfaces");
  compared.expect(done, [] { return "the counters of the interfaces were not synchronised"; });
  for (std::uint32_t interface = 0; interface <= interface_count; ++interface) {
    pd_counter_value_t value{};
    must(p4_pd_tarvex_switch_counter_read_egressPortQueueCount(session, all_pipes, interface, 0, &value),
         "reading the counter of an interface");
    expect_traffic(compared, "interface", interface, value, planned.by_egress_interface);
  }
}

}  // namespace tarvex::l2_learning
