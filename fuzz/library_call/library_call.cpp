// Arguments by their kinds.
//
// SPDX-License-Identifier: Apache-2.0
#include "library_call.h"

#include <fcntl.h>

#include <algorithm>
#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <utility>

#include "pd_calls.h"
#include "require.h"
#include "tarvex_pd/actions.h"

namespace tarvex::fuzz {

namespace {

using enum argument_kind;
using calls::argument_form;

constexpr std::size_t text_room = 4096;  // more than the longest text takes

thread_local std::jmp_buf back;
thread_local bool awaited = false;

std::uint32_t on_field(std::uint32_t, const char *field, std::uint32_t, std::uint32_t size, void *)
{
  require(std::strlen(field) > 0 && size > 0 && size <= 16, "a field has a name and a size");
  return size;
}

std::uint32_t on_value(std::uint32_t, const char *field, std::uint32_t size, const std::uint8_t *value,
                       const std::uint8_t *mask)
{
  require(std::strlen(field) > 0 && size > 0 && size <= 16, "a field has a name and a size");
  std::uint32_t sum = 0;
  for (std::uint32_t i = 0; i < size; ++i) sum += value[i] + (mask != nullptr ? mask[i] : 0u);
  return sum;
}

// Every name of a field of a snapshot.
const std::vector<std::string> &field_names()
{
  static const auto names = [] {
    std::vector<std::string> found;
    const pd_snapshot_list_cb_t note = [](std::uint32_t, const char *field, std::uint32_t, std::uint32_t,
                                          void *to) -> std::uint32_t {
      static_cast<std::vector<std::string> *>(to)->emplace_back(field);
      return 0;
    };
    for (const std::uint32_t hdl : {0u, calls::pd::snapshot_egress_bit})
      calls::pd::snapshot_capture_trigger_list(0, hdl, note, &found);
    return found;
  }();
  return names;
}

// Room for the longest name of an action, its NUL included.
std::size_t action_name_size()
{
  std::size_t longest = 0;
  for (const calls::action_info &action : calls::actions) longest = std::max(longest, std::strlen(action.name));
  return calls::pipeline.prefix.size() + longest + 1;
}

// A name of the library's, or any.
std::string name_for(argument_kind kind, byte_source &input)
{
  if (input.yes()) return input.text(80);
  switch (kind) {
    case snapshot_field_name: return input.one_of(field_names());
    case calc_name: return input.one_of(calls::hashes).name;
    case digest_name: return calls::digests.empty() ? "" : calls::digests[0].name;
    case digest_field_name: return calls::digests.empty() ? "" : input.one_of(calls::digests[0].fields).name;
    default: return std::string(calls::pipeline.prefix) + input.one_of(calls::actions).name;
  }
}

bool is_name(argument_kind kind)
{
  return kind == snapshot_field_name || kind == calc_name || kind == digest_name || kind == digest_field_name ||
         kind == action_name;
}

// What the headers say may be null.
bool may_be_null(argument_kind kind)
{
  return is_name(kind) || kind == action_name_out || kind == action_enum_out || kind == table_handle_out ||
         kind == meter_spec;
}

// Whether a block is given; functions travel as words.
bool points(argument_kind kind)
{
  const argument_form form = calls::row_of(kind).form;
  return form == argument_form::pointer || form == argument_form::record;
}

// Of a printed line; a very long one is refused before it is begun, and those between the two take too long.
std::int32_t indent_for(byte_source &input)
{
  constexpr std::int32_t ends[] = {INT32_MAX, INT32_MIN, INT32_MIN + 1};
  return input.now_and_then(8) ? input.one_of(ends) : input.in_range(-9000, 9000);
}

}  // namespace

int &print_descriptor()
{
  static const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
  thread_local int descriptor = nowhere;
  return descriptor;
}

library_call::library_call(const exported_function &function, byte_source &input) : function_(function), call_(function)
{
  if (call_.takes(register_values_out)) {
    shape_ = {input.in_range(-1, 6), input.in_range(-1, 6)};
    if (input.now_and_then(16)) shape_ = {input.number<std::int32_t>(), input.number<std::int32_t>()};
  }
  // Numbers ahead of blocks, whose sizes follow from them.
  for (const argument_kind kind : function.arguments) numbers_.push_back(number_for(kind, input));
  for (std::size_t i = 0; i < function.arguments.size(); ++i) {
    const argument_kind kind = function.arguments[i];
    blocks_.push_back(block_for(kind, input));
    if (!points(kind)) {
      call_.set(i, numbers_[i]);
    } else {
      const bool none = (may_be_null(kind) && input.now_and_then(32)) || (kind == res_list && number(res_count) == 0);
      call_.set(i, none ? nullptr : static_cast<const void *>(blocks_[i].place.get()));
    }
  }
}

std::uint64_t library_call::number(argument_kind kind) const
{
  const std::size_t place = call_.place_of(kind, 0);
  return place < numbers_.size() ? numbers_[place] : 0;
}

std::uint64_t library_call::number_for(argument_kind kind, byte_source &input)
{
  switch (kind) {
    case handle_count:
    case res_count:
    case hash_attr_count:
    case hash_attr_max: return input.in_range<std::uint32_t>(0, 80);
    case signed_range_count:
      return input.now_and_then(16) ? input.number<std::uint32_t>() : static_cast<std::uint32_t>(input.in_range(-1, 8));
    case capture_index: return input.in_range(0u, calls::pd::snapshot_captures - 1u);
    case fd: return input.now_and_then(16) ? ~std::uint64_t{0} : static_cast<std::uint64_t>(print_descriptor());
    case indent: return static_cast<std::uint32_t>(indent_for(input));
    case table_handle: {
      const auto choice = input.number<std::uint8_t>();
      if (choice < calls::tables.size()) return calls::tables[choice].handle;
      if (!calls::profiles.empty() && choice < calls::tables.size() + 50)
        return calls::profiles[choice % calls::profiles.size()].action_data_table;
      return input.number<std::uint32_t>();
    }
    case snapshot_list_callback: return reinterpret_cast<std::uintptr_t>(&on_field);
    case snapshot_show_callback: return reinterpret_cast<std::uintptr_t>(&on_value);
    case action_enum: return input.number<std::uint8_t>();
    default: break;
  }
  if (calls::row_of(kind).form == argument_form::number) return input.number<std::uint32_t>();
  return calls::row_of(kind).form == argument_form::word ? input.number<std::uint64_t>() : 0;
}

// Values of all cells, by the shape that the driver will tell; a read for which memory cannot suffice writes none.
std::size_t library_call::register_room() const
{
  const auto at_least_0 = [](std::int64_t n) { return n > 0 ? static_cast<std::uint64_t>(n) : 0; };
  const std::uint64_t cells =
      call_.takes(signed_range_count) ? at_least_0(static_cast<std::int32_t>(number(signed_range_count))) : 1;
  const __uint128_t values = __uint128_t{cells} * at_least_0(shape_.rows) * at_least_0(shape_.values);
  return values * sizeof(drv_stful_spec_t) <= hostile_driver::most_memory ? static_cast<std::size_t>(values) : 0;
}

std::size_t library_call::room_for(argument_kind kind) const
{
  switch (kind) {
    case match_spec:
    case match_spec_out: return function_.table->record_size;
    case action_spec:
    case action_spec_out: return function_.action->record_size;
    case any_action_spec_out: {
      std::size_t most = 0;
      for (const calls::use_info &each : function_.table->actions)
        most = std::max<std::size_t>(most, each.action->record_size);
      return most;
    }
    case action_name_out: return action_name_size();
    case next_entry_hdls_out:
    case next_mbr_hdls_out:
    case next_grp_hdls_out: return sizeof(pd_entry_hdl_t) * std::max<std::size_t>(number(handle_count), 1);
    case hash_attrs: return sizeof(hash_calc_attr_t) * number(hash_attr_count);
    case hash_attrs_out: return sizeof(hash_calc_attr_t) * number(hash_attr_max);
    case res_list: return sizeof(pd_res_spec_t) * number(res_count);
    case register_values_out: return register_room();
    case text_buffer: return text_room;
    case capture_area:
    case capture_area_out: return calls::pd::snapshot_capture_area_bytes;
    case capture_fields:
    case capture_fields_out: return calls::pd::snapshot_field_bytes;
    case capture_ctrl_out: return calls::pd::snapshot_ctrl_bytes;
    case snapshot_field_words: return 16 * sizeof(std::uint32_t);
    case digest_entry: return calls::digests.empty() ? 1u : calls::digests[0].entry_bytes;
    default: return calls::row_of(kind).size;
  }
}

block library_call::block_for(argument_kind kind, byte_source &input)
{
  if (!points(kind)) return block(0);
  if (is_name(kind)) {
    const std::string name = name_for(kind, input);
    return block(std::span(reinterpret_cast<const std::uint8_t *>(name.c_str()), name.size() + 1));
  }
  if (kind == stful_query) return block(sizeof(drv_stful_query_t));
  block made(room_for(kind));
  input.fill(made.all());
  const auto more_room = [&](std::size_t room) {
    const block &more = keys_and_data_.emplace_back(room);
    input.fill(more.all());
    return more.place.get();
  };
  if (kind == argument_kind::drv_match_spec) {
    auto &key = *reinterpret_cast<drv_match_spec_t *>(made.place.get());
    key.key_value = more_room(function_.table->key_bytes);
    key.key_mask = more_room(function_.table->key_bytes);
  } else if (kind == argument_kind::drv_act_data) {
    reinterpret_cast<drv_act_data_t *>(made.place.get())->data = more_room(function_.action->data_bytes);
  }
  return made;
}

std::span<std::uint8_t> library_call::memory(argument_kind kind, std::size_t nth) const
{
  return blocks_.at(call_.place_of(kind, nth)).all();
}

// Handles of actions and resources that a sound driver could answer with.
std::vector<std::uint32_t> library_call::sound_handles() const
{
  std::vector<std::uint32_t> handles;
  const auto add = [&](std::span<const calls::use_info> uses) {
    for (const calls::use_info &use : uses) {
      handles.push_back(use.handle);
      for (const calls::resource_use_info &resource : use.resources) handles.push_back(resource.handle);
    }
  };
  if (function_.table != nullptr) add(function_.table->actions);
  if (function_.profile != nullptr) add(function_.profile->actions);
  for (const calls::table_info &each : calls::tables)
    if (call_.takes(table_handle) && each.handle == number(table_handle)) add(each.actions);
  for (const calls::profile_info &each : calls::profiles)
    if (call_.takes(table_handle) && each.action_data_table == number(table_handle)) add(each.actions);
  if (function_.hash != nullptr) handles.push_back(function_.hash->first_input);
  return handles;
}

bool library_call::run(std::span<const std::uint8_t> answers)
{
  driver().begin(answers, sound_handles(), shape_);
  awaited = true;
  const bool stopped = setjmp(back) != 0;
  if (!stopped) result_ = call_.make();
  awaited = false;
  require(driver().end() == 0 || stopped, "a call gives its working blocks back");
  return !stopped;
}

// The result and all memory that arguments point at, but for addresses, which are none's twice.
void library_call::note_results() const
{
  fingerprint &seen = driver().seen;
  const bool address = function_.result == calls::result_kind::text || function_.result == calls::result_kind::pointer;
  if (function_.result != calls::result_kind::none && !address) seen.add_record(static_cast<std::uint32_t>(result_));
  for (std::size_t i = 0; i < blocks_.size(); ++i) {
    const argument_kind kind = function_.arguments[i];
    if (kind != argument_kind::drv_match_spec && kind != argument_kind::drv_act_data && kind != stful_query)
      seen.add(blocks_[i].all());
  }
}

bool library_call::make(std::span<const std::uint8_t> answers)
{
  if (!run(answers)) return false;
  note_results();
  if (function_.result == calls::result_kind::truth) require((result_ & 0xff) < 2, "a truth is 0 or 1");
  if (function_.result == calls::result_kind::text && result_ != 0)
    require(std::strlen(reinterpret_cast<const char *>(result_)) < text_room, "a text ends");
  const std::size_t place = call_.place_of(text_buffer, 0);
  if (place == blocks_.size()) return true;

  const auto length = static_cast<std::uint32_t>(result_);
  require(length < text_room, "a text has the length of a text");
  const block first = std::exchange(blocks_[place], block(length + 1));
  call_.set(place, blocks_[place].place.get());
  require(run(answers) && static_cast<std::uint32_t>(result_) == length, "a text comes out the same again");
  require(std::equal(first.place.get(), first.place.get() + length, blocks_[place].place.get()) &&
              blocks_[place].place[length] == 0 && std::memchr(first.place.get(), 0, length) == nullptr,
          "a text ends with its NUL");
  return true;
}

}  // namespace tarvex::fuzz

// A broken reply, or a field that a hash calculation does not have, ends the call here instead of the process. Anything
// else that fails is told as what it is.
extern "C" void __assert_fail(const char *assertion, const char *file, unsigned line, const char *function) noexcept
{
  using namespace tarvex::fuzz;
  const std::string_view stop = assertion;
  const bool laid_down =
      std::string_view(file).starts_with(tarvex::calls::pipeline.sources) && (stop == "((void *)0)" || stop == "0");
  if (!awaited || !laid_down) {
    std::fprintf(stderr, "%s:%u: %s: assertion %s failed\n", file, line, function, assertion);
    std::abort();
  }
  std::longjmp(back, 1);
}
