#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace ov::shellhost {

/// The command line cannot be understood; the message is for the person who typed it.
class usage_error : public std::exception {
  public:
    explicit usage_error(std::wstring message) : message_(std::move(message)) {}
    [[nodiscard]] const std::wstring& message() const noexcept { return message_; }

  private:
    std::wstring message_;
};

/// The words behind a command's name: each is taken once, and what is left over must be a plain word.
class arguments {
  public:
    explicit arguments(std::vector<std::wstring> words) : words_(std::move(words)) {}

    /// True when the switch is there; takes it.
    [[nodiscard]] bool take_switch(const std::wstring& name);
    /// The word behind `name`, which is taken with it; nothing when `name` is not there. Throws usage_error
    /// when it is the last word.
    [[nodiscard]] std::optional<std::wstring> take_value(const std::wstring& name);
    /// As take_value, for a number from `least` to `most`; anything else throws usage_error.
    [[nodiscard]] std::optional<unsigned> take_number(const std::wstring& name, unsigned least,
                                                      unsigned most);
    /// The words that are left. Throws usage_error when one of them looks like an option.
    [[nodiscard]] std::vector<std::wstring> take_rest();
    /// Throws usage_error unless every word has been taken.
    void expect_end();

  private:
    std::vector<std::wstring> words_;
};

}  // namespace ov::shellhost
