#include "shell/file_menu/dialog_bridge.h"

#include <array>
#include <cstddef>
#include <iterator>

#include "module/state/module_state.h"

namespace ov::shell {

namespace {

using dialog::ChronelDialogRequest;
using dialog::ChronelDialogResult;
using dialog::ProtectDialogRequest;

win::unique_library load_dialog_library() {
    const std::wstring path = module_state::module_directory + L"orvdialog.dll";
    return win::unique_library(LoadLibraryExW(
        path.c_str(), nullptr, LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_DEFAULT_DIRS));
}

// The dialog library exports by ordinal only, so there is no name to import it by.
template <class Function>
Function find_export(HMODULE library, WORD ordinal) noexcept {
    auto* found = GetProcAddress(library, MAKEINTRESOURCEA(ordinal));
    return reinterpret_cast<Function>(reinterpret_cast<void*>(found));
}

template <class Char, std::size_t Size>
std::basic_string<Char> text_of(const Char (&field)[Size]) {
    const auto* end = std::char_traits<Char>::find(field, Size, Char{});
    return {field, end == nullptr ? field + Size : end};
}

}  // namespace

protect_answer show_protect_dialog(const std::wstring& folder_path, bool show_unprotect) {
    const win::unique_library library = load_dialog_library();
    if (!library) {
        return {};
    }
    const auto show = find_export<dialog::show_protect_dialog>(library.get(), dialog::protect_ordinal);
    if (show == nullptr) {
        return {};
    }
    ProtectDialogRequest request{};
    request.size_bytes = sizeof request;
    request.folder_path = folder_path.c_str();
    request.flags = show_unprotect ? dialog::protect_flag_show_unprotect : 0;
    if (show(&request) == 0) {
        return {};
    }
    return {true, text_of(request.object_path)};
}

chronel_dialog::chronel_dialog() : library_(load_dialog_library()) {}

chronel_dialog::outcome chronel_dialog::show(HICON icon, const std::wstring& file_path,
                                             const std::string& chronel_list) {
    if (!library_) {
        return outcome::not_shown;
    }
    result_ = std::make_unique<ChronelDialogResult>();
    const auto show = find_export<dialog::show_chronel_dialog>(library_.get(), dialog::chronel_ordinal);
    if (show == nullptr) {
        return outcome::not_shown;
    }
    ChronelDialogRequest request{};
    request.size_bytes = sizeof request;
    request.menu_icon = icon;
    request.file_path = file_path.c_str();
    request.chronel_list = chronel_list.c_str();
    const bool chosen = show(&request, result_.get()) != 0;
    return chosen && result_->size_bytes == sizeof *result_ ? outcome::answered : outcome::no_answer;
}

std::string chronel_dialog::chronel_identifier() const {
    return text_of(result_->chronel_identifier);
}

std::wstring chronel_dialog::file_name() const {
    return text_of(result_->file_name);
}

}  // namespace ov::shell
