#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/command_line/usage_error.h"

namespace ov::command_line {

/// The words of a command line: each is taken once, in any order, and what is left over must be plain words.
///
///     const bool is_quiet = words.take_switch(L"--quiet");
///     const auto limit_s = words.take_number(L"--timeout", 1, 3600);
///     const std::wstring file = words.take_word(L"a file");
///     words.expect_end();
///
/// Whatever does not fit throws usage_error, which run_program turns into a line and exit code 2.
class arguments {
  public:
    explicit arguments(std::vector<std::wstring> words) : words_(std::move(words)) {}

    /// True when the switch is there; takes it.
    [[nodiscard]] bool take_switch(const std::wstring& name);
    /// The word behind `name`, which is taken with it; nothing when `name` is not there. The last word, and
    /// one before another option, has no value.
    [[nodiscard]] std::optional<std::wstring> take_value(const std::wstring& name);
    /// As take_value, for a number from `least` to `most`.
    [[nodiscard]] std::optional<unsigned> take_number(const std::wstring& name, unsigned least,
                                                      unsigned most);
    /// The first word that is left, which must be no option; `what` says what is missing when there is none.
    [[nodiscard]] std::wstring take_word(const std::wstring& what);
    /// The words that are left, none of which may be an option.
    [[nodiscard]] std::vector<std::wstring> take_rest();
    [[nodiscard]] bool is_empty() const { return words_.empty(); }
    /// No word may be left.
    void expect_end();

  private:
    [[noreturn]] void refuse(const std::wstring& option) const;

    std::vector<std::wstring> words_;
    std::vector<std::wstring> taken_;
};

/// The number that `text` is; throws usage_error, which names it as `name`, for anything else.
[[nodiscard]] unsigned to_number(const std::wstring& name, const std::wstring& text, unsigned least,
                                 unsigned most);

}  // namespace ov::command_line
