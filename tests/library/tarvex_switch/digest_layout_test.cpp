// The digest of learned addresses, by hand.
//
// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <string>

#include "caller.h"
#include "tarvex_pd/tarvex_pd.h"

namespace tarvex::test {

namespace {

TEST(digest, of_learned_addresses)
{
  const std::uint8_t entry[P4_PD_TARVEX_SWITCH_MAC_LEARNING_DIGEST_ENTRY_SIZE] = {};
  EXPECT_EQ(p4_pd_tarvex_switch_get_digest_entry_size("macLearningDigest"), 14u);
  const struct {
    const char *name;
    std::ptrdiff_t at;
    std::uint32_t size;
  } fields[] = {
      {"ingMd_smacStation", 0, 4}, {"ingMd_ingL2Domain", 4, 2}, {"ingMd_ingL2Aintf", 6, 4}, {"ingMd_smacOui", 10, 4}};
  for (const auto &field : fields) {
    const std::string name = prefix() + "get_digest_entry_field";
    std::uint32_t size = 0;
    const auto *at = invoke<const std::uint8_t *>("get_digest_entry_field", &entry[0],
                                                  static_cast<const char *>("macLearningDigest"), field.name, &size);
    EXPECT_EQ(at - entry, field.at) << field.name;
    EXPECT_EQ(size, field.size) << field.name;
  }
}

}  // namespace

}  // namespace tarvex::test
