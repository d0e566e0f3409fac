// The control plane of MAC learning.
//
// SPDX-License-Identifier: Apache-2.0
#include "learner.h"

#include <cstring>
#include <vector>

#include "plan.h"

namespace tarvex::l2_learning {
namespace {

using namespace examples;

constexpr char digest_name[] = "macLearningDigest";

/// In milliseconds: how long the switch may hold addresses back to put more of them into a message.
constexpr std::uint32_t learning_timeout = 100;

/// A field of a digest entry, which may stand at an odd place.
template <typename Field>
Field field_of(std::uint8_t *entry, const char *name)
{
  std::uint32_t size = 0;
  Field value{};
  const void *const at = p4_pd_tarvex_switch_get_digest_entry_field(entry, digest_name, name, &size);
  if (at == nullptr || size != sizeof value) {
    throw examples::driver_refused(std::string("the digest has no field ") + name + " of the size expected");
  }
  std::memcpy(&value, at, sizeof value);
  return value;
}

template <typename Callback>
pd_callback_t as_driver_callback(Callback *callback)
{
  return reinterpret_cast<pd_callback_t>(callback);
}

p4_pd_tarvex_switch_l2LookupKnownUcast_action_spec_t to_interface(std::uint32_t interface)
{
  return {.action_egrL2Aintf = interface};
}

}  // namespace

learner::learner(switch_events &events) : events_(events)
{
  must(p4_pd_tarvex_switch_set_learning_timeout(session, device_id, learning_timeout), "setting the learning timeout");
  must(p4_pd_tarvex_switch_l2LearningLookup_idle_register_tmo_cb(
           session, device_id, as_driver_callback(switch_events::on_expiry), &events_),
       "subscribing to the ends of ttls");
  pd_idle_params_t ageing{};
  ageing.word_0 = STANDIN_IDLE_NOTIFY;
  ageing.word_1 = ageing_interval;
  ageing.word_2 = ttl;
  must(p4_pd_tarvex_switch_l2LearningLookup_idle_tmo_enable(session, device_id, ageing), "turning ageing on");
  must(p4_pd_tarvex_switch_macLearningDigest_register(session, device_id, as_driver_callback(switch_events::on_digest),
                                                      &events_),
       "subscribing to the learning digest");
}

learner::~learner()
{
  p4_pd_tarvex_switch_macLearningDigest_deregister(session, device_id);
  p4_pd_tarvex_switch_l2LearningLookup_idle_tmo_disable(session, device_id);
  p4_pd_tarvex_switch_l2LearningLookup_idle_register_tmo_cb(session, device_id, nullptr, nullptr);
}

void learner::serve()
{
  while (const auto event = events_.next()) {
    std::visit([&](const auto &happened) { take(happened); }, *event);
  }
}

void learner::take(standin_digest_msg_t *message)
{
  const std::size_t entry_size = p4_pd_tarvex_switch_get_digest_entry_size(digest_name);
  std::vector<std::uint8_t> entries(message->entries, message->entries + message->entry_count * entry_size);
  for (std::size_t at = 0; at < entries.size(); at += entry_size) {
    std::uint8_t *const entry = entries.data() + at;
    const station_id id{
        {field_of<std::uint32_t>(entry, "ingMd_smacOui"), field_of<std::uint32_t>(entry, "ingMd_smacStation")},
        field_of<std::uint16_t>(entry, "ingMd_ingL2Domain")};
    report(id, field_of<std::uint32_t>(entry, "ingMd_ingL2Aintf"));
  }
  must(p4_pd_tarvex_switch_macLearningDigest_notify_ack(session, message), "acknowledging a digest message");
  ++acknowledged_;
}

void learner::take(expired_entry expired)
{
  const auto found = by_source_.find(expired.handle);
  if (found == by_source_.end()) return;  // the station moved while the event waited
  const auto station = stations_.find(found->second);
  must(p4_pd_tarvex_switch_l2Lookup_table_delete(session, device_id, station->second.destination),
       [&] { return "deleting the l2Lookup entry of " + to_text(station->first); });
  delete_source(expired.handle);
  stations_.erase(station);
  ++figures_.aged;
}

void learner::report(const station_id &id, std::uint32_t interface)
{
  ++figures_.reported;
  const auto known = stations_.find(id);
  if (known == stations_.end()) {
    learn(id, interface);
  } else if (known->second.interface != interface) {
    move(id, known->second, interface);
  } else {  // it sent again before its first frame was learned
    must(p4_pd_tarvex_switch_l2LearningLookup_set_ttl(session, device_id, known->second.source, ttl),
         [&] { return "refreshing " + to_text(id); });
    ++figures_.refreshed;
  }
}

void learner::learn(const station_id &id, std::uint32_t interface)
{
  learned_station station{interface, add_source(id, interface), 0};
  const p4_pd_tarvex_switch_l2Lookup_match_spec_t key{id.address.oui, id.address.station, id.domain};
  const auto action = to_interface(interface);
  must(p4_pd_tarvex_switch_l2Lookup_table_add_with_l2LookupKnownUcast(session, all_pipes, &key, &action,
                                                                      &station.destination),
       [&] { return "adding " + to_text(id) + " to l2Lookup"; });
  stations_.emplace(id, station);
  ++figures_.learned;
}

void learner::move(const station_id &id, learned_station &station, std::uint32_t interface)
{
  const auto action = to_interface(interface);
  must(p4_pd_tarvex_switch_l2Lookup_table_modify_with_l2LookupKnownUcast(session, device_id, station.destination,
                                                                         &action),
       [&] { return "moving " + to_text(id); });
  const pd_entry_hdl_t old_source = station.source;
  station.source = add_source(id, interface);  // the interface is part of this key
  station.interface = interface;
  delete_source(old_source);
  ++figures_.moved;
}

pd_entry_hdl_t learner::add_source(const station_id &id, std::uint32_t interface)
{
  const p4_pd_tarvex_switch_l2LearningLookup_match_spec_t key{id.address.oui, id.address.station, id.domain, interface};
  pd_entry_hdl_t handle = 0;
  must(p4_pd_tarvex_switch_l2LearningLookup_table_add_with_noOp(session, all_pipes, &key, ttl, &handle),
       [&] { return "adding " + to_text(id) + " to l2LearningLookup"; });
  by_source_.emplace(handle, id);
  return handle;
}

void learner::delete_source(pd_entry_hdl_t handle)
{
  must(p4_pd_tarvex_switch_l2LearningLookup_table_delete(session, device_id, handle),
       "deleting an entry of l2LearningLookup");
  by_source_.erase(handle);
}

}  // namespace tarvex::l2_learning
