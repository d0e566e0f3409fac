// The part of the pipeline, played on the stand-in.
//
// SPDX-License-Identifier: Apache-2.0
#include "data_plane.h"

#include "destination_entry.h"

namespace tarvex::l2_learning {
namespace {

using namespace examples;

constexpr std::uint32_t digest_handle = P4_PD_TARVEX_SWITCH_MAC_LEARNING_DIGEST_HANDLE;
constexpr std::uint32_t queue_counter_handle = 0x4000004;

/// Addresses that the switch collects before it sends a message, a burst of one station not being split.
constexpr std::size_t addresses_in_message = 64;

/// A key as the pipeline matches it: its fields in whole bytes, the most significant first.
class key_bytes {
 public:
  key_bytes &add(std::uint32_t value, std::size_t bytes)
  {
    for (std::size_t i = bytes; i-- > 0;) bytes_.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
    return *this;
  }
  key_bytes &add(const mac_address &address) { return add(address.oui, 3).add(address.station, 3); }

  const std::vector<std::uint8_t> &bytes() const { return bytes_; }

 private:
  std::vector<std::uint8_t> bytes_;
};

/// Nothing on a miss.
std::optional<pd_entry_hdl_t> look_up(std::uint32_t table, const key_bytes &key)
{
  pd_entry_hdl_t handle = 0;
  const pd_status_t status = standin_lookup(all_pipes, table, key.bytes().data(), key.bytes().size(), 0, &handle);
  if (status == STANDIN_NO_ENTRY) return std::nullopt;
  must(status, "looking up a frame");
  return handle;
}

std::uint32_t handle_of(pd_status_t (*get_handle)(std::uint32_t *))
{
  std::uint32_t handle = 0;
  must(get_handle(&handle), "asking for a table's handle");
  return handle;
}

bool is_blocked(std::uint32_t interface)
{
  std::uint8_t blocked = 0;
  std::uint32_t count = 0;
  must(p4_pd_tarvex_switch_register_read_ingStpCheckData(session, all_pipes, interface, 1, &blocked, &count),
       "reading the state of an interface");
  return blocked != 0;
}

}  // namespace

data_plane::data_plane(const bridge_tables &bridge)
    : bridge_(bridge),
      tables_{handle_of(p4_pd_tarvex_switch_ingL2DomainCount_get_mat_table_handle),
              handle_of(p4_pd_tarvex_switch_l2LearningLookup_get_mat_table_handle),
              handle_of(p4_pd_tarvex_switch_learningDigestGeneration_get_mat_table_handle),
              handle_of(p4_pd_tarvex_switch_l2Lookup_get_mat_table_handle),
              handle_of(p4_pd_tarvex_switch_l2LookupMiss_get_mat_table_handle)}
{
}

void data_plane::pass(std::span<const frame> frames)
{
  for (const frame &each : frames) pass(each);
  deliver_reports();
}

void data_plane::pass(const frame &frame)
{
  ++figures_.frames;
  const auto domain = look_up(tables_.domains, key_bytes().add(not_decapsulated, 1).add(frame.source.domain, 2));
  if (domain) {
    must(standin_count_packets(device_id, tables_.domains, *domain, 1, frame.bytes), "counting a frame of a domain");
  }
  look_for_source(frame);
  if (is_blocked(frame.interface)) {
    ++figures_.stopped;
  } else {
    look_for_destination(frame);
  }
}

void data_plane::look_for_source(const frame &frame)
{
  const auto &[address, domain] = frame.source;
  const auto known = look_up(tables_.sources, key_bytes().add(address).add(domain, 2).add(frame.interface, 3));
  if (known) {
    must(standin_entry_hit(device_id, tables_.sources, *known), "hitting the entry of a station");
    ++figures_.known_sources;
    return;
  }
  const auto reported = look_up(tables_.reports, key_bytes()
                                                     .add(learning_application, 1)
                                                     .add(0, 1)  // no tunnel
                                                     .add(frame.interface, 2)
                                                     .add(frame.interface, 3)
                                                     .add(is_blocked(frame.interface) ? 1 : 0, 1)
                                                     .add(0, 1)    // a VLAN that is allowed
                                                     .add(0, 1));  // no control frame
  if (reported) report(frame);
}

void data_plane::look_for_destination(const frame &frame)
{
  const auto known = look_up(tables_.destinations, key_bytes().add(frame.destination).add(frame.source.domain, 2));
  if (!known) {
    flood(frame);
    return;
  }
  ++figures_.switched;
  must(standin_count_cell(device_id, queue_counter_handle, read_destination(*known).interface, 1, frame.bytes),
       "counting a frame of an interface");
}

void data_plane::flood(const frame &frame)
{
  const auto how = look_up(tables_.unknown, key_bytes().add(frame.interface, 2).add(frame.destination));
  if (how == bridge_.unknown_entry(unknown_traffic::broadcast)) ++figures_.broadcast;
  if (how == bridge_.unknown_entry(unknown_traffic::unicast)) ++figures_.flooded;
}

void data_plane::report(const frame &frame)
{
  const bool full = reports_.size() >= addresses_in_message * P4_PD_TARVEX_SWITCH_MAC_LEARNING_DIGEST_ENTRY_SIZE;
  if (full && frame.source != last_reported_) deliver_reports();
  const auto add = [&](const auto &field) {
    const auto *const bytes = reinterpret_cast<const std::uint8_t *>(&field);
    reports_.insert(reports_.end(), bytes, bytes + sizeof field);
  };
  add(frame.source.address.station);
  add(frame.source.domain);
  add(frame.interface);
  add(frame.source.address.oui);
  last_reported_ = frame.source;
}

void data_plane::deliver_reports()
{
  if (reports_.empty()) return;
  const auto count = static_cast<std::uint32_t>(reports_.size() / P4_PD_TARVEX_SWITCH_MAC_LEARNING_DIGEST_ENTRY_SIZE);
  must(standin_digest_deliver(device_id, digest_handle, reports_.data(), count), "delivering a digest message");
  ++messages_;
  reports_.clear();
}

}  // namespace tarvex::l2_learning
