// Times of the basket's calls, by the library and by hand.
//
// SPDX-License-Identifier: Apache-2.0
#include <string>

#include <benchmark/benchmark.h>

#include "basket.h"

namespace {

/// A batch of calls a round, so that the loop around them weighs little.
void repeat(benchmark::State &state, void (*call)())
{
  constexpr int batch = 16;
  for (auto _ : state)
    for (int i = 0; i < batch; ++i) call();
  state.SetItemsProcessed(state.iterations() * batch);
}

}  // namespace

int main(int argc, char **argv)
{
  basket_start();
  for (unsigned n = 0; n < 34; ++n) {
    basket_arguments(n);
    for (const basket_call &call : basket)
      if (basket_same(&call) == 0) return 1;
  }
  basket_arguments(24);
  for (const basket_call &call : basket) {
    benchmark::RegisterBenchmark((std::string(call.what) + "/library").c_str(), repeat, call.call_library);
    benchmark::RegisterBenchmark((std::string(call.what) + "/by hand").c_str(), repeat, call.call_by_hand);
  }
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
