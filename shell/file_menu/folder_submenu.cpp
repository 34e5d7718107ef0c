#include "shell/file_menu/folder_submenu.h"

#include <utility>

#include "shell/file_menu/folder_commands.h"

namespace ov::shell {

namespace {

// Not localised, as the export texts are not.
constexpr const wchar_t* not_protected_text = L"Not protected";

class submenu_builder {
  public:
    submenu_builder(HMENU menu, UINT first_id) noexcept : menu_(menu), first_id_(first_id) {}

    void append(const wchar_t* text, UINT grey) noexcept {
        InsertMenuW(menu_, count_, MF_BYPOSITION | grey, first_id_ + count_, text);
        SetMenuItemBitmaps(menu_, count_, MF_BYPOSITION, nullptr, nullptr);
        ++count_;
    }
    [[nodiscard]] UINT count() const noexcept { return count_; }

  private:
    HMENU menu_;
    UINT first_id_;
    UINT count_ = 0;
};

}  // namespace

folder_submenu make_folder_submenu(const folder_submenu_content& content, UINT first_id) noexcept {
    win::unique_menu menu(CreateMenu());
    if (!menu) {
        return {};
    }
    submenu_builder items(menu.get(), first_id);
    if (!content.is_protected) {
        items.append(not_protected_text, MF_GRAYED);
    } else {
        items.append(content.texts[command_protect].c_str(), content.driver_is_active ? 0 : MF_GRAYED);
        if (content.shows_unprotect) {
            items.append(content.texts[command_unprotect].c_str(), 0);
        }
        if (content.shows_exports) {
            items.append(content.texts[command_export_deleted_files].c_str(), 0);
            items.append(content.texts[command_export_chronels].c_str(), 0);
        }
    }
    return {std::move(menu), items.count()};
}

}  // namespace ov::shell
