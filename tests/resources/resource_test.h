// One device of the stand-in switch behind the library, and the way to the functions of a catalogue row.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <call_table.h>
#include <gtest/gtest.h>
#include <tarvex_pd/tarvex_pd.h>
#include <tarvex_platform/driver.h>
#include <tarvex_standin/standin.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace tarvex::resource_tests {

constexpr pd_sess_hdl_t session = 4;
constexpr std::uint32_t device = 2;
/// With a pipe, and with bits that never reach a driver.
constexpr pd_dev_tgt_t target = pd_dev_tgt_t{0xabcd} << 48 | pd_dev_tgt_t{1} << 32 | device;
constexpr pd_status_t refused = 77;

inline void ok(pd_status_t status) { EXPECT_EQ(status, pd_status_t{BF_SUCCESS}); }

class ResourceTest : public testing::Test {
 protected:
  static void SetUpTestSuite()
  {
    static const pd_status_t started = p4_pd_tarvex_switch_init();  // once in the process
    ok(started);
  }
  void SetUp() override { ok(standin_device_add(device)); }
  void TearDown() override
  {
    standin_refuse_call(0, 0);
    standin_fail_calloc(0);
    EXPECT_EQ(standin_live_blocks(), 0u);
    ok(standin_device_remove(device));
  }
};

inline const void *row_of(const calls::exported_function &each, const calls::resource_info &) { return each.resource; }
inline const void *row_of(const calls::exported_function &each, const calls::hash_info &) { return each.hash; }

/// The function that does for a row what `sample` does for its own.
template <class Function, class Row>
Function *like(Function *sample, const Row &row)
{
  const auto is_sample = [&](const auto &each) { return each.function == reinterpret_cast<calls::address>(sample); };
  const auto family = std::ranges::find_if(calls::functions, is_sample)->family;
  for (const auto &each : calls::functions)
    if (each.family == family && row_of(each, row) == &row) return reinterpret_cast<Function *>(each.function);
  throw std::runtime_error(std::string("no such function of ") + row.name);
}

inline std::vector<const calls::resource_info *> resources_of(calls::resource_kind kind)
{
  std::vector<const calls::resource_info *> found;
  for (const auto &each : calls::resources)
    if (each.kind == kind) found.push_back(&each);
  return found;
}

/// Runs a call with each of its driver calls refused in turn. Gives the number of them.
template <class Call, class Check>
std::uint32_t refuse_in_turn(Call call, Check check)
{
  for (std::uint32_t nth = 1;; ++nth) {
    standin_refuse_call(nth, refused);
    const pd_status_t status = call();
    standin_refuse_call(0, 0);
    if (status == BF_SUCCESS) return nth - 1;
    SCOPED_TRACE("driver call " + std::to_string(nth));
    check(status);
  }
}

/// Callback of the synchronisations.
inline void note_handle(std::uint32_t, std::uint32_t handle, void *cookie)
{
  *static_cast<std::uint32_t *>(cookie) = handle;
}

}  // namespace tarvex::resource_tests
