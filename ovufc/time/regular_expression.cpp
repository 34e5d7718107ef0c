#include "ovufc/time/regular_expression.h"

#include <bit>

namespace ov::time {

namespace {

wchar_t take(std::wstring_view& rest) noexcept {
    const wchar_t first = rest.front();
    rest.remove_prefix(1);
    return first;
}

bool take_if(std::wstring_view& rest, wchar_t wanted) noexcept {
    const bool is_next = !rest.empty() && rest.front() == wanted;
    if (is_next) {
        rest.remove_prefix(1);
    }
    return is_next;
}

unsigned take_number(std::wstring_view& rest) noexcept {
    unsigned number = 0;
    while (rest.front() >= L'0' && rest.front() <= L'9') {
        number = number * 10 + static_cast<unsigned>(take(rest) - L'0');
    }
    return number;
}

std::wstring take_characters(std::wstring_view& rest) {
    const wchar_t first = take(rest);
    if (first == L'\\') {
        const wchar_t escaped = take(rest);
        return escaped == L'd' ? std::wstring(L"0123456789") : std::wstring(1, escaped);
    }
    if (first == L'[') {
        const std::size_t length = rest.find(L']');
        std::wstring characters(rest.substr(0, length));
        rest.remove_prefix(length + 1);
        return characters;
    }
    return {first};
}

}  // namespace

regular_expression::regular_expression(std::wstring_view pattern) {
    take_if(pattern, L'^');
    if (!pattern.empty() && pattern.back() == L'$') {
        pattern.remove_suffix(1);
    }
    alternatives_ = read_alternatives(pattern);
}

// Up to the end of the pattern or the bracket that closes the group.
std::vector<regular_expression::sequence> regular_expression::read_alternatives(std::wstring_view& rest) {
    std::vector<sequence> alternatives(1);
    while (!rest.empty() && rest.front() != L')') {
        if (take_if(rest, L'|')) {
            alternatives.emplace_back();
        } else {
            alternatives.back().push_back(read_piece(rest));
        }
    }
    return alternatives;
}

regular_expression::piece regular_expression::read_piece(std::wstring_view& rest) {
    piece result;
    if (take_if(rest, L'(')) {
        result.alternatives = read_alternatives(rest);
        take_if(rest, L')');
    } else {
        result.characters = take_characters(rest);
    }
    if (take_if(rest, L'?')) {
        result.fewest = 0;
    } else if (take_if(rest, L'{')) {
        result.fewest = result.most = take_number(rest);
        if (take_if(rest, L',')) {
            result.most = take_number(rest);
        }
        take_if(rest, L'}');
    }
    return result;
}

bool regular_expression::matches(std::wstring_view text) const noexcept {
    constexpr places start = 1;
    return text.size() <= longest_text_chars &&
           (after_any(alternatives_, text, start) >> text.size() & 1) != 0;
}

regular_expression::places regular_expression::after_any(const std::vector<sequence>& alternatives,
                                                         std::wstring_view text, places from) noexcept {
    places reached = 0;
    for (const sequence& pieces : alternatives) {
        places here = from;
        for (const piece& next : pieces) {
            here = after_all(next, text, here);
        }
        reached |= here;
    }
    return reached;
}

regular_expression::places regular_expression::after_one(const piece& piece, std::wstring_view text,
                                                         places from) noexcept {
    if (!piece.alternatives.empty()) {
        return after_any(piece.alternatives, text, from);
    }
    places reached = 0;
    for (places left = from; left != 0; left &= left - 1) {
        const auto place = static_cast<std::size_t>(std::countr_zero(left));
        if (place < text.size() && piece.characters.find(text[place]) != std::wstring::npos) {
            reached |= places{2} << place;
        }
    }
    return reached;
}

// As often as it may be repeated.
regular_expression::places regular_expression::after_all(const piece& piece, std::wstring_view text,
                                                         places from) noexcept {
    places reached = 0;
    for (unsigned times = 0; times < piece.most; ++times) {
        if (times >= piece.fewest) {
            reached |= from;
        }
        from = after_one(piece, text, from);
    }
    return reached | from;
}

}  // namespace ov::time
