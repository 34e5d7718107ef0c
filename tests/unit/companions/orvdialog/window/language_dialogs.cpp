#include "tests/unit/companions/orvdialog/window/language_dialogs.h"

#include <array>

#include "companions/orvdialog/control_ids.h"
#include "companions/orvdialog/protect/protect_dialog.h"
#include "companions/orvdialog/versions/chronel_dialog.h"
#include "testkit/process/module_attach.h"

namespace ov::dialog {

namespace {

constexpr std::string_view five_versions =
    R"([{"fileName":"sea.txt","cloneFileName":"5","type":"before a restore","createdOn":133520000000000000,"size":1536},)"
    R"({"fileName":"sea.txt","cloneFileName":"4","type":"restore point","createdOn":133500000000000000,"size":2048},)"
    R"({"fileName":"sea.txt","cloneFileName":"3","type":"restore point","createdOn":133400000000000000,"size":1048576},)"
    R"({"fileName":"sea (draft).txt","cloneFileName":"2","type":"restore point","createdOn":133300000000000000,"size":17},)"
    R"({"fileName":"sea (draft).txt","cloneFileName":"1","type":"first copy","createdOn":133200000000000000,"size":0}])";

}  // namespace

language_texts::language_texts(WORD language, bool right_to_left)
    : language_(language),
      right_to_left_(right_to_left),
      library_(LoadLibraryExW((module_state::module_directory + L"orvres.dll").c_str(), nullptr,
                              LOAD_LIBRARY_AS_DATAFILE)) {}

std::wstring language_texts::text(std::uint32_t number) const {
    std::array<wchar_t, 2048> found{};
    FormatMessageW(FORMAT_MESSAGE_FROM_HMODULE, library_.get(), number, language_, found.data(),
                   static_cast<DWORD>(found.size()), nullptr);
    return found.data();
}

std::unique_ptr<shown_dialog> show_protection(const dialog_texts& texts) {
    return std::make_unique<shown_dialog>([&texts] {
        protect_dialog dialog(texts, L"C:\\windows\\system32", true);
        return static_cast<std::uint32_t>(dialog.show(IDD_PROTECT, nullptr));
    });
}

std::unique_ptr<shown_dialog> show_versions(const dialog_texts& texts) {
    return std::make_unique<shown_dialog>([&texts] {
        chronel_dialog dialog(texts, L"C:\\users\\me\\Album\\sea.txt", LoadIconW(nullptr, IDI_INFORMATION),
                              *chronel_list::read(five_versions));
        return static_cast<std::uint32_t>(dialog.show(IDD_CHRONELS, nullptr));
    });
}

void set_dpi(HWND window, UINT dpi) {
    RECT place{};
    GetWindowRect(window, &place);
    SendMessageW(window, WM_DPICHANGED, MAKEWPARAM(dpi, dpi), reinterpret_cast<LPARAM>(&place));
}

}  // namespace ov::dialog
