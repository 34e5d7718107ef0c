// A picture of every dialog, for people to look at: screenshots/dialog-*.png beside the build's bin folder.
#include <gtest/gtest.h>

#include <memory>
#include <ostream>
#include <string>

#include "companions/orvdialog/texts/message_numbers.h"
#include "tests/ui/pictures/screenshot.h"
#include "tests/unit/companions/orvdialog/window/language_dialogs.h"

namespace ov::dialog {
namespace {

struct look {
    const char* name;
    WORD language;
    UINT dpi;
    bool right_to_left;
};
void PrintTo(const look& shown, std::ostream* out) {
    *out << shown.name << " at " << shown.dpi;
}

class DialogPicture : public testing::TestWithParam<look> {
  protected:
    void take(std::unique_ptr<shown_dialog> (*show)(const dialog_texts&), std::uint32_t title,
              const std::wstring& dialog) {
        const auto [name, language, dpi, right_to_left] = GetParam();
        const language_texts texts(language, right_to_left);
        const auto shown = show(texts);
        const HWND window = shown->window(texts.text(title));
        ASSERT_NE(window, nullptr);
        set_dpi(window, dpi);
        SetWindowPos(window, HWND_TOPMOST, 10, 10, 0, 0, SWP_NOSIZE);
        UpdateWindow(window);
        RECT area{};
        GetWindowRect(window, &area);
        const std::string tag(name);
        test::take_screenshot(
            L"dialog-" + dialog + L"-" + std::wstring(tag.begin(), tag.end()) + L"-" + std::to_wstring(dpi),
            area);
        shown_dialog::press(window, IDCANCEL);
        EXPECT_EQ(shown->result(), static_cast<std::uint32_t>(IDCANCEL));
    }
};

TEST_P(DialogPicture, protection_is_seen) {
    take(show_protection, message_numbers::protect_title, L"protection");
}

TEST_P(DialogPicture, versions_are_seen) {
    take(show_versions, message_numbers::versions_title, L"versions");
}

INSTANTIATE_TEST_SUITE_P(looks, DialogPicture,
                         testing::Values(look{"en", 0x0409, 96, false}, look{"en", 0x0409, 192, false},
                                         look{"ja", 0x0411, 96, false}, look{"ja", 0x0411, 192, false},
                                         look{"fr", 0x040C, 96, false}, look{"fr", 0x040C, 192, false},
                                         look{"zh", 0x0804, 96, false}, look{"zh", 0x0804, 192, false},
                                         look{"mirrored", 0x0409, 96, true}));

}  // namespace
}  // namespace ov::dialog
