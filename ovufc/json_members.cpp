#include "ovufc/json_members.h"

namespace ov {

const json* find_member(const json& value, std::string_view key) noexcept {
    const auto* const members = value.get_ptr<const json::object_t*>();
    if (members == nullptr) {
        return nullptr;
    }
    const auto found = members->find(key);
    return found == members->end() ? nullptr : &found->second;
}

const std::string* as_text(const json& value) noexcept {
    return value.get_ptr<const std::string*>();
}

std::optional<std::int64_t> as_integer(const json& value) noexcept {
    if (const auto* number = value.get_ptr<const json::number_unsigned_t*>()) {
        return static_cast<std::int64_t>(*number);
    }
    if (const auto* number = value.get_ptr<const json::number_integer_t*>()) {
        return *number;
    }
    if (const auto* number = value.get_ptr<const json::number_float_t*>()) {
        constexpr double beyond = 0x1p63;
        if (*number >= -beyond && *number < beyond) {
            return static_cast<std::int64_t>(*number);
        }
    }
    return std::nullopt;
}

}  // namespace ov
