#include "ovufc/time/text_patterns.h"

#include <cstddef>
#include <regex>

namespace ov::time::patterns {

namespace {

// "Thur, 04 Mar 2021 05:06:07 GMT": no text of any of the shapes is longer.
constexpr std::size_t longest_text_chars = 30;

bool matches(const std::wstring& text, const std::wregex& pattern) {
    return text.size() <= longest_text_chars && std::regex_match(text, pattern);
}

}  // namespace

bool is_iso(const std::wstring& text) {
    static const std::wregex pattern(
        LR"(^\d{4}-\d{1,2}-\d{1,2}[ T]\d{1,2}:\d{1,2}:\d{1,2}(\.\d{1,3})?[Z]?$)");
    return matches(text, pattern);
}

bool is_iso_with_offset(const std::wstring& text) {
    static const std::wregex pattern(
        LR"(^\d{4}-\d{1,2}-\d{1,2}[ T]\d{1,2}:\d{1,2}:\d{1,2}(\.\d{1,3})?[+-]\d{1,2}:\d{1,2}$)");
    return matches(text, pattern);
}

bool is_rfc1123(const std::wstring& text) {
    static const std::wregex pattern(
        LR"(^((Sun|Mon|Tue|Wed|Thu[r]?|Fri|Sat), )?\d{1,2} )"
        LR"((Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|Sep|Oct|Nov|Dec) \d{4} )"
        LR"(\d{1,2}:\d{1,2}:\d{1,2}( (AM|PM|GMT))?$)");
    return matches(text, pattern);
}

bool is_us_date(const std::wstring& text) {
    static const std::wregex pattern(LR"(^\d{1,2}\/\d{1,2}\/\d{4} \d{1,2}:\d{1,2}:\d{1,2}( (AM|PM|GMT))?$)");
    return matches(text, pattern);
}

}  // namespace ov::time::patterns
