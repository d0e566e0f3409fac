// A driver that answers every imported call with what a run of bytes says: any status, count, kind, length and handle,
// and null pointers. It keeps to the room that it is given, as no library could check what a driver writes. Each thread
// has one of its own.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <span>
#include <string_view>
#include <type_traits>
#include <vector>

#include "byte_source.h"
#include "driver_functions.h"
#include "fingerprint.h"

namespace tarvex::fuzz {

/// Rows and values of a register cell, as the driver will tell them.
struct register_shape {
  std::int32_t rows = 0;
  std::int32_t values = 0;
};

class hostile_driver {
 public:
  static constexpr std::size_t most_memory = std::size_t{1} << 17;  // of the working blocks of one call

  /// Gets ready for a call: what it answers comes from here; behind the end of the bytes it answers 0.
  void begin(std::span<const std::uint8_t> answers, std::vector<std::uint32_t> handles, register_shape shape);
  /// Gives back what the call has left behind; how many blocks that was.
  std::size_t end();

  void *take(std::size_t count, std::size_t size);
  void give_back(void *block);

  /// What the library has handed over last.
  bytes key_value, key_mask, data;
  drv_match_spec_t key{};
  drv_action_spec_t action{};
  /// All calls with their arguments.
  fingerprint seen;

 private:
  friend class reply;

  byte_source input_{{}};
  std::vector<std::uint32_t> handles_{0, 0xffffffff};  // such as a sound reply would hold
  register_shape shape_;
  bool shape_told_ = false;
  std::vector<std::unique_ptr<pd_res_spec_t[]>> lists_;
  std::map<void *, std::size_t> blocks_;
  std::size_t memory_ = 0;
};

hostile_driver &driver();

/// The answer to one call: the arguments are shown to it in their order.
class reply {
 public:
  explicit reply(const driver::call_row &row);

  template <typename T>
  void to_next(T given)
  {
    ++at_;
    to(given);
  }

  std::uint64_t status();

 private:
  /// Numbers and records by value; functions, states and cookies are passed over.
  template <typename T>
  void to(T given)
  {
    if constexpr (std::is_integral_v<T>) numbers_[at_] = given;
    if constexpr (!std::is_pointer_v<T>) seen().add_record(given);
  }
  void to(std::uint32_t *number);
  void to(std::uint64_t *number);
  void to(std::int32_t *number);
  void to(drv_match_spec_t *key);
  void to(drv_action_spec_t *action);
  void to(drv_act_data_t *data);
  void to(drv_meter_spec_t *value) { plain(value); }
  void to(drv_wred_spec_t *value) { plain(value); }
  void to(drv_stat_data_t *value) { plain(value); }
  void to(drv_stful_spec_t *value) { plain(value); }
  void to(drv_res_spec_t *resource) { plain(resource); }
  void to(snap_capture_sizes_t *sizes) { plain(sizes); }
  void to(drv_stful_query_t *queries);
  void to(pd_res_spec_t **list);
  void to(void *memory);

  byte_source &input() { return driver().input_; }
  fingerprint &seen() { return driver().seen; }
  void fill(void *memory, std::size_t size) { input().fill({static_cast<std::uint8_t *>(memory), size}); }
  /// A record without pointers, the driver's to read or to fill.
  template <typename Record>
  void plain(Record *record)
  {
    if (record == nullptr) return;
    seen().add_record(*record);
    if (fills()) fill(record, sizeof *record);
  }
  void fill_data(drv_act_data_t &data);

  const driver::argument_row &argument() const { return row_.rows[at_]; }
  /// Whether the record is the driver's to fill.
  bool fills() const { return argument().way != driver::direction::in; }

  const driver::call_row &row_;
  std::size_t at_ = static_cast<std::size_t>(-1);
  std::array<std::uint64_t, driver::most_arguments> numbers_{};
  std::uint32_t *last_count_ = nullptr;
};

/// What every imported function does here.
template <auto Function, typename... Arguments>
driver::result_of<Function> driver_call(Arguments... arguments)
{
  using Result = driver::result_of<Function>;
  reply given(driver::row_of<Function>);
  (given.to_next(arguments), ...);
  if constexpr (std::is_pointer_v<Result>) {
    return reinterpret_cast<Result>(&driver());  // opaque to the library
  } else {
    return static_cast<Result>(given.status());
  }
}

}  // namespace tarvex::fuzz
