// Linked into dump, makes the switch tell of its tables wrongly, as FAULT names it.
//
// SPDX-License-Identifier: Apache-2.0
#include <dlfcn.h>

#include <cstdlib>
#include <cstring>
#include <string>

#include "tarvex_pd/dispatch.h"

namespace {

const std::string fault = std::getenv("FAULT") != nullptr ? std::getenv("FAULT") : "";

/// The library's own function, behind the one that stands here.
template <typename Function>
Function library(const char *name)
{
  return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

struct replacement {
  const char *fault;
  const char *text;
};

constexpr replacement values[] = {
    {"lost column", "((( 0x01,),('onMiss',()),),(0,True))"},
    {"other action", "((( 0x01,0x0a000001,),('setMcast',()),),(0,True))"},
    {"wide value", "((( 0x101,0x0a000001,),('onMiss',()),),(0,True))"},
    {"cut short", "((( 0x01,0x0a000001,),('onMiss',()),),(0,True"},
    {"word for a number", "((( 0x01,ten,),('onMiss',()),),(0,True))"},
    {"no key at all", "((),(0,True))"},
    {"unreadable", ""},
};

template <std::size_t Count>
const char *replaced(const replacement (&all)[Count])
{
  for (const replacement &each : all)
    if (fault == each.fault) return each.text;
  return nullptr;
}

}  // namespace

uint32_t p4_pd_tarvex_switch_entry_value(pd_sess_hdl_t sess_hdl, pd_dev_id_t dev_id, uint32_t tbl_hdl,
                                         pd_entry_hdl_t entry_hdl, pd_flag8_t read_from_hw, char *buf)
{
  const char *const text = replaced(values);
  if (text == nullptr) {
    return library<decltype(&p4_pd_tarvex_switch_entry_value)>("p4_pd_tarvex_switch_entry_value")(
        sess_hdl, dev_id, tbl_hdl, entry_hdl, read_from_hw, buf);
  }
  return static_cast<uint32_t>(std::strlen(std::strcpy(buf, text)));
}

int32_t p4_pd_tarvex_switch_cli_schema(uint32_t handle, char *buf)
{
  const auto length = library<decltype(&p4_pd_tarvex_switch_cli_schema)>("p4_pd_tarvex_switch_cli_schema")(handle, buf);
  return fault == "schema cut short" && length > 2 ? length - 1 : length;
}
