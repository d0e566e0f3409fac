// Any function of the library over a driver that answers nonsense, the decoding of placement data included.
//
// SPDX-License-Identifier: Apache-2.0
#include "library_call.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
  using namespace tarvex;
  fuzz::byte_source input({data, size});
  const auto &function = fuzz::pick_function(
      input, [](const calls::exported_function &each) { return each.family != calls::family_id::lifecycle; });
  const auto answers = input.take(input.in_range<std::size_t>(0, 400));
  fuzz::library_call(function, input).make(answers);
  return 0;
}
