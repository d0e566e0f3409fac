// Starts the library over the recorder, then runs the tests.
//
// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "caller.h"
#include "tarvex_pd/types.h"

int main(int argc, char **argv)
{
  ::testing::InitGoogleTest(&argc, argv);
  if (tarvex::test::invoke("init") != BF_SUCCESS) return 1;
  return RUN_ALL_TESTS();
}
