// Lists of input fields, by hand.
//
// SPDX-License-Identifier: Apache-2.0
#include "hash_functions.h"

namespace tarvex::test {

namespace {

TEST(hash, lists_by_hand)
{
  struct example {
    std::size_t calc;
    attributes attrs;
    std::uint32_t list;
    bool by_name = false;
  };
  const example examples[] = {
      {3, {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}}, 0x2100003c},
      {3, {{0, 0, 1}, {1, 0, 1}, {2, 0, 0}}, 0x2100003d},
      {3, {{2, 0, 0}}, 0x2100003d},
      {3, {{0, 0, 0}, {1, 0, 1}, {2, 0, 1}}, 0x21000040},
      {7, {{0, 0, 0}, {4, 0, 1}}, 0x21000074},
      {3, {{0, 1, 0}, {2, 0, 0}}, 0x2100003d},               // of a type that selects nothing
      {3, {{0, 0, beyond_32_bits}, {2, 0, 0}}, 0x2100003d},  // all 64 bits count
      {3, {{2, 0, 1}, {2, 0, 0}, {2, 0, 1}}, 0x2100003d},    // named thrice
      {3, {{32, 0, 0}, {0xffffffe2, 0, 1}}, 0x21000040},     // fields count modulo 32
      {1, {{5, 0, 0}, {2, 0, 0}, {0, 0, 0}, {1, 0, 0}}, 0x2100000c, true},
      {1, {{1, 9, beyond_32_bits}}, 0x2100000d, true},  // by name the low 32 bits count, and no type
  };
  for (const example &example : examples) {
    const hash_functions hash{calls::hashes[example.calc], example.by_name};
    SCOPED_TRACE(&example - examples);
    hash_unit unit{hash.calc.first_input};
    unit.attach();
    EXPECT_EQ(hash.set(example.attrs), 0u);
    expect_calls(hash, {current_list, {"input_set", example.list}});
  }
}

}  // namespace

}  // namespace tarvex::test
