// The bounded parser: what it takes can be written and read again, and taken apart.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>

#include "ovufc/json_bounded.h"
#include "ovufc/owned_json.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    ov::owned_json read = ov::parse_bounded(text);
    bool throws = false;
    try {
        const ov::owned_json same = ov::parse_bounded_or_throw(text);
        throws = !read.value.is_discarded() && same.value != read.value;
    } catch (const ov::json::exception&) {
        throws = !read.value.is_discarded();
    }
    if (throws) {
        std::abort();  // the two disagree
    }
    if (!read.value.is_discarded()) {
        const std::string written = read.value.dump();
        const ov::owned_json again = ov::parse_bounded(written);
        if (again.value != read.value) {
            std::abort();
        }
    }
    return 0;
}
