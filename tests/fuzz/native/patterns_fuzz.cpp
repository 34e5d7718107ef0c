// The four patterns against the standard library's reading of them.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <regex>
#include <string>

#include "ovufc/time/text_patterns.h"

namespace {

namespace patterns = ov::time::patterns;

void expect_same(bool ours, const std::wstring& text, const std::wregex& standard) {
    // Longer texts match nothing, and the standard library's matching goes as deep as the text is long.
    if (ours != (text.size() <= 63 && std::regex_match(text, standard))) {
        std::abort();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::wregex iso(
        LR"(^[0-9]{4}-[0-9]{1,2}-[0-9]{1,2}[ T][0-9]{1,2}:[0-9]{1,2}:[0-9]{1,2}(\.[0-9]{1,3})?[Z]?$)");
    static const std::wregex offset(
        LR"(^[0-9]{4}-[0-9]{1,2}-[0-9]{1,2}[ T][0-9]{1,2}:[0-9]{1,2}:[0-9]{1,2}(\.[0-9]{1,3})?[+-][0-9]{1,2}:[0-9]{1,2}$)");
    static const std::wregex rfc(
        LR"(^((Sun|Mon|Tue|Wed|Thu[r]?|Fri|Sat), )?[0-9]{1,2} (Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|Sep|Oct|Nov|Dec) [0-9]{4} [0-9]{1,2}:[0-9]{1,2}:[0-9]{1,2}( (AM|PM|GMT))?$)");
    static const std::wregex us(
        LR"(^[0-9]{1,2}\/[0-9]{1,2}\/[0-9]{4} [0-9]{1,2}:[0-9]{1,2}:[0-9]{1,2}( (AM|PM|GMT))?$)");
    const std::wstring text(data, data + size);
    expect_same(patterns::is_iso(text), text, iso);
    expect_same(patterns::is_iso_with_offset(text), text, offset);
    expect_same(patterns::is_rfc1123(text), text, rfc);
    expect_same(patterns::is_us_date(text), text, us);
    return 0;
}
