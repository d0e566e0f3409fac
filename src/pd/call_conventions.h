// How targets and narrow arguments travel to the driver, and how a broken reply stops a call.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "pipeline_names.h"
#include "tarvex_pd/types.h"

/// The C library's end of a failed assertion. <assert.h> hides it from release builds, in which ours stand too.
extern "C" [[noreturn]] void __assert_fail(const char *assertion, const char *file, unsigned line,
                                           const char *function) noexcept;

namespace tarvex::pd {

/// Device and pipe; the top 16 bits carry nothing and never reach the driver.
[[gnu::always_inline]] constexpr pd_dev_tgt_t whole_target(pd_dev_tgt_t dev_tgt) { return dev_tgt & 0xffff'ffff'ffffu; }

/// The device without its pipe.
[[gnu::always_inline]] constexpr std::uint32_t device_of(pd_dev_tgt_t dev_tgt)
{
  return static_cast<std::uint32_t>(dev_tgt);
}

/// The low 8 bits of a device, a flag or a target, zero-extended. Callers may leave anything above them in the
/// register, and compilers disagree on who clears it, so the library's own parameters are 32 bits wide and cut here.
[[gnu::always_inline]] constexpr std::uint32_t low_byte(std::uint64_t v) { return v & 0xffu; }

/// A reply of the driver that contradicts the pipeline stops the process, in release builds too. `function` is the
/// exported function that was called.
[[noreturn, gnu::cold, gnu::noinline]] inline void stop_on_broken_reply(const char *function)
{
  __assert_fail("((void *)0)", pd_source, __LINE__, function);
}

}  // namespace tarvex::pd
