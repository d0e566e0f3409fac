// One stage of the halo lookup: a table that gives each access list its masks of the key, and a table that matches the
// masked key. The five stages differ in the names of their types and functions only.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "rule_table.h"

namespace tarvex::examples {

/// What the stages match of a packet, its addresses and ports as classes. As masks of a stage: what is left of each.
struct halo_key {
  std::uint16_t source = 0;
  std::uint16_t destination = 0;
  std::uint16_t source_port = 0;
  std::uint16_t destination_port = 0;
  std::uint8_t protocol = 0;

  halo_key operator&(const halo_key &masks) const
  {
    return {static_cast<std::uint16_t>(source & masks.source),
            static_cast<std::uint16_t>(destination & masks.destination),
            static_cast<std::uint16_t>(source_port & masks.source_port),
            static_cast<std::uint16_t>(destination_port & masks.destination_port),
            static_cast<std::uint8_t>(protocol & masks.protocol)};
  }
};

/// The structure that a function of an action takes.
template <typename Parameters>
Parameters structure_of(pd_status_t (*)(pd_sess_hdl_t, pd_dev_id_t, pd_entry_hdl_t, const Parameters *));

template <typename RuleKey, typename MaskKey, typename SetResult, typename SetMasks>
class halo_stage {
 public:
  using result = p4_pd_tarvex_switch_haloSetBestResultRow1_action_spec_t;

  halo_stage(const table_functions<RuleKey> &rule_functions, const SetResult &set_result,
             const table_functions<MaskKey> &mask_functions, const SetMasks &set_masks)
      : rules(rule_functions, {{&RuleKey::haloKeyOrig_crlId, 8},
                               {&RuleKey::haloKeyMaskedRow1_sip, 16},
                               {&RuleKey::haloKeyMaskedRow1_dip, 16},
                               {&RuleKey::haloKeyMaskedRow1_srcPort, 16},
                               {&RuleKey::haloKeyMaskedRow1_dstPort, 16},
                               {&RuleKey::haloKeyMaskedRow1_proto, 8},
                               {&RuleKey::haloKeyMaskedRow1_dscp, 6},
                               {&RuleKey::haloKeyMaskedRow1_ttl, 8},
                               {&RuleKey::haloKeyMaskedRow1_flags, 8},
                               {&RuleKey::haloKeyMaskedRow1_isFrag, 1}}),
        masks(mask_functions, {{&MaskKey::haloKeyOrig_crlId, 8}}),
        set_result_(set_result),
        set_masks_(set_masks)
  {
  }

  void mask_list(std::uint8_t list, const halo_key &m)
  {
    auto left = masks_structure();  // all bytes zero, those behind the last member too
    left.action_sip = m.source;
    left.action_dip = m.destination;
    left.action_srcPort = m.source_port;
    left.action_dstPort = m.destination_port;
    left.action_proto = m.protocol;
    masks.add("list " + std::to_string(list), {list}, set_masks_, left);
  }

  void add(const std::string &note, std::uint8_t list, const halo_key &masked, std::uint32_t best_result)
  {
    rules.add(note, rule_key(list, masked), set_result_, result{best_result});
  }

  void change(std::uint32_t best_result) { rules.change_some(set_result_, result{best_result}); }

  /// The rule that a packet hits; null for none.
  const rule *hit(std::uint8_t list, const halo_key &packet, tally &compared)
  {
    const rule *const masked_by = masks.hit({list}, compared);
    if (masked_by == nullptr) return nullptr;
    const auto m = masked_by->template parameters_as<masks_structure>();
    const halo_key left{m.action_sip, m.action_dip, m.action_srcPort, m.action_dstPort, m.action_proto};
    return rules.hit(rule_key(list, packet & left), compared);
  }

  exact_rules<RuleKey> rules;
  exact_rules<MaskKey> masks;

 private:
  using masks_structure = decltype(structure_of(std::declval<SetMasks>().modify));

  static RuleKey rule_key(std::uint8_t list, const halo_key &k)
  {
    return {list, k.source, k.destination, k.source_port, k.destination_port, k.protocol, 0, 0, 0, 0};
  }

  SetResult set_result_;
  SetMasks set_masks_;
};

}  // namespace tarvex::examples
