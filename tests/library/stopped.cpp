// Stands in for the C library's end of a failed assertion.
//
// SPDX-License-Identifier: Apache-2.0
#include "stopped.h"

#include <cassert>
#include <csetjmp>
#include <cstdio>
#include <cstdlib>

#include "caller.h"

namespace tarvex::test {

namespace {

std::jmp_buf back;
bool awaited = false;
stop last;

}  // namespace

std::optional<stop> stopped(const std::function<void()> &run)
{
  if (setjmp(back) == 0) {
    awaited = true;
    run();
    awaited = false;
    return std::nullopt;
  }
  awaited = false;
  return last;
}

}  // namespace tarvex::test

extern "C" void __assert_fail(const char *assertion, const char *file, unsigned line, const char *function) noexcept
{
  using namespace tarvex::test;
  if (!awaited) {
    std::fprintf(stderr, "%s:%u: %s: assertion %s failed\n", file, line, function, assertion);
    std::abort();
  }
  call::under_way = false;  // it does not return
  last = {assertion, file, function};
  std::longjmp(back, 1);
}
