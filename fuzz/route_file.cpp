// Routing tables of any bytes, plain or compressed: read, ordered and laid out over the tables, or refused in words.
//
// SPDX-License-Identifier: Apache-2.0
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <string>

#include "plan.h"
#include "require.h"
#include "route_file.h"

namespace tarvex::fuzz {

namespace {

// A file in memory, by its name.
class memory_file {
 public:
  explicit memory_file(std::string_view content) : descriptor_(memfd_create("routes", MFD_CLOEXEC))
  {
    require(write(descriptor_, content.data(), content.size()) == static_cast<ssize_t>(content.size()), "a file fits");
  }
  memory_file(const memory_file &) = delete;
  memory_file &operator=(const memory_file &) = delete;
  ~memory_file() { close(descriptor_); }

  std::string path() const { return "/proc/self/fd/" + std::to_string(descriptor_); }

 private:
  int descriptor_;
};

void check_routes(const route_load::route_list &list)
{
  using namespace route_load;
  const auto ahead = [](const route &a, const route &b) { return a.destination < b.destination; };
  require(std::is_sorted(list.routes.begin(), list.routes.end(), ahead), "routes are sorted");
  require(std::adjacent_find(list.routes.begin(), list.routes.end(), std::not_fn(ahead)) == list.routes.end(),
          "a destination is there once");
  require(list.routes.size() + list.duplicates + list.bad_lines.count() <= list.lines, "a line is one thing at most");
  for (const bad_line &bad : list.bad_lines.kept())
    require(bad.line > 0 && bad.line <= list.lines && !bad.reason.empty(), "a bad line has a number and a reason");
  for (const route &each : list.routes) {
    const prefix &to = each.destination;
    require(top_bits(to.addr, to.length) == to.addr && to.length <= address_bits(to.fam),
            "a prefix ends where it says");
    const auto line = parse_line(to_string(to) + " " + std::to_string(each.origin_as));
    const auto *const again = std::get_if<route>(&line);
    require(again != nullptr && again->destination == to && again->origin_as == each.origin_as,
            "a route reads as written");
  }
  const load_plan plan = make_plan(list.routes);
  require(plan.placements.size() == list.routes.size(), "every route has its place");
}

}  // namespace

}  // namespace tarvex::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
  using namespace tarvex;
  const fuzz::memory_file file({reinterpret_cast<const char *>(data), size});
  try {
    fuzz::check_routes(route_load::read_route_file(file.path()));
  } catch (const route_load::file_error &error) {
    fuzz::require(std::string_view(error.what()).starts_with(file.path() + ": "), "an error names the file");
  }
  return 0;
}
