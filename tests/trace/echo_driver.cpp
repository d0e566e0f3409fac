// SPDX-License-Identifier: Apache-2.0
#include "echo_driver.h"

#include "driver_functions.h"

namespace tarvex::trace::test {

echo &last_call()
{
  static thread_local echo call;
  return call;
}

namespace {

template <auto Function, typename... Arguments>
driver::result_of<Function> driver_call(const Arguments &...arguments)
{
  last_call().function = driver::row_of<Function>.name;
  last_call().arguments = bytes_of(arguments...);
  return (driver::result_of<Function>)last_call().result;
}

}  // namespace
}  // namespace tarvex::trace::test

using tarvex::trace::test::driver_call;

#include "driver_definitions.inc"
