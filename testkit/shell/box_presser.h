#pragma once

#include <windows.h>

#include <initializer_list>
#include <string>
#include <vector>

#include "ovufc/noncopyable.h"
#include "ovufc/win/handle.h"

namespace ov::test {

/// Presses buttons of real message boxes of this process, as a user would: a thread of its own waits for each
/// box in turn, reads what it says and presses one button in it.
///
/// A box that does not come within ten seconds ends the script; `finish` then tells how far it got.
class box_presser : private noncopyable {
  public:
    struct box {
        std::wstring text;
        std::wstring caption;
        /// The button that Enter presses.
        int default_button;
    };

    /// `buttons` are dialog results (IDOK, IDCANCEL …), one a box.
    explicit box_presser(std::initializer_list<int> buttons);
    ~box_presser();

    /// Waits for the script's end and tells which boxes were pressed.
    [[nodiscard]] const std::vector<box>& finish();

  private:
    static DWORD WINAPI press_all(void* self);

    std::vector<int> buttons_;
    std::vector<box> pressed_;
    win::unique_kernel_handle thread_;
};

}  // namespace ov::test
