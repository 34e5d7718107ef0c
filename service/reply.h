#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "ovufc/owned_json.h"

namespace ov::service {

/// What came back of one exchange, of any shape: a JSON text of the driver, or the error that took its place.
///
/// No accessor throws: what is not there is an empty answer. Pointers live as long as the reply.
class reply {
  public:
    /// The text of the one error that the envelope raises itself.
    static constexpr std::string_view transact_failed = "transact_drvport return unexpected result";

    /// The reply of a failed exchange.
    [[nodiscard]] static reply failed(std::string_view error);
    /// The reply in the first `size_bytes` of `bytes`, which end at the first NUL. Only std::bad_alloc gets
    /// out.
    [[nodiscard]] static reply parse(const char* bytes, std::size_t size_bytes);

    /// Why there is no reply; empty when the driver answered, whatever it wrote.
    [[nodiscard]] std::string_view error() const noexcept { return error_; }
    /// The member "data", of any type; null when there is none.
    [[nodiscard]] const json* data() const noexcept;
    /// The member "statusCode" as an integer; none when it is missing or no number. A number that no signed
    /// 64-bit integer holds is a status like any other that nobody knows: it reads as the largest.
    [[nodiscard]] std::optional<std::int64_t> status() const noexcept;

  private:
    reply(owned_json document, std::string_view error) noexcept;

    owned_json document_;
    std::string_view error_;
};

}  // namespace ov::service
