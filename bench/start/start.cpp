// How long the library takes to be loaded with all its relocations bound. Prints the median in milliseconds.
//
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

#include <dlfcn.h>

#include "tarvex_standin/standin.h"

int main(int argc, char **argv)
{
  if (argc != 2) {
    std::fputs("usage: start LIBRARY\n", stderr);
    return 2;
  }
  // The driver has to be there first; linked, it is.
  standin_reset();
  std::vector<double> times;
  for (int round = 0; round < 101; ++round) {
    const auto begin = std::chrono::steady_clock::now();
    void *const library = ::dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
    const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - begin;
    if (library == nullptr) {
      std::fprintf(stderr, "start: %s\n", ::dlerror());
      return 1;
    }
    times.push_back(took.count());
    ::dlclose(library);
  }
  std::nth_element(times.begin(), times.begin() + 50, times.end());
  std::printf("%.3f\n", times[50]);
  return 0;
}
