// Makes the plan of a run out of a seed.
//
// SPDX-License-Identifier: Apache-2.0
#include "plan.h"

#include <random>
#include <unordered_set>

namespace tarvex::l2_learning {
namespace {

/// The same numbers everywhere: a standard distribution may differ from library to library.
class dice {
 public:
  explicit dice(std::uint64_t seed) : engine_(seed) {}

  std::uint64_t below(std::uint64_t limit) { return engine_() % limit; }

 private:
  std::mt19937_64 engine_;
};

/// In hundredths of all stations.
role role_of(std::uint64_t hundredth)
{
  if (hundredth < 10) return role::hasty;
  if (hundredth < 40) return role::active;
  if (hundredth < 50) return role::moving;
  if (hundredth < 60) return role::returning;
  if (hundredth < 65) return role::blocked;
  return role::quiet;
}

std::vector<station> make_stations(const std::vector<std::uint32_t> &ouis, std::uint64_t addresses, dice &random)
{
  std::vector<station> stations;
  std::unordered_set<station_id, station_hash> taken;
  while (stations.size() < addresses) {
    station made;
    made.id.address = {ouis[random.below(ouis.size())], static_cast<std::uint32_t>(random.below(1 << 24))};
    made.id.domain = static_cast<std::uint16_t>(first_domain + random.below(domain_count));
    made.does = role_of(random.below(100));
    made.interface =
        made.does == role::blocked ? blocked_interface : static_cast<std::uint32_t>(random.below(interface_count));
    if (taken.insert(made.id).second) stations.push_back(made);
  }
  return stations;
}

/// The stations of each domain that do one thing.
class stations_by_domain {
 public:
  stations_by_domain(const std::vector<station> &stations, role wanted)
  {
    for (const station &each : stations) {
      if (each.does == wanted) domains_[each.id.domain].push_back(&each);
    }
  }

  /// Null for a domain without any.
  const station *pick(std::uint16_t domain, dice &random) const
  {
    const auto found = domains_.find(domain);
    return found == domains_.end() ? nullptr : found->second[random.below(found->second.size())];
  }

 private:
  std::unordered_map<std::uint16_t, std::vector<const station *>> domains_;
};

class planner {
 public:
  planner(const std::vector<station> &stations, dice &random)
      : stations_(stations), random_(random), active_(stations, role::active), quiet_(stations, role::quiet)
  {
  }

  plan make()
  {
    for (const station &each : stations_) announce_first(each);
    for (const station &each : stations_) converse(each);
    for (const station &each : stations_) end(each);
    made_.learning.reported = made_.learning.learned + made_.learning.refreshed + made_.learning.moved;
    return std::move(made_);
  }

 private:
  void announce_first(const station &from)
  {
    send(made_.announcements, from, broadcast);
    if (from.does == role::blocked) {
      ++made_.forwarding.stopped;
      return;
    }
    ++made_.forwarding.broadcast;
    ++made_.learning.learned;
    if (from.does != role::hasty) return;
    send(made_.announcements, from, broadcast);
    ++made_.forwarding.broadcast;
    ++made_.learning.refreshed;
  }

  void converse(const station &from)
  {
    if (from.does == role::moving) {
      station moved = from;
      moved.interface = (from.interface + 1) % interface_count;
      send(made_.conversation, moved, broadcast);
      ++made_.forwarding.broadcast;
      ++made_.learning.moved;
      made_.survivors[from.id] = {moved.interface, ttl - clock_step, false};
    } else if (from.does == role::active) {
      talk(made_.conversation, from, *active_.pick(from.id.domain, random_));
    }
  }

  void end(const station &from)
  {
    switch (from.does) {
      case role::quiet:
      case role::hasty: ++made_.learning.aged; break;
      case role::returning:
        ++made_.learning.aged;
        send(made_.aftermath, from, broadcast);
        ++made_.forwarding.broadcast;
        ++made_.learning.learned;
        made_.survivors[from.id] = {from.interface, ttl, false};
        break;
      case role::active: {
        const station *const gone = quiet_.pick(from.id.domain, random_);
        talk(made_.aftermath, from, gone != nullptr ? *gone : *active_.pick(from.id.domain, random_));
        made_.survivors[from.id] = {from.interface, ttl, true};
        break;
      }
      case role::moving:
      case role::blocked: break;
    }
  }

  /// A known station sends to another that is known, or has aged.
  void talk(std::vector<frame> &round, const station &from, const station &to)
  {
    const frame &sent = send(round, from, to.id.address);
    ++made_.forwarding.known_sources;
    if (to.does == role::active) {
      ++made_.forwarding.switched;
      made_.by_egress_interface[to.interface].count(sent.bytes);
    } else {
      ++made_.forwarding.flooded;
    }
  }

  const frame &send(std::vector<frame> &round, const station &from, const mac_address &destination)
  {
    constexpr std::uint32_t shortest = 64, longest = 1518;
    const auto bytes = static_cast<std::uint32_t>(shortest + random_.below(longest - shortest + 1));
    round.push_back({from.id, from.interface, destination, bytes});
    ++made_.forwarding.frames;
    made_.by_domain[from.id.domain].count(bytes);
    return round.back();
  }

  const std::vector<station> &stations_;
  dice &random_;
  stations_by_domain active_;
  stations_by_domain quiet_;
  plan made_;
};

}  // namespace

plan make_plan(const std::vector<std::uint32_t> &ouis, std::uint64_t addresses, std::uint64_t seed)
{
  dice random(seed);
  const auto stations = make_stations(ouis, addresses, random);
  return planner(stations, random).make();
}

}  // namespace tarvex::l2_learning
