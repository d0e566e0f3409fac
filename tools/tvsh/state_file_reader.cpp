// Reads states from JSON: the parser's events make elements, one at a time, and elements make the parts of a state.
//
// SPDX-License-Identifier: Apache-2.0
#include <array>
#include <iterator>
#include <nlohmann/json.hpp>

#include "json_element.h"
#include "plain_file.h"
#include "shell_error.h"
#include "state_element_reader.h"
#include "state_file.h"

namespace tarvex::shell {

namespace {

/// The bytes of a file, from one end to the other; counts its lines.
class file_bytes {
 public:
  file_bytes(const std::string &name, file_place &at, const reading_progress &progress)
      : file_(name), at_(at), progress_(progress)
  {
    next_block();
  }

  bool at_end() const { return next_ == end_; }
  char current() const { return *next_; }
  void advance()
  {
    if (*next_ == '\n') ++at_.line;
    if (++next_ == end_) next_block();
  }

 private:
  void next_block()
  {
    const std::size_t count = file_.read(block_.data(), block_.size());
    next_ = block_.data();
    end_ = next_ + count;
    done_ += count;
    if (progress_) progress_(done_, file_.size());
  }

  plain_file file_;
  file_place &at_;
  const reading_progress &progress_;
  std::array<char, 1 << 16> block_;
  const char *next_ = nullptr;
  const char *end_ = nullptr;
  std::uint64_t done_ = 0;
};

/// The bytes as the parser goes over them; an iterator without a file is the end.
class byte_iterator {
 public:
  using iterator_category = std::input_iterator_tag;
  using value_type = char;
  using difference_type = std::ptrdiff_t;
  using pointer = const char *;
  using reference = char;

  byte_iterator() = default;
  explicit byte_iterator(file_bytes &bytes) : bytes_(&bytes) {}

  char operator*() const { return bytes_->current(); }
  byte_iterator &operator++()
  {
    bytes_->advance();
    return *this;
  }
  bool operator==(const byte_iterator &other) const { return ended() == other.ended(); }

 private:
  bool ended() const { return bytes_ == nullptr || bytes_->at_end(); }

  file_bytes *bytes_ = nullptr;
};

/// Takes the parser's events. Ahead of everything stands the version; sections hold lists by name, and lists elements.
class state_events : public nlohmann::json_sax<nlohmann::json> {
 public:
  state_events(state_element_reader &elements, file_place &at) : elements_(elements), at_(at) {}

  bool null() override { return take(json_kind::other); }
  bool boolean(bool) override { return take(json_kind::other); }
  bool number_integer(number_integer_t) override { return take(json_kind::other); }  // below 0
  bool number_unsigned(number_unsigned_t value) override { return take(json_kind::number, value); }
  bool number_float(number_float_t, const string_t &text) override { return take(json_kind::real, 0, text); }
  bool string(string_t &value) override { return take(json_kind::text, 0, value); }
  bool binary(binary_t &) override { return take(json_kind::other); }

  bool start_object(std::size_t) override
  {
    if (depth_ >= element_depth - 1) {
      if (depth_ == element_depth - 1) element_.clear();
      guarded([&] { element_.open(json_kind::object); });
    } else if (depth_ == 2) {
      refuse("a list of elements is wanted here");
    } else if (depth_ == 1 && !version_known_) {
      refuse_version();
    }
    ++depth_;
    return true;
  }
  bool end_object() override
  {
    if (--depth_ >= element_depth) {
      element_.close();
    } else if (depth_ == element_depth - 1) {
      element_.close();
      guarded([&] { elements_.take(element_.root()); });
    }
    if (depth_ == 1) at_.section.clear();
    if (depth_ == 0 && !version_known_) refuse_version();
    return true;
  }
  bool start_array(std::size_t) override
  {
    if (depth_ >= element_depth) {
      guarded([&] { element_.open(json_kind::list); });
    } else if (depth_ != 2) {
      refuse("a list was not expected here");
    }
    ++depth_;
    return true;
  }
  bool end_array() override
  {
    if (--depth_ >= element_depth) element_.close();
    if (depth_ == 2) at_.owner.clear();
    return true;
  }
  bool key(string_t &name) override
  {
    if (depth_ >= element_depth) {
      guarded([&] { element_.key(name); });
    } else if (depth_ == 1) {
      at_.section = name;
      if (name != version_name) guarded([&] { elements_.section(name); });
    } else if (depth_ == 2) {
      at_.owner = name;
      guarded([&] { elements_.owner(name); });
    }
    return true;
  }

  bool parse_error(std::size_t, const std::string &, const nlohmann::detail::exception &error) override
  {
    // "[...] parse error at line 1, column 2: what", of which the line is told already
    std::string_view what = error.what();
    if (const auto column = what.find("column"); column != std::string_view::npos) what.remove_prefix(column);
    refuse("no JSON: " + std::string(what));
  }

 private:
  static constexpr int element_depth = 4;  // within the whole, a section, a list and the element
  static constexpr std::string_view version_name = "schema_version";

  [[noreturn]] void refuse(const std::string &what) const { throw file_error(at_.text() + what); }
  [[noreturn]] void refuse_version() const
  {
    refuse("no saved state: ahead of everything \"schema_version\" must stand, as in a file that 'save' wrote");
  }

  /// Errors in an element, with their place.
  template <typename Action>
  void guarded(Action action) const
  {
    try {
      action();
    } catch (const usage_error &error) {
      refuse(error.what());
    }
  }

  bool take(json_kind kind, std::uint64_t number = 0, std::string_view text = {})
  {
    if (depth_ >= element_depth) {
      guarded([&] { element_.add(kind, number, text); });
    } else if (depth_ == 1 && at_.section == version_name) {
      if (kind != json_kind::number || number == 0) refuse("the version is a number from 1 on");
      if (number > state_file_version) {
        refuse("a file of version " + std::to_string(number) + "; this tvsh reads files up to version " +
               std::to_string(state_file_version) + ": a newer one is needed");
      }
      version_known_ = true;
    } else if (depth_ == 0 || !version_known_) {
      refuse_version();
    } else {
      refuse(depth_ == 3 ? "an element in braces is wanted here" : "a value was not expected here");
    }
    return true;
  }

  state_element_reader &elements_;
  file_place &at_;
  json_element element_;
  int depth_ = 0;
  bool version_known_ = false;
};

}  // namespace

std::string file_place::text() const
{
  std::string where = file + ':' + std::to_string(line) + ": ";
  if (!section.empty()) where += section;
  if (!owner.empty()) where += " of " + owner;
  if (!section.empty()) where += ": ";
  return where;
}

void read_state_file(const std::string &name, state_visitor &to, file_place &at, const reading_progress &progress)
{
  at = {};
  at.file = name;
  state_element_reader elements(to);
  state_events events(elements, at);
  file_bytes bytes(name, at, progress);
  nlohmann::json::sax_parse(byte_iterator(bytes), byte_iterator(), &events);
}

}  // namespace tarvex::shell
