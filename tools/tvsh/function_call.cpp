// SPDX-License-Identifier: Apache-2.0
#include "function_call.h"

#include "status_text.h"

namespace tarvex::shell {

using enum argument_kind;

function_call::function_call(const exported_function &function, const target &where) : calls::raw_call(function)
{
  give(sess_hdl, where.session).give(dev_tgt, where.dev_tgt()).give(dev_id, where.device);
  give(whole_dev_id, where.device);
}

void function_call::must(const std::string &what) { require_success(status(), what); }

}  // namespace tarvex::shell
