// Driver functions of the parser value set. An entry serves all parsers, whatever its scope and place.
//
// SPDX-License-Identifier: Apache-2.0
#include "device.h"

namespace tarvex::standin {
namespace {

/// Runs body(services) where the handle is the value set's.
template <class Body>
auto of_value_set(std::uint32_t pvs_hdl, Body body)
{
  return [pvs_hdl, body](device &dev) {
    return find_row(rows::value_sets, pvs_hdl) != nullptr ? body(dev.services) : pd_status_t{STANDIN_NO_OBJECT};
  };
}

/// A driver function on an entry: body(set, entry).
template <class Body>
pd_status_t serve_value(const char *function, std::uint32_t dev_id, std::uint32_t pvs_hdl, std::uint32_t handle,
                        Body body)
{
  return serve(function, dev_id, pvs_hdl, of_value_set(pvs_hdl, [&](device_services &services) {
                 value_set_entry *const found = services.value_set.find(handle);
                 return found == nullptr ? pd_status_t{STANDIN_NO_ENTRY} : body(services.value_set, *found);
               }));
}

}  // namespace
}  // namespace tarvex::standin

using namespace tarvex::standin;

pd_status_t pipe_mgr_pvs_set_property(pd_sess_hdl_t, uint32_t dev_id, uint32_t pvs_hdl, uint32_t property,
                                      uint32_t value, uint32_t argument)
{
  return serve(__func__, dev_id, pvs_hdl, of_value_set(pvs_hdl, [&](device_services &services) {
                 services.value_set_properties[{property, argument}] = value;
                 return success;
               }));
}

pd_status_t pipe_mgr_pvs_get_property(pd_sess_hdl_t, uint32_t dev_id, uint32_t pvs_hdl, uint32_t property,
                                      uint32_t *value, uint32_t argument)
{
  return serve(__func__, dev_id, pvs_hdl, of_value_set(pvs_hdl, [&](const device_services &services) -> pd_status_t {
                 const auto found = services.value_set_properties.find({property, argument});
                 if (value == nullptr) return STANDIN_BAD_ARGUMENT;
                 if (found == services.value_set_properties.end()) return STANDIN_NO_PROPERTY;
                 *value = found->second;
                 return success;
               }));
}

pd_status_t pipe_mgr_pvs_entry_add(pd_sess_hdl_t, uint64_t dev_id, uint32_t pvs_hdl, uint32_t, uint32_t, uint32_t,
                                   uint32_t parser_value, uint32_t parser_value_mask, uint32_t *pvs_entry_hdl)
{
  return serve(__func__, device_of(dev_id), pvs_hdl,
               of_value_set(pvs_hdl, [&](device_services &services) -> pd_status_t {
                 if (pvs_entry_hdl == nullptr) return STANDIN_BAD_ARGUMENT;
                 return services.value_set.add({parser_value, parser_value_mask}, pvs_entry_hdl);
               }));
}

pd_status_t pipe_mgr_pvs_entry_modify(pd_sess_hdl_t, uint32_t dev_id, uint32_t pvs_hdl, uint32_t pvs_entry_hdl,
                                      uint32_t parser_value, uint32_t parser_value_mask)
{
  return serve_value(__func__, dev_id, pvs_hdl, pvs_entry_hdl, [&](auto &, value_set_entry &entry) {
    entry = {parser_value, parser_value_mask};
    return success;
  });
}

pd_status_t pipe_mgr_pvs_entry_delete(pd_sess_hdl_t, uint32_t dev_id, uint32_t pvs_hdl, uint32_t pvs_entry_hdl)
{
  return serve_value(__func__, dev_id, pvs_hdl, pvs_entry_hdl, [&](auto &set, value_set_entry &) {
    set.erase(pvs_entry_hdl);
    return success;
  });
}

pd_status_t standin_value_set_match(uint32_t dev_id, uint32_t pvs_hdl, uint32_t parsed_value, uint32_t *count)
{
  return on_device(dev_id, of_value_set(pvs_hdl, [&](device_services &services) -> pd_status_t {
                     if (count == nullptr) return STANDIN_BAD_ARGUMENT;
                     *count = 0;
                     services.value_set.each([&](std::uint32_t, const value_set_entry &each) {
                       if (((each.value ^ parsed_value) & each.mask) == 0) ++*count;
                     });
                     return success;
                   }));
}
