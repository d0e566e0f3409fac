// ECMP groups, LAGs and tunnels on a stand-in switch, and what becomes of them when the control plane starts again
// while the switch goes on: what the library knows comes back from a file, and then from the switch itself.
//
// SPDX-License-Identifier: Apache-2.0
#include <cstdio>

#include "profile.h"
#include "program.h"
#include "state_file.h"
#include "switch_device.h"

namespace {

using namespace tarvex::examples;

constexpr char usage[] = R"(usage: ecmp_fabric [FILE]

Builds 1,000 groups of up to 64 members over the five action profiles of a stand-in switch, points entries of the ECMP,
LAG, tunnel and mirror tables to them, and takes members down and up. Then has the library forget all members and
groups, as a control plane has that was started again, and restores them: from the log of the device, by way of FILE,
and by the replay of the switch. Compares all of it at each step.

  FILE       where the log is written, as JSON; it stays there (default: a temporary file that is removed)
  --help     this text
  --version  the version
)";

constexpr std::uint64_t seed = 1;

/// The library forgets the device's members and groups. The switch keeps its tables: they forward all the time.
void forget(const std::vector<profile> &profiles, tally &compared)
{
  p4_pd_tarvex_switch_dev_remove(device_id);
  for (const profile &each : profiles) {
    each.check_forgotten(compared);
    each.check_switch(compared);
  }
  std::printf("forgotten by the library; the switch forwards as before\n");
}

/// Whether all is as it was; `log` is the log that the library gave before it forgot.
bool check_restored(const std::vector<profile> &profiles, const std::string &log, tally &compared)
{
  compared.expect(log_device() == log, [] { return "the log of the device is not what it was"; });
  for (const profile &each : profiles) {
    each.check_switch(compared);
    each.check_library(compared);
  }
  return compared.different() == 0;
}

void print(const std::vector<profile> &profiles)
{
  for (const profile &each : profiles) {
    const fabric_counts c = each.counts();
    std::printf("  %-30s %5zu members %5zu groups %6zu memberships, %5zu down %5zu entries\n", each.name(), c.members,
                c.groups, c.memberships, c.down, c.entries);
  }
  for (const profile &each : profiles) std::printf("  %s\n", each.example().c_str());
}

std::string sum_of(const std::vector<profile> &profiles)
{
  fabric_counts all;
  for (const profile &each : profiles) {
    const fabric_counts c = each.counts();
    all.groups += c.groups;
    all.memberships += c.memberships;
    all.entries += c.entries;
  }
  return counted(all.groups, "group") + ", " + counted(all.memberships, "membership") + ", " +
         counted(all.entries, "entry", "entries") + ", ";
}

std::string run(program_arguments arguments, tally &compared)
{
  const state_file file(only_argument(arguments));
  std::mt19937_64 random(seed);
  switch_device device;
  auto profiles = make_profiles();

  for (profile &each : profiles) {
    each.build(random, compared);
    each.switch_members(random);
    each.switch_members(random);
    each.choose_fallback(&each == &profiles.front(), compared);
  }
  std::printf("built\n");
  print(profiles);
  std::string log = log_device();
  if (!check_restored(profiles, log, compared)) return sum_of(profiles) + "not as they were built";

  file.write(log);
  std::printf("logged to %s: %s\n", file.path().c_str(), counted(log.size(), "byte").c_str());
  forget(profiles, compared);
  restore_device(file.read(), file.path());
  if (!check_restored(profiles, log, compared)) return sum_of(profiles) + "not restored from " + file.path();
  std::printf("restored from %s\n", file.path().c_str());

  for (profile &each : profiles) {
    each.grow(random);
    each.switch_members(random);
  }
  std::printf("grown\n");
  print(profiles);
  log = log_device();
  forget(profiles, compared);
  must(p4_pd_tarvex_switch_restore_virtual_dev_state(session, device_id, 0, 0, 0), "replaying the device");
  if (!check_restored(profiles, log, compared)) return sum_of(profiles) + "not restored by the replay";
  std::printf("restored by the replay of the switch\n");
  return sum_of(profiles) + "restored twice";
}

}  // namespace

int main(int argc, char **argv) { return run_comparison({"ecmp_fabric", usage, {}}, argc, argv, run); }
