#pragma once

#include <windows.h>

#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

#include "ovufc/noncopyable.h"
#include "testkit/imports/import_patch.h"

namespace ov::test {

/// Answers the message boxes of one module in place of the user, through its import table, and remembers
/// them.
///
/// Boxes are answered from any thread, in the order in which they come. A box beyond the script is a failure
/// of the running test and answered with 0. One script at a time.
class message_box_script : private noncopyable {
  public:
    struct box {
        HWND owner;
        std::wstring text;
        std::wstring caption;
        UINT style;
    };

    message_box_script(HMODULE module, std::initializer_list<int> answers);
    ~message_box_script();

    /// Called while a box is up, before it is answered.
    std::function<void(const box&)> while_shown;

    /// What has been shown so far; not while another thread may be showing one.
    [[nodiscard]] const std::vector<box>& shown() const noexcept { return shown_; }

  private:
    static int WINAPI answer_box(HWND owner, LPCWSTR text, LPCWSTR caption, UINT style);
    int answer(const box& asked);

    std::vector<int> answers_;
    std::vector<box> shown_;
    SRWLOCK lock_ = SRWLOCK_INIT;
    import_patch<decltype(MessageBoxW)> patch_;
};

}  // namespace ov::test
