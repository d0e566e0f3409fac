// Programs entries into a switch, and reads back what stands there.
//
// SPDX-License-Identifier: Apache-2.0
#include "loader.h"

#include <algorithm>

namespace tarvex::route_load {
namespace {

/// The entries of one table by their handles.
class expected_entries {
 public:
  struct item {
    entry_handle handle;
    const fib_entry *entry;
    bool found = false;
  };

  void add(entry_handle handle, const fib_entry &entry) { items_.push_back({handle, &entry}); }
  void sort() { std::ranges::sort(items_, {}, &item::handle); }

  item *find(entry_handle handle)
  {
    const auto at = std::ranges::lower_bound(items_, handle, {}, &item::handle);
    return at != items_.end() && at->handle == handle ? &*at : nullptr;
  }
  const std::vector<item> &items() const { return items_; }

 private:
  std::vector<item> items_;
};

std::string name_of(fib_table table, entry_handle handle)
{
  return std::string(table_name(table)) + ", entry handle " + std::to_string(handle);
}

std::string told(const fib_entry &got, const fib_entry &wanted)
{
  return got == wanted ? "the same, but its key does not lead to it (a mask with a hole) or bytes between the members "
                         "of its structures differ"
                       : "as " + to_string(got);
}

}  // namespace

std::vector<entry_handle> program(fib_switch &device, std::span<const fib_entry> entries,
                                  const progress_report &progress)
{
  std::vector<entry_handle> handles;
  handles.reserve(entries.size());
  for (const fib_entry &entry : entries) {
    handles.push_back(device.add(entry));
    report_step(progress, handles.size(), entries.size());
  }
  return handles;
}

std::uint64_t read_back(fib_switch &device, std::span<const fib_entry> entries, std::span<const entry_handle> handles,
                        differences &found, const progress_report &progress)
{
  std::array<expected_entries, fib_table_count> expected;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    expected[static_cast<std::size_t>(entries[i].table)].add(handles[i], entries[i]);
  }

  std::uint64_t compared = 0;
  for (std::size_t number = 0; number < fib_table_count; ++number) {
    const auto table = static_cast<fib_table>(number);
    expected[number].sort();
    for (const entry_handle handle : device.walk(table)) {
      report_step(progress, ++compared, entries.size());
      auto *item = expected[number].find(handle);
      if (item == nullptr) {
        found.add(name_of(table, handle) +
                  ": is in the switch and nobody added it: " + to_string(device.read(table, handle)));
      } else if (item->found) {
        found.add(name_of(table, handle) + ": comes twice in the walk");
      } else {
        item->found = true;
        if (!device.reads_back_as(*item->entry, handle)) {
          found.add(name_of(table, handle) + ": should be " + to_string(*item->entry) + ", reads back " +
                    told(device.read(table, handle), *item->entry));
        }
      }
    }
    for (const auto &item : expected[number].items()) {
      if (!item.found) {
        found.add(name_of(table, item.handle) + ": is missing in the switch: " + to_string(*item.entry));
      }
    }
  }
  return compared;
}

}  // namespace tarvex::route_load
