// Prints the schema of every handle that has one, a line each: the handle, a blank, the text.
//
// SPDX-License-Identifier: Apache-2.0
#include <array>
#include <cstdint>
#include <cstdio>

#include "caller.h"
#include "tarvex_pd/types.h"

int main()
{
  std::array<char, PD_SCHEMA_TEXT_SIZE> text;
  for (const std::uint32_t kind : {0x1000000U, 0x2000000U}) {
    for (std::uint32_t handle = kind; handle < kind + 0x1000; ++handle)
      if (tarvex::test::invoke("cli_schema", handle, text.data()) > 2) std::printf("%#x %s\n", handle, text.data());
  }
  return 0;
}
