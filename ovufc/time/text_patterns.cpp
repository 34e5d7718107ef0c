#include "ovufc/time/text_patterns.h"

#include "ovufc/time/regular_expression.h"

namespace ov::time::patterns {

bool is_iso(const std::wstring& text) {
    static const regular_expression pattern(
        LR"(^\d{4}-\d{1,2}-\d{1,2}[ T]\d{1,2}:\d{1,2}:\d{1,2}(\.\d{1,3})?[Z]?$)");
    return pattern.matches(text);
}

bool is_iso_with_offset(const std::wstring& text) {
    static const regular_expression pattern(
        LR"(^\d{4}-\d{1,2}-\d{1,2}[ T]\d{1,2}:\d{1,2}:\d{1,2}(\.\d{1,3})?[+-]\d{1,2}:\d{1,2}$)");
    return pattern.matches(text);
}

bool is_rfc1123(const std::wstring& text) {
    static const regular_expression pattern(
        LR"(^((Sun|Mon|Tue|Wed|Thu[r]?|Fri|Sat), )?\d{1,2} )"
        LR"((Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|Sep|Oct|Nov|Dec) \d{4} )"
        LR"(\d{1,2}:\d{1,2}:\d{1,2}( (AM|PM|GMT))?$)");
    return pattern.matches(text);
}

bool is_us_date(const std::wstring& text) {
    static const regular_expression pattern(
        LR"(^\d{1,2}\/\d{1,2}\/\d{4} \d{1,2}:\d{1,2}:\d{1,2}( (AM|PM|GMT))?$)");
    return pattern.matches(text);
}

}  // namespace ov::time::patterns
