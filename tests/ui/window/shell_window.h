#pragma once

#include <initializer_list>
#include <string>
#include <vector>

#include "ovufc/noncopyable.h"
#include "tests/ui/window/piped_process.h"

namespace ov::test {

/// A window of the small Explorer in a process of its own, told what to do line by line.
///
/// Every command is a line for shellhost --script ("help" there lists them). Closed by destruction; a process
/// that does not end by itself is killed.
class shell_window : private noncopyable {
  public:
    /// Starts it and waits until it has settled; throws std::runtime_error when it cannot be started.
    explicit shell_window(const std::wstring& more_arguments = {});
    ~shell_window();

    /// Sends a command and gives its answer's lines. A command that does not work fails the running test.
    std::vector<std::string> ask(const std::string& command);
    /// Sends commands whose answers do not matter.
    void tell(std::initializer_list<const char*> commands);
    /// The only line of an answer.
    std::string ask_line(const std::string& command);

  private:
    piped_process process_;
};

}  // namespace ov::test
