// Loads an internet routing table through the library into a stand-in switch and checks that it arrived.
//
// SPDX-License-Identifier: Apache-2.0
#include <sys/resource.h>

#include <chrono>
#include <cinttypes>
#include <cstdio>

#include "library_switch.h"
#include "loader.h"
#include "options.h"
#include "program.h"
#include "resolver.h"
#include "route_file.h"

namespace {

using namespace tarvex::route_load;

using namespace tarvex::examples;

template <typename Things, typename Text>
void tell_first(std::uint64_t count, const Things &things, const char *one, const char *several, Text text)
{
  std::uint64_t told = 0;
  for (const auto &thing : things) {
    if (told == first_few<int>::most_kept) break;
    std::fprintf(stderr, "%s\n", text(thing).c_str());
    ++told;
  }
  if (count > told)
    std::fprintf(stderr, "... and %" PRIu64 " more %s\n", count - told, count - told == 1 ? one : several);
}

/// Runs a step under a progress bar of its own, takes its seconds, and gives its result.
template <typename Step>
auto timed(const char *label, double &seconds, Step step)
{
  progress_bar bar(label);
  const auto begin = std::chrono::steady_clock::now();
  auto result = step(bar.report());
  seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
  return result;
}

double peak_memory_mib()
{
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_maxrss) / 1024;
}

void tell_refused_blocks(const load_plan &plan)
{
  tell_first(plan.refused.size(), plan.refused, "block without a partition index", "blocks without a partition index",
             [](const refused_block &block) {
               const auto &layout = partition_layouts[static_cast<std::size_t>(block.space)];
               return "no partition index left for block " + to_string(block.block) + ": all " +
                      std::to_string(layout.last_index) + " of " + table_name(layout.partition) + " are in use; " +
                      counted(block.routes, "route") + (block.routes == 1 ? " of the block is" : " of the block are") +
                      " not loaded";
             });
}

constexpr std::array<const char *, fib_table_count> table_meanings{
    "IPv4 /32, the whole address",
    "IPv6 /128, the whole address",
    "blocks of 12 bits, each with an index and the result of the longest shorter route over it",
    "blocks of 22 bits, likewise",
    "blocks of 64 bits, likewise",
    "IPv4 /13 to /31, under the index of the block",
    "IPv6 /65 to /127, under the index of the block of 64 bits",
    "IPv6 /23 to /64, under the index of the block of 22 bits",
    "IPv4 up to /12",
    "IPv6 up to /22",
};

void print_entries(std::span<const fib_entry> entries, bool explain)
{
  std::array<std::size_t, fib_table_count> counts{};
  for (const fib_entry &entry : entries) ++counts[static_cast<std::size_t>(entry.table)];
  for (std::size_t table = 0; table < fib_table_count; ++table) {
    std::printf("  %-24s %10zu %s%s%s\n", table_name(static_cast<fib_table>(table)), counts[table],
                counts[table] == 1 ? "entry" : "entries", explain ? (counts[table] == 1 ? "    " : "  ") : "",
                explain ? table_meanings[table] : "");
  }
}

/// Takes an address of three routes, a quarter of the list from each other, through the tables and prints each step.
void print_lookups(fib_switch &device, std::span<const route> routes)
{
  std::puts("The file names no next hop: each is made from the AS number of the route, folded to 16 bits.");
  std::puts("Three lookups, and the entries that each hits:");
  resolver chain(device);
  for (const std::size_t quarter : {1U, 2U, 3U}) {
    const route &shown = routes[routes.size() * quarter / 4];
    const family fam = shown.destination.fam;
    const address last = last_address(shown.destination);
    const hop result = chain.resolve(fam, last);
    std::printf("  %s, the last address of %s of AS %" PRIu32 "\n", to_string(last, fam).c_str(),
                to_string(shown.destination).c_str(), shown.origin_as);
    for (const fib_entry &hit : chain.hits()) std::printf("    %s\n", to_string(hit).c_str());
    std::printf("    so: %s\n", to_string(result).c_str());
  }
}

exit_status run(program_arguments arguments)
{
  const options wanted = parse_options(arguments);
  double read_seconds = 0, load_seconds = 0, compare_seconds = 0, resolve_seconds = 0;
  const auto list = timed("reading", read_seconds,
                          [&](const progress_report &report) { return read_route_file(wanted.file, report); });
  tell_first(list.bad_lines.count(), list.bad_lines.kept(), "bad line", "bad lines",
             [&](const bad_line &bad) { return wanted.file + ':' + std::to_string(bad.line) + ": " + bad.reason; });
  const std::string bad_lines = counted(list.bad_lines.count(), "bad line");
  const std::string duplicates = counted(list.duplicates, "duplicate");
  std::printf("routes read     %10zu in %.2f s: %s, %s, %s\n", list.routes.size(), read_seconds,
              counted(list.lines, "line").c_str(), bad_lines.c_str(), duplicates.c_str());
  if (wanted.strict && list.bad_lines.count() != 0) {
    std::printf("result: nothing loaded: %s\n", bad_lines.c_str());
    return bad_input;
  }
  if (list.routes.empty()) throw file_error(wanted.file + ": holds no route");

  const load_plan plan = make_plan(list.routes);
  tell_refused_blocks(plan);
  const auto entries = make_entries(list.routes, plan);
  const std::size_t loaded = list.routes.size() - plan.routes_not_loaded;
  const reference_search reference(list.routes, [&](std::size_t i) { return plan.placements[i].loaded; });

  library_switch device;
  differences found;
  const auto handles =
      timed("loading", load_seconds, [&](const progress_report &report) { return program(device, entries, report); });
  std::printf("routes loaded   %10zu in %.2f s: %.0f routes per second, %zu not loaded\n", loaded, load_seconds,
              static_cast<double>(loaded) / load_seconds, plan.routes_not_loaded);
  print_entries(entries, wanted.explain);
  const auto compared = timed("comparing", compare_seconds, [&](const progress_report &report) {
    return read_back(device, entries, handles, found, report);
  });
  std::printf("compared        %10" PRIu64 " %s in %.2f s\n", compared, compared == 1 ? "entry" : "entries",
              compare_seconds);
  const auto resolved = timed("resolving", resolve_seconds, [&](const progress_report &report) {
    compare_resolution(device, list.routes, reference, wanted.seed, wanted.resolve, found, report);
    return wanted.resolve;
  });
  std::printf("resolved        %10" PRIu64 " %s in %.2f s\n", resolved, resolved == 1 ? "address" : "addresses",
              resolve_seconds);
  if (wanted.explain) print_lookups(device, list.routes);
  tell_first(found.count(), found.kept(), "difference", "differences", [](const std::string &text) { return text; });
  std::printf("differences     %10" PRIu64 "\n", found.count());
  std::printf("peak memory     %10.1f MiB\n", peak_memory_mib());
  const exit_status status = found.count() != 0                                     ? differences_found
                             : plan.routes_not_loaded + list.bad_lines.count() != 0 ? incomplete
                                                                                    : all_well;
  std::printf("result: %s: %s loaded, %zu not loaded, %s, %s, %s compared, %s resolved, %s, %.2f s\n",
              status == all_well     ? "good"
              : status == incomplete ? "incomplete"
                                     : "DIFFERENT",
              counted(loaded, "route").c_str(), plan.routes_not_loaded, bad_lines.c_str(), duplicates.c_str(),
              counted(compared, "entry", "entries").c_str(), counted(resolved, "address", "addresses").c_str(),
              counted(found.count(), "difference").c_str(),
              read_seconds + load_seconds + compare_seconds + resolve_seconds);
  return status;
}

}  // namespace

int main(int argc, char **argv)
{
  return run_program({"route_load", usage_text, {differences_found, bad_input, incomplete}}, argc, argv, run);
}
