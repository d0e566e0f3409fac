// The frame of an example program: its result line and its exit status, and its argument where it has but one.
//
// SPDX-License-Identifier: Apache-2.0
#include "program.h"

#include <cinttypes>

namespace tarvex::examples {
namespace {

std::optional<std::string> only_argument(int argc, char **argv)
{
  if (argc < 2) return std::nullopt;
  const std::string argument = argv[1];
  if (argument != "--help" && argument.starts_with('-')) throw usage_error("there is no option '" + argument + '\'');
  if (argc > 2) throw usage_error("one argument at most; '" + std::string(argv[2]) + "' is a second one");
  return argument;
}

}  // namespace

int run_program(const char *name, const char *usage,
                const std::function<std::optional<std::string>(tally &compared)> &run)
try {
  std::setvbuf(stdout, nullptr, _IOLBF, 0);  // in step with standard error where both go to one file
  tally compared;
  const auto done = run(compared);
  if (!done) {
    std::printf("%s\n%s", usage, exit_status_text);
    return all_well;
  }
  std::printf("result: %s: %s, %" PRIu64 " comparisons, %" PRIu64 " differences\n",
              compared.different() == 0 ? "good" : "DIFFERENT", done->c_str(), compared.compared(),
              compared.different());
  return compared.different() == 0 ? all_well : differences_found;
} catch (const usage_error &error) {
  std::fprintf(stderr, "%s: %s\n%s", name, error.what(), usage);
  return wrong_use;
} catch (const file_error &error) {
  std::fprintf(stderr, "%s: %s\n", name, error.what());
  return bad_file;
} catch (const driver_refused &error) {
  std::fprintf(stderr, "%s: %s\n", name, error.what());
  std::puts("result: the driver refused");
  return refused_by_driver;
}

int run_program(int argc, char **argv, const char *name, const char *usage,
                std::string (*run)(const std::optional<std::string> &argument, tally &compared))
{
  return run_program(name, usage, [&](tally &compared) -> std::optional<std::string> {
    const auto argument = only_argument(argc, argv);
    if (argument == "--help") return std::nullopt;
    return run(argument, compared);
  });
}

}  // namespace tarvex::examples
