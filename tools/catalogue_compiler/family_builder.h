// Puts one exported function together from slots: each slot of a family is an argument of the exported function where
// the row has it, and a constant in the call where it has not.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "families.h"

namespace catalogue {

struct slot {
  std::string_view kind;           // empty: the constant alone
  std::string_view constant = {};  // what the call passes without an argument
  std::string_view doc = {};       // departs from the kind's own; of a constant, its parameter in a plain prototype
  std::string_view name = {};      // departs from the kind's own
};

/// The slot's argument where `present`, else the constant.
inline slot when(bool present, std::string_view kind, std::string_view constant)
{
  return present ? slot{kind} : slot{{}, constant};
}

class function_builder {
 public:
  /// `operation` is what stands behind the table's name, or the whole name behind the prefix without a table.
  function_builder(std::string_view family, const table &t, const std::string &operation);
  function_builder(std::string_view family, const model &m, const profile &p, const std::string &operation);
  function_builder(std::string_view family, const resource &r, const std::string &operation);
  function_builder(std::string_view family, const hash_calculation &h, const std::string &name);
  function_builder(std::string_view family, const digest &d, const std::string &operation);
  function_builder(std::string_view family, const value_set &v, const std::string &operation);
  function_builder(std::string_view family, std::string name);

  function_builder &use(const model &m, const action_use &u);
  function_builder &action_row(const action &a);
  /// A further template argument of the callee.
  function_builder &with(std::string_view constant);
  /// Another descriptor for calls_with_row.
  function_builder &row(std::string descriptor);
  function_builder &brief(std::string text);
  function_builder &details(std::string text);
  function_builder &result(result_kind kind, std::string returns);
  /// Arguments, and the call of `callee<descriptors>` with them.
  function_builder &calls(std::string_view callee, std::initializer_list<slot> slots);
  /// Arguments, and the call of `callee` with the descriptor ahead of them: a family that takes its rows at run time.
  function_builder &calls_with_row(std::string_view callee, std::initializer_list<slot> slots);
  /// Arguments, and the call of the function `plain` of tarvex::pd, which a prototype of its own declares.
  function_builder &forwards_to(const std::string &plain, std::initializer_list<slot> slots);
  /// Arguments alone, ahead of `gives`.
  function_builder &takes(std::initializer_list<slot> slots);
  /// Tools and start-up call it: built for size.
  function_builder &seldom();
  /// The expression that the function returns.
  function_builder &gives(std::string expression);

  operator exported_function() const { return made_; }

 private:
  argument make(const slot &s) const;
  /// Adds the slots' arguments, and gives what the call passes for all slots.
  std::string pass(std::initializer_list<slot> slots);

  exported_function made_;
  std::string descriptors_;
};

}  // namespace catalogue
