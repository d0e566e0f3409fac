// Resources that an action record names: what a table's entries hold on the way to the driver, and the list of them on
// the way back.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "action_marshalling.h"
#include "meter_records.h"
#include "tarvex_platform/driver.h"

namespace tarvex::pd {

enum class entry_operation { add, modify, set_default };

/// What the caller gives for a direct meter is refused before any driver call: an add needs a spec, and a spec must be
/// one that the meter takes.
template <const action_use_row &U, entry_operation Op>
[[gnu::always_inline]] inline bool meter_refused(const pd_meter_spec_t *meter_spec)
{
  if constexpr (U.resource_count > 0 && U.resources[0].form == resource_form::direct_meter) {
    if (meter_spec == nullptr) return Op == entry_operation::add;
    return !own_meter_takes(*meter_spec);
  } else {
    return false;
  }
}

template <const action_use_row &U, std::size_t I, entry_operation Op>
[[gnu::always_inline]] inline void name_resource(drv_action_spec_t &spec, const void *action_spec,
                                                 const pd_meter_spec_t *meter_spec)
{
  constexpr resource_row r = U.resources[I];
  // A modify leaves direct counters and registers to the entry as they are.
  if constexpr (Op == entry_operation::modify &&
                (r.form == resource_form::direct_counter || r.form == resource_form::direct_register)) {
    return;
  } else {
    drv_res_spec_t &res = spec.res[spec.res_count++];
    res.res_hdl = r.handle;
    if constexpr (r.form == resource_form::detached) {
      res.res_tag = DRV_RES_DETACHED;
    } else if constexpr (r.form == resource_form::indexed) {
      res.res_tag = DRV_RES_ATTACHED;
      res.res_index = resource_index<*U.action>(action_spec);
    } else if constexpr (r.form == resource_form::direct_meter) {
      if (meter_spec != nullptr) {
        res.res_tag = DRV_RES_ATTACHED;
        build_meter(res.res_value.meter, *meter_spec, get_bytes_meter_type(*meter_spec), 0);
      } else {
        res.res_tag = Op == entry_operation::modify ? DRV_RES_NOT_TOLD : DRV_RES_DETACHED;
      }
    } else {
      res.res_tag = DRV_RES_ATTACHED;
    }
  }
}

/// Fills the resource list of a cleared action record.
template <const action_use_row &U, entry_operation Op>
[[gnu::always_inline]] inline void name_resources(drv_action_spec_t &spec, const void *action_spec,
                                                  const pd_meter_spec_t *meter_spec)
{
  [&]<std::size_t... I>(std::index_sequence<I...>) __attribute__((always_inline))
  {
    (name_resource<U, I, Op>(spec, action_spec, meter_spec), ...);
  }
  (std::make_index_sequence<U.resource_count>{});
}

/// Resources read back, attached ones alone, in a block that lives for one call.
class resource_list {
 public:
  resource_list() = default;
  resource_list(const resource_list &) = delete;
  resource_list &operator=(const resource_list &) = delete;
  ~resource_list()
  {
    if (list_ != nullptr) bf_sys_free(list_);
  }

  /// False if a block was needed and could not be had.
  [[nodiscard]] bool build(const drv_action_spec_t &spec) { return spec.res_count == 0 || build_from(spec); }

  const pd_res_spec_t *list() const { return list_; }
  std::uint32_t count() const { return count_; }

 private:
  bool build_from(const drv_action_spec_t &spec);

  pd_res_spec_t *list_ = nullptr;
  std::uint32_t count_ = 0;
};

}  // namespace tarvex::pd
