// SPDX-License-Identifier: Apache-2.0
#include "json_element.h"

#include <algorithm>
#include <vector>

#include "nearest.h"
#include "shell_error.h"

namespace tarvex::shell {

json_kind json_item::kind() const { return whole_ == nullptr ? json_kind::nothing : whole_->nodes_[at_].kind; }
std::string_view json_item::name() const { return whole_->text_of(whole_->nodes_[at_].name); }
std::string_view json_item::text() const { return whole_->text_of(whole_->nodes_[at_].text); }
std::uint64_t json_item::number() const { return whole_->nodes_[at_].number; }

void json_item::pick(const std::string_view *names, json_item *found, std::size_t count) const
{
  each([&](json_item item) {
    const std::size_t place = static_cast<std::size_t>(std::find(names, names + count, item.name()) - names);
    if (place == count) throw usage_error(no_such("name", item.name(), std::vector(names, names + count)));
    if (found[place]) throw usage_error("'" + std::string(item.name()) + "' stands there twice");
    found[place] = item;
  });
}

void json_element::clear()
{
  nodes_.clear();
  open_.clear();
  bytes_.clear();
  name_ = {};
}

json_element::piece json_element::store(std::string_view text)
{
  if (bytes_.size() + text.size() > most_bytes) throw usage_error("an element with too much text");
  const piece part{static_cast<std::uint32_t>(bytes_.size()), static_cast<std::uint32_t>(text.size())};
  bytes_ += text;
  return part;
}

void json_element::key(std::string_view name) { name_ = store(name); }

void json_element::add(json_kind kind, std::uint64_t number, std::string_view text)
{
  if (nodes_.size() == most_values) throw usage_error("an element with too many values");
  const auto at = static_cast<std::uint32_t>(nodes_.size());
  nodes_.push_back({kind, name_, store(text), number});
  name_ = {};
  if (open_.empty()) return;
  node &parent = nodes_[open_.back()];
  if (parent.last == none) {
    parent.first = at;
  } else {
    nodes_[parent.last].next = at;
  }
  parent.last = at;
}

void json_element::open(json_kind kind)
{
  add(kind);
  open_.push_back(static_cast<std::uint32_t>(nodes_.size() - 1));
}

}  // namespace tarvex::shell
