// Starts the library over the recorder, then runs the tests.
//
// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "tarvex_pd/tarvex_pd.h"

int main(int argc, char **argv)
{
  ::testing::InitGoogleTest(&argc, argv);
  if (p4_pd_tarvex_switch_init() != BF_SUCCESS) return 1;
  return RUN_ALL_TESTS();
}
