#include "companions/orvdialog/protect_dialog.h"

#include <algorithm>

#include "companions/orvdialog/control_ids.h"
#include "companions/orvdialog/folder_chooser.h"
#include "ovufc/dialog/dialog_records.h"

namespace ov::dialog {

namespace {

constexpr std::size_t longest_object_path_chars = std::size(ProtectDialogRequest{}.object_path) - 1;

std::wstring text_of(HWND control) {
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(control)) + 1, L'\0');
    text.resize(
        static_cast<std::size_t>(GetWindowTextW(control, text.data(), static_cast<int>(text.size()))));
    return text;
}

/// Without the blanks and quotation marks that come along when a path is pasted.
std::wstring trimmed(const std::wstring& text) {
    constexpr const wchar_t* around = L" \t\"";
    const auto first = text.find_first_not_of(around);
    return first == std::wstring::npos ? std::wstring()
                                       : text.substr(first, text.find_last_not_of(around) - first + 1);
}

std::wstring without_last_backslash(std::wstring path) {
    if (path.size() > 1 && path.back() == L'\\') {
        path.pop_back();
    }
    return path;
}

bool is_same_path(const std::wstring& left, const std::wstring& right) {
    return CompareStringOrdinal(without_last_backslash(left).c_str(), -1,
                                without_last_backslash(right).c_str(), -1, TRUE) == CSTR_EQUAL;
}

}  // namespace

bool protect_dialog::on_open() {
    SetWindowTextW(control(IDC_PROTECT_FOLDER), folder_.c_str());
    SetWindowTextW(control(IDC_PROTECT_OBJECT), folder_.c_str());
    SendMessageW(control(IDC_PROTECT_OBJECT), EM_SETLIMITTEXT,
                 std::max(longest_object_path_chars, folder_.size()), 0);
    if (mentions_unprotect_) {
        ShowWindow(control(IDC_PROTECT_NOTE), SW_SHOW);
    }
    // The answer is Enter away; the path is there to be read, not to be typed over by accident.
    SetFocus(control(IDOK));
    return false;
}

void protect_dialog::on_command(WORD control_id, WORD code) {
    if (code != BN_CLICKED) {
        return;
    }
    switch (control_id) {
        case IDOK:
            return accept();
        case IDCANCEL:
            return end(IDCANCEL);
        case IDC_PROTECT_BROWSE:
            return browse();
        default:
            return;
    }
}

void protect_dialog::browse() {
    const std::wstring chosen = choose_folder(window(), trimmed(text_of(control(IDC_PROTECT_OBJECT))));
    if (!chosen.empty()) {
        SetWindowTextW(control(IDC_PROTECT_OBJECT), chosen.c_str());
    }
}

void protect_dialog::accept() {
    const std::wstring path = trimmed(text_of(control(IDC_PROTECT_OBJECT)));
    if (path.empty() || is_same_path(path, folder_)) {
        return end(IDOK);
    }
    const wchar_t* complaint = nullptr;
    if (path.size() > longest_object_path_chars) {
        complaint = L"This path is too long. Choose one of at most 259 characters.";
    } else if (GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES) {
        complaint = L"There is nothing at this path. Choose a folder that exists.";
    }
    if (complaint != nullptr) {
        show_message(window(), complaint, MB_ICONWARNING);
        SendMessageW(window(), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(control(IDC_PROTECT_OBJECT)), TRUE);
        return;
    }
    object_path_ = path;
    end(IDOK);
}

}  // namespace ov::dialog
