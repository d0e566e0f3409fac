// Values as text and back: addresses, decimal and hexadecimal numbers, masks and prefix lengths.
//
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

#include "fields.h"

namespace tarvex::shell {

void append_decimal(std::string &text, std::uint64_t number);
/// With "0x" ahead.
void append_hexadecimal(std::string &text, wide_number number);
std::string hexadecimal(wide_number number);

/// The shortest decimal that reads as the same number.
std::string real_text(float number);

/// A value, without mask and prefix length.
void append_value(std::string &text, const shown_field &field, wide_number value, bool raw);

/// What a key matches on: `10.0.0.0/8`, `5`, `5/0xf`; `*` where a mask is 0. True where the text is a plain number.
bool append_match(std::string &text, const shown_field &field, const std::uint8_t *record, bool raw);

/// Columns that the longest text of a field takes.
std::size_t longest_text(const shown_field &field, bool raw);

/// Where a value comes from. What a person types must fit the field's width, and be what the switch takes it for. What
/// was read from a switch may hold any bits that the key or the action data has room for.
enum class value_source : std::uint8_t { typed, read_back };

/// Throw usage_error, naming the field and its width, for text that is no value of it.
wide_number parse_value(const shown_field &field, std::string_view text, value_source from = value_source::typed);
void parse_match(const shown_field &field, std::string_view text, std::uint8_t *record, value_source from);

/// A number of up to `bits` bits, decimal or with 0x; `what` is told in the usage_error.
std::uint64_t parse_number(std::string_view text, std::string_view what, unsigned bits);

}  // namespace tarvex::shell
