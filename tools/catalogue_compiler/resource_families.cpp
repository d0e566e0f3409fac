// Families over counters, meters, the WRED block and registers, by name.
//
// SPDX-License-Identifier: Apache-2.0
#include "family_builder.h"

namespace catalogue {

namespace {

constexpr const char *meter_status =
    "0, the driver's status, or PD_STATUS_INVALID_ARG without a driver call for a meter_type that is not "
    "PD_METER_TYPE_COLOR_UNAWARE";

/// A direct resource is addressed by the entry that it hangs on.
slot cell_of(const resource &r)
{
  return r.direct ? slot{"entry_hdl", {}, "the entry that it hangs on"} : slot{"cell_index"};
}

void add_counter(std::vector<exported_function> &to, const resource &r)
{
  to.push_back(function_builder("counter_read", r, "counter_read")
                   .brief("Reads a cell of the counter " + r.name + ".")
                   .calls("counter_read", {{"sess_hdl"},
                                           {"dev_tgt"},
                                           cell_of(r),
                                           {"read_flags",
                                            {},
                                            "bit 0: synchronise the cell with the hardware first; "
                                            "no other bit has a meaning"},
                                           {"counter_value_out"}}));
  to.push_back(function_builder("counter_write", r, "counter_write")
                   .brief("Writes a cell of the counter " + r.name + ".")
                   .calls("counter_write", {{"sess_hdl"}, {"dev_tgt"}, cell_of(r), {"counter_value"}}));
  to.push_back(function_builder("counter_hw_sync", r, "counter_hw_sync")
                   .brief("Synchronises all cells of the counter " + r.name +
                          " with the hardware. Does not wait for the callback.")
                   .calls("counter_hw_sync", {{"sess_hdl"}, {"dev_tgt"}, {"callback"}, {"cookie"}}));
}

void add_meter(std::vector<exported_function> &to, const resource &r)
{
  to.push_back(function_builder("meter_set", r, "meter_set")
                   .brief("Sets a cell of the meter " + r.name + ".")
                   .result(result_kind::status, meter_status)
                   .calls("meter_set", {{"sess_hdl"}, {"dev_tgt"}, cell_of(r), {"meter_value"}}));
  to.push_back(function_builder("meter_read", r, "meter_read")
                   .brief("Reads a cell of the meter " + r.name + ".")
                   .calls("meter_read", {{"sess_hdl"}, {"dev_tgt"}, cell_of(r), {"meter_value_out"}}));
}

void add_wred(std::vector<exported_function> &to, const resource &r)
{
  to.push_back(function_builder("wred_set", r, "wred_set")
                   .brief("Sets a cell of the WRED block " + r.name + ".")
                   .calls("wred_set", {{"sess_hdl"}, {"dev_tgt"}, {"cell_index"}, {"wred_value"}}));
  to.push_back(function_builder("wred_read", r, "wred_read")
                   .brief("Reads a cell of the WRED block " + r.name + ".")
                   .calls("wred_read", {{"sess_hdl"}, {"dev_tgt"}, {"cell_index"}, {"wred_value_out"}}));
}

void add_register(std::vector<exported_function> &to, const resource &r)
{
  constexpr const char *read_status = "0, the driver's status, or PD_STATUS_NO_MEMORY";
  to.push_back(function_builder("register_read", r, "register_read")
                   .brief("Reads a cell of the register " + r.name + ".")
                   .details("After a failure no output is written.")
                   .result(result_kind::status, read_status)
                   .calls("register_read", {{"sess_hdl"},
                                            {"dev_tgt"},
                                            {"cell_index"},
                                            {"read_flags"},
                                            {"register_values_out"},
                                            {"register_value_count_out"}}));
  to.push_back(
      function_builder("register_range_read", r, "register_range_read")
          .brief("Reads a range of cells of the register " + r.name + " in one driver call.")
          .details("After a failure values and their count are as they were. A count of 0 or fewer gives 0 for "
                   "both counts and no read.")
          .result(result_kind::status, read_status)
          .calls("register_range_read", {{"sess_hdl"},
                                         {"dev_tgt"},
                                         {"first_index"},
                                         {"signed_range_count"},
                                         {"read_flags"},
                                         {"range_count_read_out"},
                                         {"register_values_out"},
                                         {"register_value_count_out"}}));
  to.push_back(function_builder("register_write", r, "register_write")
                   .brief("Writes a cell of the register " + r.name + ".")
                   .calls("register_write", {{"sess_hdl"}, {"dev_tgt"}, {"cell_index"}, {"register_value"}}));
  to.push_back(function_builder("register_write_all", r, "register_write_all")
                   .brief("Writes all cells of the register " + r.name + ".")
                   .calls("register_write_all", {{"sess_hdl"}, {"dev_tgt"}, {"register_value"}}));
  to.push_back(function_builder("register_reset_all", r, "register_reset_all")
                   .brief("Resets all cells of the register " + r.name + " to what the driver resets them to.")
                   .calls("register_reset_all", {{"sess_hdl"}, {"dev_tgt"}}));
  to.push_back(function_builder("register_range_reset", r, "register_range_reset")
                   .brief("Resets a range of cells of the register " + r.name + ".")
                   .calls("register_range_reset", {{"sess_hdl"}, {"dev_tgt"}, {"first_index"}, {"range_count"}}));
  to.push_back(function_builder("register_hw_sync", r, "register_hw_sync")
                   .brief("Synchronises the register " + r.name + " with the hardware. Does not wait for the callback.")
                   .calls("register_hw_sync", {{"sess_hdl"}, {"dev_tgt"}, {"callback"}, {"cookie"}}));
}

}  // namespace

void add_resource_families(std::vector<exported_function> &to, const model &, const resource &r)
{
  switch (r.kind) {
    case resource_kind::counter: return add_counter(to, r);
    case resource_kind::meter: return add_meter(to, r);
    case resource_kind::wred: return add_wred(to, r);
    default: return add_register(to, r);
  }
}

}  // namespace catalogue
