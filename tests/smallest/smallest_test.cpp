// Every function of a pipeline that lacks most of what a pipeline may have: each is called once by a driver that
// obliges and once by one that answers nothing, and comes back in order.
//
// SPDX-License-Identifier: Apache-2.0
#include <cstdio>

#include "plausible.h"
#include "tarvex_pd/types.h"

int main()
{
  using namespace tarvex;
  using namespace tarvex::test;
  if (invoke("init") != BF_SUCCESS) return 1;
  unsigned wrong = 0;
  const auto look = [&](const exported_function &function, const outcome &seen, bool may_stop) {
    if (seen.wrong.empty() && (may_stop || seen.stop.empty())) return;
    std::fprintf(stderr, "%s: %s %s\n", function.name, seen.stop.c_str(), seen.wrong.c_str());
    ++wrong;
  };
  for (const exported_function &function : calls::functions) {
    look(function, outcome_of(function), false);
    const auto nothing = [](const plausible_call &, const recorded_call &) { return std::uint64_t{0}; };
    look(function, outcome_of(function, nothing), true);
  }
  std::printf("%zu functions of %s, %u wrong\n", calls::functions.size(), calls::pipeline.name, wrong);
  return calls::functions.empty() || wrong != 0 ? 1 : 0;
}
