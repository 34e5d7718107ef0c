#include "service/reply.h"

#include <limits>
#include <utility>

#include "ovufc/json_bounded.h"
#include "ovufc/json_members.h"
#include "ovufc/protocol/service_calls.h"

namespace ov::service {

reply::reply(owned_json document, std::string_view error) noexcept
    : document_(std::move(document)), error_(error) {}

reply reply::failed(std::string_view error) {
    return {json(json::value_t::discarded), error};
}

reply reply::parse(const char* bytes, std::size_t size_bytes) {
    const std::string_view all(bytes, size_bytes);
    return {parse_bounded(all.substr(0, all.find('\0'))), {}};
}

const json* reply::data() const noexcept {
    return find_member(document_.value, protocol::fields::data);
}

std::optional<std::int64_t> reply::status() const noexcept {
    const json* const code = find_member(document_.value, protocol::fields::status_code);
    if (code == nullptr || !code->is_number()) {
        return std::nullopt;
    }
    return as_integer(*code).value_or(std::numeric_limits<std::int64_t>::max());
}

}  // namespace ov::service
