#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ov::time {

/// A regular expression for short texts, compiled once, that matches a text as a whole:
///
///     static const regular_expression hour(LR"(^\d{1,2}:\d{2}( (AM|PM))?$)");
///     if (hour.matches(text)) ...
///
/// Of the usual notation it has characters, `\d` (0 to 9), `\` before any other character, `[...]` without
/// ranges, `(...|...)`, `?`, `{n}`, `{n,m}`, and `^` and `$` at the two ends. The standard library has more,
/// and brings 800 KiB of locales and streams into every process that shows a file dialog.
///
/// Made from texts of the program only: anything else in one is undefined. Immutable afterwards, for any
/// thread. The constructor throws std::bad_alloc only.
class regular_expression {
  public:
    explicit regular_expression(std::wstring_view pattern);

    /// In time linear in the text's length. A text of more than `longest_text_chars` never matches.
    [[nodiscard]] bool matches(std::wstring_view text) const noexcept;

    static constexpr std::size_t longest_text_chars = 63;

  private:
    // Where in the text one may be after what was matched so far: bit n stands before the n-th character.
    using places = std::uint64_t;

    struct piece;
    using sequence = std::vector<piece>;
    struct piece {
        std::wstring characters;             // any of them
        std::vector<sequence> alternatives;  // or, when there are any, a group
        unsigned fewest = 1;
        unsigned most = 1;
    };

    static std::vector<sequence> read_alternatives(std::wstring_view& rest);
    static piece read_piece(std::wstring_view& rest);
    static places after_any(const std::vector<sequence>& alternatives, std::wstring_view text,
                            places from) noexcept;
    static places after_one(const piece& piece, std::wstring_view text, places from) noexcept;
    static places after_all(const piece& piece, std::wstring_view text, places from) noexcept;

    std::vector<sequence> alternatives_;
};

}  // namespace ov::time
