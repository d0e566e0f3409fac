// The rules of one table: written through the library, and kept beside it as a plain list that everything read from the
// switch is compared with.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <optional>

#include "rule.h"
#include "table_functions.h"

namespace tarvex::examples {

/// Reads a direct counter; bit 0 of the flags synchronises it first.
using read_direct_counter = pd_status_t (*)(pd_sess_hdl_t, pd_dev_tgt_t, pd_entry_hdl_t, std::uint32_t,
                                            pd_counter_value_t *);

template <typename Key, typename... Priority>
class rules_of final : public rule_table {
 public:
  using key_type = Key;

  rules_of(const table_functions<Key, Priority...> &functions, const key_layout<Key> &layout,
           read_direct_counter counter = nullptr)
      : functions_(functions), layout_(layout), live_(layout.live()), counter_(counter)
  {
    functions.get_mat_table_handle(&table_handle_);
  }

  const char *name() const override { return functions_.name; }
  std::size_t size() const override { return rules_.size(); }
  std::size_t changed() const override { return changed_; }

  /// Writes a rule. `parameters` is the action's structure, or nothing.
  template <typename Action, typename... Parameters>
  void add(const std::string &note, Priority... priority, const Key &key, const Action &action,
           const Parameters &...parameters)
  {
    rule added{
        note, (priority + ... + 0u), action.name, bytes_of(parameters...), layout_.value(key), layout_.mask(key)};
    must(action.add(session, all_pipes, &key, priority..., &parameters..., &added.handle),
         [&] { return "adding " + text(added); });
    for (std::size_t i = 0; i < added.value.size(); ++i) added.value[i] &= added.mask[i];
    rules_.emplace_back(std::move(added), key);
  }

  template <typename Default, typename... Parameters>
  void set_default(const std::string &note, const Default &action, const Parameters &...parameters)
  {
    default_ = rule{note, 0, action.action, bytes_of(parameters...), {}, {}};
    must(action.set(session, all_pipes, &parameters..., &default_->handle),
         [&] { return "setting " + text(*default_); });
  }

  /// Gives every third rule another action by its handle, and the one behind it by its key.
  template <typename Action, typename... Parameters>
  void change_some(const Action &action, const Parameters &...parameters)
  {
    for (std::size_t i = 0; i < rules_.size(); ++i) {
      auto &[changed, key] = rules_[i];
      if (i % 3 == 0) {
        must(action.modify(session, device_id, changed.handle, &parameters...),
             [&] { return "changing " + text(changed) + " by its handle"; });
      } else if (i % 3 == 1) {
        const pd_status_t status = with_priority(changed.priority, [&](Priority... p) {
          return action.modify_by_key(session, all_pipes, &key, p..., &parameters...);
        });
        must(status, [&] { return "changing " + text(changed) + " by its key"; });
      } else {
        continue;
      }
      changed.action = action.name;
      changed.parameters = bytes_of(parameters...);
      ++changed_;
    }
  }

  /// The rule that a packet hits, by the switch and by the list; null for a miss without a default entry.
  const rule *hit(const Key &packet, tally &compared) { return hit_bytes(layout_.value(packet), compared); }

  /// Called for each packet that hits a rule.
  void on_hit(std::function<void(const rule &, const pd_counter_value_t &)> tell) { tell_ = std::move(tell); }

  void read_back(tally &compared) const override
  {
    std::uint32_t count = 0;
    must(functions_.get_entry_count(session, all_pipes, &count), [&] { return std::string("counting ") + name(); });
    compared.expect(count == rules_.size(), [&] { return name() + std::string(" has ") + std::to_string(count); });
    auto walked = walk(
        name(), [&](pd_entry_hdl_t *to) { return functions_.get_first_entry_handle(session, all_pipes, to); },
        [&](pd_entry_hdl_t from, std::uint32_t n, pd_entry_hdl_t *to) {
          return functions_.get_next_entry_handles(session, all_pipes, from, n, to);
        });
    std::vector<pd_entry_hdl_t> kept;
    for (const auto &[each, key] : rules_) kept.push_back(each.handle);
    std::ranges::sort(walked);
    std::ranges::sort(kept);
    compared.expect(walked == kept, [&] { return name() + std::string(": a walk gives other entries"); });
    for (const auto &[each, key] : rules_) {
      compared.expect(find(each, key) == each.handle, [&] { return text(each) + " is not found by its key"; });
      read_entry(each, compared);
    }
    if (default_) read_entry(*default_, compared);
  }

  void look_up(std::mt19937_64 &random, unsigned packets, tally &compared) override
  {
    const key_bytes width = layout_.width();
    for (unsigned i = 0; i < packets && !rules_.empty(); ++i) {
      const rule &model = rules_[random() % rules_.size()].first;
      key_bytes packet = model.value;
      for (std::size_t byte = 0; byte < packet.size(); ++byte) {
        const unsigned free_bits = width[byte] & ~(model.mask[byte] & live_[byte]);
        packet[byte] = static_cast<std::uint8_t>(packet[byte] | (random() & free_bits));
      }
      if (i % 4 == 0) {
        const std::size_t byte = random() % packet.size();
        packet[byte] = static_cast<std::uint8_t>(packet[byte] ^ (random() & width[byte]));
      }
      hit_bytes(packet, compared);
    }
  }

  std::size_t remove_some(tally &compared) override
  {
    const std::size_t before = rules_.size();
    std::size_t place = 0;
    std::erase_if(rules_, [&](const auto &item) {
      const std::size_t turn = place++ % 4;
      if (turn < 2) remove(item.first, item.second, turn == 1, compared);
      return turn < 2;
    });
    return before - rules_.size();
  }

  void remove_all(tally &compared) override
  {
    for (const auto &[each, key] : rules_) remove(each, key, false, compared);
    rules_.clear();
    must(functions_.reset_default_entry(session, all_pipes), [&] { return std::string("resetting ") + name(); });
    default_.reset();
    hit_bytes(layout_.width(), compared);
  }

 private:
  template <typename Call>
  static auto with_priority(std::uint32_t priority, Call call)
  {
    if constexpr (sizeof...(Priority) == 0) {
      return call();
    } else {
      return call(priority);
    }
  }

  std::string text(const rule &which) const { return name() + std::string(" ") + which.text(); }

  bool matches(const rule &which, const key_bytes &packet) const
  {
    for (std::size_t i = 0; i < packet.size(); ++i) {
      if (((packet[i] ^ which.value[i]) & which.mask[i] & live_[i]) != 0) return false;
    }
    return true;
  }

  /// The rule that ought to be hit: of all that match, the one with the smallest priority.
  rule *search(const key_bytes &packet)
  {
    rule *best = nullptr;
    for (auto &[each, key] : rules_) {
      if ((best == nullptr || each.priority < best->priority) && matches(each, packet)) best = &each;
    }
    return best == nullptr && default_ ? &*default_ : best;
  }

  const rule *hit_bytes(const key_bytes &packet, tally &compared)
  {
    rule *const expected = search(packet);
    pd_entry_hdl_t found = STANDIN_NO_HANDLE;
    const pd_status_t status = standin_lookup(all_pipes, table_handle_, packet.data(), packet.size(), 0, &found);
    if (status != STANDIN_NO_ENTRY) must(status, [&] { return std::string("looking up in ") + name(); });
    const bool good = compared.expect(found == (expected != nullptr ? expected->handle : STANDIN_NO_HANDLE), [&] {
      return name() + std::string(": a packet hits entry ") + std::to_string(found) + " and ought to hit " +
             (expected != nullptr ? expected->text() : "nothing");
    });
    if (!good || expected == nullptr) return expected;
    constexpr pd_counter_value_t one_packet{1, 64};
    must(standin_count_packets(device_id, table_handle_, expected->handle, one_packet.packets, one_packet.bytes),
         [&] { return "counting a packet of " + text(*expected); });
    expected->counted.packets += one_packet.packets;
    expected->counted.bytes += one_packet.bytes;
    if (tell_) tell_(*expected, one_packet);
    return expected;
  }

  /// The entry with a rule's key, STANDIN_NO_HANDLE where there is none.
  pd_entry_hdl_t find(const rule &which, const Key &key) const
  {
    pd_entry_hdl_t found = STANDIN_NO_HANDLE;
    const pd_status_t status = with_priority(which.priority, [&](Priority... p) {
      return functions_.match_spec_to_entry_hdl(session, all_pipes, &key, p..., &found);
    });
    if (status != STANDIN_NO_ENTRY) must(status, [&] { return "finding " + text(which); });
    return status == BF_SUCCESS ? found : STANDIN_NO_HANDLE;
  }

  void read_entry(const rule &expected, tally &compared) const
  {
    Key key{};
    std::uint32_t priority = 0;
    char action[P4_PD_TARVEX_SWITCH_ACTION_NAME_SIZE] = "";
    parameter_bytes parameters(64);
    std::uint32_t action_number = 0;
    std::uint8_t no_key = 0;
    const auto get = [&](auto *...p) {
      return functions_.get_entry(session, device_id, expected.handle, 0, &key, p..., action, parameters.data(),
                                  &action_number, &no_key);
    };
    pd_status_t status = BF_SUCCESS;
    if constexpr (sizeof...(Priority) == 0) {
      status = get();
    } else {
      status = get(&priority);
    }
    if (!compared.expect(status == BF_SUCCESS,
                         [&] { return text(expected) + " cannot be read, " + to_text(status); })) {
      return;
    }
    parameters.resize(expected.parameters.size());
    compared.expect(action == expected.action && parameters == expected.parameters,
                    [&] { return text(expected) + " reads back as " + action + " or with other parameters"; });
    compared.expect(action_number == p4_pd_tarvex_switch_action_string_to_enum(expected.action.c_str()),
                    [&] { return text(expected) + " reads back as action " + std::to_string(action_number); });
    const bool is_default = expected.value.empty();
    compared.expect(no_key == (is_default ? 1 : 0), [&] { return text(expected) + ": a key where none is, or none"; });
    if (!is_default) {
      compared.expect(layout_.value(key) == expected.value && layout_.mask(key) == expected.mask &&
                          (sizeof...(Priority) == 0 || priority == expected.priority),
                      [&] { return text(expected) + " reads back with another key, mask or priority"; });
    }
    if (counter_ != nullptr) read_counter(expected, compared);
  }

  void read_counter(const rule &expected, tally &compared) const
  {
    pd_counter_value_t counted{};
    must(counter_(session, all_pipes, expected.handle, 1, &counted),
         [&] { return "reading counter of " + text(expected); });
    compared.expect(counted.packets == expected.counted.packets && counted.bytes == expected.counted.bytes,
                    [&] { return text(expected) + " has counted " + std::to_string(counted.packets) + " packets"; });
  }

  void remove(const rule &which, const Key &key, bool by_key, tally &compared) const
  {
    const pd_status_t status =
        by_key ? with_priority(which.priority,
                               [&](Priority... p) {
                                 return functions_.table_delete_by_match_spec(session, all_pipes, &key, p...);
                               })
               : functions_.table_delete(session, device_id, which.handle);
    must(status, [&] { return "deleting " + text(which); });
    compared.expect(find(which, key) == STANDIN_NO_HANDLE, [&] { return text(which) + " is still there"; });
  }

  table_functions<Key, Priority...> functions_;
  key_layout<Key> layout_;
  key_bytes live_;
  read_direct_counter counter_;
  std::function<void(const rule &, const pd_counter_value_t &)> tell_;
  std::uint32_t table_handle_ = 0;
  std::vector<std::pair<rule, Key>> rules_;
  std::optional<rule> default_;
  std::size_t changed_ = 0;
};

template <typename Key>
using exact_rules = rules_of<Key>;

/// The smaller priority wins.
template <typename Key>
using ternary_rules = rules_of<Key, std::uint32_t>;

}  // namespace tarvex::examples
