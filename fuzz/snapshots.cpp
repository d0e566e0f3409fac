// Snapshots: triggers made of any names and words show what was added, and nothing else; then any function of theirs.
//
// SPDX-License-Identifier: Apache-2.0
#include <map>
#include <string>

#include "library_call.h"
#include "require.h"
#include "tarvex_pd/snapshots.h"

namespace tarvex::fuzz {

namespace {

using fields = std::map<std::string, bytes>;

// The fields of a layout, each of as many zeros as it has bytes.
fields fields_of(pd_snapshot_hdl_t snapshot)
{
  fields found;
  const pd_snapshot_list_cb_t note = [](std::uint32_t, const char *field, std::uint32_t, std::uint32_t field_size,
                                        void *to) -> std::uint32_t {
    (*static_cast<fields *>(to))[field].resize(field_size);
    return 0;
  };
  p4_pd_tarvex_switch_snapshot_capture_trigger_list(0, snapshot, note, &found);
  return found;
}

fields shown;

std::uint32_t show(std::uint32_t, const char *field, std::uint32_t size, const std::uint8_t *value,
                   const std::uint8_t *mask)
{
  require(bytes(mask, mask + size) == bytes(size, 0xff), "all bits of a field count");
  require(shown.emplace(field, bytes(value, value + size)).second, "a field is shown once");
  return 0;
}

void check_trigger(byte_source &input)
{
  const auto snapshot = input.number<pd_snapshot_hdl_t>();
  const fields known = fields_of(snapshot);
  const block values(sizeof(snap_trig_spec_t)), masks(sizeof(snap_trig_spec_t));
  auto *const value_record = reinterpret_cast<snap_trig_spec_t *>(values.place.get());
  auto *const mask_record = reinterpret_cast<snap_trig_spec_t *>(masks.place.get());
  fields expected;
  while (!input.empty()) {
    std::string name = input.text(60);
    if (input.yes()) name = std::next(known.begin(), input.in_range<std::ptrdiff_t>(0, std::ssize(known) - 1))->first;
    name = name.c_str();  // to its first NUL
    const auto field = known.find(name);
    bytes value = field == known.end() ? bytes() : field->second;
    const block words(sizeof(std::uint32_t) * (value.size() == 16 ? 16 : value.empty() ? 0 : 1));
    input.fill(words.all());
    for (std::size_t i = 0; i < value.size(); ++i) value[i] = words.place[value.size() == 16 ? 4 * i : i];
    const std::uint32_t added = p4_pd_tarvex_switch_snapshot_capture_trigger_add(
        snapshot, value_record, mask_record, name.c_str(), reinterpret_cast<const std::uint32_t *>(words.place.get()));
    require(added == (field == known.end() ? 0u : 1u), "a field is added where its name is known");
    if (added != 0) expected[name] = value;
  }
  shown.clear();
  p4_pd_tarvex_switch_snapshot_capture_trigger_show(0, snapshot, value_record, mask_record, show);
  require(shown == expected, "what was added is shown");
}

}  // namespace

}  // namespace tarvex::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
  using namespace tarvex::fuzz;
  byte_source input({data, size});
  driver().begin({}, {}, {});
  if (input.yes()) {
    check_trigger(input);
    return 0;
  }
  const auto &function = pick_function(
      input, [](const exported_function &each) { return each.family == tarvex::calls::family_id::snapshot; });
  const auto answers = input.take(input.in_range<std::size_t>(0, 400));
  library_call(function, input).make(answers);
  return 0;
}
