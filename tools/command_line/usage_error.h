#pragma once

#include <exception>
#include <string>
#include <utility>

namespace ov::command_line {

/// The command line cannot be understood; the message is for the person who typed it and names the word.
class usage_error : public std::exception {
  public:
    explicit usage_error(std::wstring message) : message_(std::move(message)) {}
    [[nodiscard]] const std::wstring& message() const noexcept { return message_; }

  private:
    std::wstring message_;
};

}  // namespace ov::command_line
