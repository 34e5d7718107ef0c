#pragma once

#include <cstdint>
#include <string>

#include "ovufc/exception.h"
#include "ovufc/time/datetime.h"

namespace ov::test {

[[nodiscard]] inline std::uint64_t iso_value(const std::wstring& text) {
    time::datetime_rfc1123 time;
    time.datetime::parse(text);
    return time.value;
}

[[nodiscard]] inline std::uint64_t rfc1123_value(const std::wstring& text) {
    time::datetime_rfc1123 time;
    time.parse(text);
    return time.value;
}

[[nodiscard]] inline std::wstring utc_iso(std::uint64_t value) {
    return time::datetime_rfc1123(value).datetime::format(false, false);
}

/// The message with which `read` refuses; "accepted" if it does not.
template <class Read>
[[nodiscard]] std::string refusal(Read&& read) {
    try {
        read();
        return "accepted";
    } catch (const exception& error) {
        return error.code == ERROR_INVALID_PARAMETER ? error.what() : "with another code";
    }
}

[[nodiscard]] inline std::string refusal_of_iso(const std::wstring& text) {
    return refusal([&] { (void)iso_value(text); });
}

[[nodiscard]] inline std::string refusal_of_rfc1123(const std::wstring& text) {
    return refusal([&] { (void)rfc1123_value(text); });
}

}  // namespace ov::test
