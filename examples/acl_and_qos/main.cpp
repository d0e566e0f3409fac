// Access lists and quality of service on a stand-in switch: a few hundred rules are written, read back, changed,
// deleted and looked up, and all that the switch says is compared with a plain search over the list of the rules.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <charconv>
#include <iterator>
#include <string_view>

#include "packet_walk.h"
#include "program.h"
#include "switch_device.h"

namespace {

using namespace tarvex::examples;

constexpr char usage[] = R"(usage: acl_and_qos [--quiet] [SEED]

Programs access lists and quality of service of a stand-in switch: traps to the CPU, policers, mirror sessions, halo
stages, drops, classes and rewrites. Takes a few packets through the tables and prints what each one hits; then looks up
others at random, reads all rules back, changes some, deletes some, and compares with what it wrote at each step.

  SEED       picks other packets (default 1)
  --quiet    leaves out the packets and prints counts alone
  --help     this text
  --version  the version
)";

constexpr unsigned packets_a_table = 500;

std::uint64_t parse_seed(const std::optional<std::string> &argument)
{
  if (!argument) return 1;
  std::uint64_t seed = 0;
  const auto [end, error] = std::from_chars(argument->data(), argument->data() + argument->size(), seed);
  if (error != std::errc() || end != argument->data() + argument->size()) {
    throw usage_error("SEED is a number from 0 up to 64 bits, not '" + *argument + '\'');
  }
  return seed;
}

std::string run(program_arguments arguments, tally &compared)
{
  std::vector<const char *> others;
  std::ranges::remove_copy(arguments, std::back_inserter(others), std::string_view("--quiet"),
                           [](const char *argument) { return std::string_view(argument); });
  const bool quiet = others.size() != arguments.size();
  std::mt19937_64 random(parse_seed(only_argument(others)));
  switch_device device;
  acl_tables acl;
  halo_tables halo;
  qos_tables qos;
  std::vector<rule_table *> tables;
  for (const auto &some : {acl.all(), halo.all(), qos.all()}) tables.insert(tables.end(), some.begin(), some.end());
  // A switch that is found different is not changed any further.
  const auto check = [&] {
    for (rule_table *table : tables) table->look_up(random, packets_a_table, compared);
    for (const rule_table *table : tables) table->read_back(compared);
    acl.read_cells_back(compared);
    qos.read_config_back(compared);
    return compared.different() == 0;
  };

  acl.program();
  halo.program();
  qos.program();
  std::size_t rules = 0, changed = 0, removed = 0;
  for (const rule_table *table : tables) {
    std::printf("%-26s %4zu rules\n", table->name(), table->size());
    rules += table->size();
  }
  const std::size_t packets = walk_packets(acl, halo, qos, quiet, compared);
  const auto done = [&] {
    return counted(rules, "rule") + " written, " + counted(packets, "packet") + " taken through, " +
           counted(changed, "rule") + " changed, " + std::to_string(removed) + " deleted";
  };
  if (!check()) return done();
  std::printf("written     %6zu rules in %s, read back and looked up\n", rules,
              counted(tables.size(), "table").c_str());

  acl.change();
  halo.change();
  qos.change();
  for (const rule_table *table : tables) changed += table->changed();
  if (!check()) return done();
  std::printf("changed     %6zu rules, by handle and by key\n", changed);

  for (rule_table *table : tables) removed += table->remove_some(compared);
  if (!check()) return done();
  std::printf("deleted     %6zu rules, by handle and by key\n", removed);

  for (rule_table *table : tables) {
    removed += table->size();
    table->remove_all(compared);
    table->read_back(compared);
  }
  std::printf("deleted     %6zu rules, all\n", removed);
  return done();
}

}  // namespace

int main(int argc, char **argv) { return run_comparison({"acl_and_qos", usage, {}}, argc, argv, run); }
