// Writes the driver's records, with the meaning of their bytes where the catalogue tells it.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>

#include "catalogue_names.h"
#include "record_members.h"
#include "value_writer.h"

namespace tarvex::trace {

class record_writer {
 public:
  explicit record_writer(value_writer &to) : to_(to) {}

  /// What the call is on, and so keys and action data belong to; null where that is not known.
  const rows::table_info *table = nullptr;
  const rows::action_info *action = nullptr;

  /// A name as it is shown: shorter in text.
  std::string_view shown(std::string_view name) const;
  /// A member that is a handle of the catalogue, with its name.
  void row_handle(std::string_view name, std::uint32_t value);

  void members(std::span<const record_member> all, const std::uint8_t *record);
  void key(const drv_match_spec_t &key);
  /// Members of an object.
  void data(const drv_act_data_t &data, std::span<const drv_res_spec_t> resources);
  void action_record(const drv_action_spec_t &record);
  void resource_list(std::span<const drv_res_spec_t> resources);
  /// In text, only where there is something: {62:0123}.
  void trigger_bytes(std::span<const std::uint8_t> bytes);

 private:
  value_writer &to_;
};

}  // namespace tarvex::trace
