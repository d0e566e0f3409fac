// Commands with several verbs, each a function of its own.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>
#include <string_view>

#include "catalogue.h"
#include "invocation.h"
#include "nearest.h"
#include "shell_error.h"

namespace tarvex::shell {

/// A verb on what the words ahead of it name.
template <typename Subject>
struct verb {
  std::string_view name;
  void (*run)(const invocation &, const Subject &);
};

using profile_verb = verb<profile_info>;
using table_verb = verb<table_info>;
using resource_verb = verb<resource_info>;
using hash_verb = verb<hash_info>;

template <typename Subject>
exit_code run_verb(std::span<const verb<Subject>> verbs, const invocation &call, std::string_view name,
                   const Subject &subject)
{
  for (const verb<Subject> &each : verbs) {
    if (each.name != name) continue;
    each.run(call, subject);
    return exit_code::ok;
  }
  throw usage_error(no_such("verb", name, names_of(verbs)));
}

/// A verb that needs nothing ahead of it.
struct plain_verb {
  std::string_view name;
  void (*run)(const invocation &);
};

inline exit_code run_verb(std::span<const plain_verb> verbs, const invocation &call, std::string_view name)
{
  for (const plain_verb &each : verbs) {
    if (each.name != name) continue;
    each.run(call);
    return exit_code::ok;
  }
  throw usage_error(no_such("verb", name, names_of(verbs)));
}

}  // namespace tarvex::shell
