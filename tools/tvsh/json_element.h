// An element of a JSON list, held as a small tree whose memory serves the next element too.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tarvex::shell {

enum class json_kind : std::uint8_t { nothing, object, list, text, number, real, other };

class json_element;

/// A value within an element; one of kind nothing is not there. Valid until the element is cleared or grows.
class json_item {
 public:
  json_item() = default;
  json_item(const json_element &whole, std::uint32_t at) : whole_(&whole), at_(at) {}

  explicit operator bool() const { return whole_ != nullptr; }
  json_kind kind() const;
  std::string_view name() const;
  /// Of a text; of a real number as it is written.
  std::string_view text() const;
  std::uint64_t number() const;

  /// Of an object or list: calls visit(json_item) for each value.
  template <typename Visit>
  void each(Visit visit) const;

  /// The values of an object that have certain names, in the order of these. Throws usage_error for another name, and
  /// for one that stands there twice.
  template <std::size_t Count>
  std::array<json_item, Count> pick(const std::array<std::string_view, Count> &names) const
  {
    std::array<json_item, Count> found{};
    pick(names.data(), found.data(), Count);
    return found;
  }

 private:
  void pick(const std::string_view *names, json_item *found, std::size_t count) const;

  const json_element *whole_ = nullptr;
  std::uint32_t at_ = 0;
};

class json_element {
 public:
  static constexpr std::size_t most_values = 10000;
  static constexpr std::size_t most_bytes = 1 << 20;

  void clear();
  /// The name of the value that comes next.
  void key(std::string_view name);
  void add(json_kind kind, std::uint64_t number = 0, std::string_view text = {});
  /// Of an object or list.
  void open(json_kind kind);
  void close() { open_.pop_back(); }

  bool complete() const { return open_.empty(); }
  json_item root() const { return {*this, 0}; }

 private:
  friend class json_item;
  static constexpr std::uint32_t none = 0xffffffff;

  struct piece {
    std::uint32_t at = 0;
    std::uint32_t size = 0;
  };
  struct node {
    json_kind kind;
    piece name, text;
    std::uint64_t number;
    std::uint32_t first = none, last = none, next = none;
  };

  piece store(std::string_view text);
  std::string_view text_of(piece part) const { return std::string_view(bytes_).substr(part.at, part.size); }

  std::vector<node> nodes_;
  std::vector<std::uint32_t> open_;
  std::string bytes_;
  piece name_;
};

template <typename Visit>
void json_item::each(Visit visit) const
{
  for (std::uint32_t at = whole_->nodes_[at_].first; at != json_element::none; at = whole_->nodes_[at].next) {
    visit(json_item(*whole_, at));
  }
}

}  // namespace tarvex::shell
