#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "ovufc/json.h"

/// Reading JSON that may have any shape: what is not there or of another type is an empty answer, where the
/// library's own accessors throw. Pointers point into the value that was asked.
namespace ov {

/// The member `key`; null when `value` is not an object or has no such member.
[[nodiscard]] const json* find_member(const json& value, std::string_view key) noexcept;

/// The text of a string; null for anything else.
[[nodiscard]] const std::string* as_text(const json& value) noexcept;

/// A number as a signed 64-bit integer, fractions cut toward zero; none for anything else, and for a number
/// that 64 bits cannot hold. From 2^63 to 2^64 - 1 it is the negative integer of the same bits, as the
/// library's own conversion has it: a file time has no sign, and its reader turns it back.
[[nodiscard]] std::optional<std::int64_t> as_integer(const json& value) noexcept;

}  // namespace ov
