#pragma once

#include <exception>
#include <string>
#include <utility>

namespace ov::shellhost {

/// A command cannot go on; the message is for the person who gave it. Ends the program with exit_failed.
class command_failure : public std::exception {
  public:
    explicit command_failure(std::wstring message) : message_(std::move(message)) {}
    [[nodiscard]] const std::wstring& message() const noexcept { return message_; }

  private:
    std::wstring message_;
};

}  // namespace ov::shellhost
