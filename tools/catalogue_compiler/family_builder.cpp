// SPDX-License-Identifier: Apache-2.0
#include "family_builder.h"

#include <algorithm>
#include <utility>

#include "argument_kinds.h"
#include "generated_file.h"
#include "spelling.h"

namespace catalogue {

namespace {

std::string replaced(std::string_view text, std::string_view what, const std::string &by)
{
  std::string made(text);
  if (const auto at = made.find(what); at != std::string::npos) made.replace(at, what.size(), by);
  return made;
}

}  // namespace

function_builder::function_builder(std::string_view family, const table &t, const std::string &operation)
{
  made_.name = export_prefix + t.name + "_" + operation;
  made_.family = family_named(family);
  made_.of_table = &t;
  descriptors_ = table_descriptor(t);
  made_.returns = "0, or the driver's status";
}

function_builder::function_builder(std::string_view family, const model &m, const profile &p,
                                   const std::string &operation)
    : function_builder(family, *m.find_table(p.table), operation)
{
  made_.name = export_prefix + p.name + "_" + operation;
  made_.of_profile = &p;
  descriptors_ = profile_descriptor(p.name);
}

function_builder::function_builder(std::string_view family, const resource &r, const std::string &operation)
    : function_builder(family, export_prefix + operation + "_" + r.name)
{
  made_.of_resource = &r;
  descriptors_ = resource_descriptor(r);
  made_.returns = "0, or the driver's status";
}

function_builder::function_builder(std::string_view family, const hash_calculation &h, const std::string &name)
    : function_builder(family, name)
{
  made_.of_hash = &h;
  descriptors_ = hash_descriptor(h);
}

function_builder::function_builder(std::string_view family, const digest &d, const std::string &operation)
    : function_builder(family, export_prefix + d.name + "_" + operation)
{
  made_.of_digest = &d;
  descriptors_ = hex(d.handle);
  made_.returns = "0, or the driver's status";
}

function_builder::function_builder(std::string_view family, const value_set &v, const std::string &operation)
    : function_builder(family, export_prefix + "pvs_" + v.name + "_" + operation)
{
  made_.of_value_set = &v;
  descriptors_ = hex(v.handle);
  made_.returns = "0, or the driver's status";
}

function_builder::function_builder(std::string_view family, std::string name)
{
  made_.name = std::move(name);
  made_.family = family_named(family);
}

function_builder &function_builder::use(const model &m, const action_use &u)
{
  made_.use = &u;
  made_.of_action = &m.actions[u.action];
  descriptors_ += ", " + use_descriptor(made_.of_profile ? made_.of_profile->name : made_.of_table->name, u);
  return *this;
}

function_builder &function_builder::with(std::string_view constant)
{
  descriptors_ += ", " + std::string(constant);
  return *this;
}

function_builder &function_builder::action_row(const action &a)
{
  made_.of_action = &a;
  descriptors_ = action_descriptor(a);
  return *this;
}

function_builder &function_builder::row(std::string descriptor)
{
  descriptors_ = std::move(descriptor);
  return *this;
}

function_builder &function_builder::gives(std::string expression)
{
  made_.call = std::move(expression);
  return *this;
}

function_builder &function_builder::seldom()
{
  made_.seldom = true;
  return *this;
}

function_builder &function_builder::brief(std::string text)
{
  made_.brief = std::move(text);
  return *this;
}

function_builder &function_builder::details(std::string text)
{
  made_.details = std::move(text);
  return *this;
}

function_builder &function_builder::result(result_kind kind, std::string returns)
{
  made_.result = kind;
  made_.returns = std::move(returns);
  return *this;
}

argument function_builder::make(const slot &s) const
{
  const argument_kind_row &kind = argument_kind(s.kind);
  std::string type(kind.type);
  if (made_.of_table != nullptr) type = replaced(type, "{key}", match_spec_type(*made_.of_table));
  if (made_.of_action != nullptr) type = replaced(type, "{params}", action_spec_type(*made_.of_action));
  argument a{kind.kind, type, std::string(s.name.empty() ? kind.name : s.name),
             replaced(s.doc.empty() ? kind.doc : s.doc, "{PREFIX}", macro_prefix())};
  // The same name again: the later ones are numbered.
  const auto same = [&](const argument &other) { return other.name == a.name || other.name.starts_with(a.name + "_"); };
  if (const auto others = std::count_if(made_.arguments.begin(), made_.arguments.end(), same); others > 0)
    a.name += "_" + std::to_string(others + 1);
  return a;
}

function_builder &function_builder::forwards_to(const std::string &plain, std::initializer_list<slot> slots)
{
  made_.call = "tarvex::pd::" + plain + "(" + pass(slots) + ")";
  std::string parameters;
  auto next = made_.arguments.begin();
  for (const slot &s : slots)
    parameters += (parameters.empty() ? "" : ", ") + (s.kind.empty() ? std::string(s.doc) : next++->declaration());
  made_.plain = std::string(c_result(made_.result)) + plain + "(" + parameters + ")";
  return *this;
}

function_builder &function_builder::takes(std::initializer_list<slot> slots)
{
  for (const slot &s : slots)
    if (!s.kind.empty()) made_.arguments.push_back(make(s));
  return *this;
}

std::string function_builder::pass(std::initializer_list<slot> slots)
{
  std::string passed;
  for (const slot &s : slots) {
    if (s.kind.empty() && s.constant.empty()) continue;
    if (!passed.empty()) passed += ", ";
    if (s.kind.empty()) {
      passed += s.constant;
      continue;
    }
    made_.arguments.push_back(make(s));
    passed += made_.arguments.back().name;
  }
  return passed;
}

function_builder &function_builder::calls(std::string_view callee, std::initializer_list<slot> slots)
{
  made_.call = std::string(callee) + "<" + descriptors_ + ">(" + pass(slots) + ")";
  return *this;
}

function_builder &function_builder::calls_with_row(std::string_view callee, std::initializer_list<slot> slots)
{
  made_.call = std::string(callee) + "(" + descriptors_ + ", " + pass(slots) + ")";
  return *this;
}

}  // namespace catalogue
