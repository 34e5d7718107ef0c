#pragma once

#include <windows.h>

#include <string>

#include "ovufc/noncopyable.h"
#include "ovufc/win/handle.h"

namespace ov::test {

/// shellhost.exe beside the running program, with its standard streams in the test's hands; standard error
/// goes where standard output does. Killed by destruction if it still runs then.
class piped_process : private noncopyable {
  public:
    /// Throws std::runtime_error when it cannot be started.
    explicit piped_process(const std::wstring& arguments);
    ~piped_process();

    /// Sends one line.
    void write_line(const std::string& line);
    /// The next line of its output, without its end; false when there will be none.
    [[nodiscard]] bool read_line(std::string& line);
    /// Ends its input.
    void close_input() noexcept { input_.reset(); }
    /// Waits until it has ended; false when it still runs after `timeout_ms`.
    [[nodiscard]] bool wait(DWORD timeout_ms, DWORD& exit_code);

  private:
    /// Adds to what is pending; false when nothing more will come.
    [[nodiscard]] bool read_more();

    win::unique_kernel_handle process_;
    win::unique_kernel_handle input_;
    win::unique_kernel_handle output_;
    std::string pending_;
};

}  // namespace ov::test
