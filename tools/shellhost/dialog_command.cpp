#include <windows.h>

#include <cstring>
#include <memory>
#include <string>

#include "ovufc/dialog/dialog_records.h"
#include "ovufc/win/handle.h"
#include "tools/shellhost/apartment.h"
#include "tools/shellhost/command_failure.h"
#include "tools/shellhost/commands.h"
#include "tools/shellhost/console.h"
#include "tools/shellhost/exit_codes.h"

namespace ov::shellhost {

const wchar_t* const dialog_usage =
    L"shellhost dialog 17 FOLDER [--protected] [--library DLL]\n"
    L"shellhost dialog 47 FILE --list JSON [--library DLL]\n"
    L"  Opens a dialog of the dialog library by its ordinal, as the product does, and prints what it "
    L"answered.\n"
    L"  Nothing is sent to the driver.\n"
    L"\n"
    L"  17             the dialog that protects FOLDER\n"
    L"  47             the dialog that lists the earlier versions of FILE\n"
    L"  --protected    says that the folder may be unprotected\n"
    L"  --list JSON    the file with the list of versions as the driver writes it, in UTF-8\n"
    L"  --library DLL  the dialog library (orvdialog.dll beside this program)\n";

namespace {

struct dialog_options {
    WORD ordinal = 0;
    std::wstring path;
    bool is_protected = false;
    std::wstring list_file;
    std::wstring library;
};

std::wstring own_library() {
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return path.substr(0, path.find_last_of(L'\\') + 1) + L"orvdialog.dll";
}

dialog_options read_options(arguments& words) {
    dialog_options options;
    const auto list_file = words.take_value(L"--list");
    options.is_protected = words.take_switch(L"--protected");
    options.library = words.take_value(L"--library").value_or(own_library());
    const std::wstring ordinal = words.take_word(L"a dialog's ordinal, 17 or 47");
    if (ordinal != L"17" && ordinal != L"47") {
        throw usage_error(L"the dialogs are 17 and 47, not '" + ordinal + L"'");
    }
    options.ordinal = ordinal == L"17" ? dialog::protect_ordinal : dialog::chronel_ordinal;
    options.path = words.take_word(L"a file or folder");
    words.expect_end();
    const bool takes_list = options.ordinal == dialog::chronel_ordinal;
    if (takes_list != list_file.has_value()) {
        throw usage_error(takes_list ? L"dialog 47 needs --list" : L"--list belongs to dialog 47");
    }
    if (takes_list && options.is_protected) {
        throw usage_error(L"--protected belongs to dialog 17");
    }
    options.list_file = list_file.value_or(L"");
    return options;
}

std::string read_file(const std::wstring& path) {
    const win::unique_file file(
        CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
    LARGE_INTEGER size{};
    std::string text;
    DWORD read = 0;
    if (file && GetFileSizeEx(file.get(), &size) && size.HighPart == 0) {
        text.resize(size.LowPart);
        if (ReadFile(file.get(), text.data(), size.LowPart, &read, nullptr) && read == size.LowPart) {
            return text;
        }
    }
    throw command_failure(L"the list '" + path + L"' cannot be read: " +
                          describe(HRESULT_FROM_WIN32(GetLastError())));
}

template <class Function>
Function find_export(HMODULE library, WORD ordinal) {
    const auto found = reinterpret_cast<Function>(
        reinterpret_cast<void*>(GetProcAddress(library, MAKEINTRESOURCEA(ordinal))));
    if (found == nullptr) {
        throw command_failure(L"the library has no dialog " + std::to_wstring(ordinal));
    }
    return found;
}

void show_protect(HMODULE library, const dialog_options& options) {
    const auto show = find_export<dialog::show_protect_dialog>(library, options.ordinal);
    dialog::ProtectDialogRequest request{};
    request.size_bytes = sizeof request;
    request.folder_path = options.path.c_str();
    request.flags = options.is_protected ? dialog::protect_flag_show_unprotect : 0;
    if (show(&request) == 0) {
        return print_line(L"not confirmed");
    }
    const std::wstring other = request.object_path;
    print_line(L"confirmed: protect " + (other.empty() ? L"the folder" : L"'" + other + L"' in its place"));
}

void show_chronels(HMODULE library, const dialog_options& options) {
    const auto show = find_export<dialog::show_chronel_dialog>(library, options.ordinal);
    const std::string list = read_file(options.list_file);
    dialog::ChronelDialogRequest request{};
    request.size_bytes = sizeof request;
    request.menu_icon = LoadIconW(nullptr, IDI_APPLICATION);
    request.file_path = options.path.c_str();
    request.chronel_list = list.c_str();
    const auto result = std::make_unique<dialog::ChronelDialogResult>();
    if (show(&request, result.get()) == 0) {
        return print_line(L"nothing chosen");
    }
    if (result->size_bytes != sizeof *result) {
        throw command_failure(L"the dialog's answer is not complete");
    }
    const std::string identifier = result->chronel_identifier;
    print_line(L"chosen: action " + std::to_wstring(result->action) + L", version '" +
               std::wstring(identifier.begin(), identifier.end()) + L"', file '" + result->file_name + L"'");
}

}  // namespace

int run_dialog(arguments& words) {
    const dialog_options options = read_options(words);
    const apartment com;
    const win::unique_library library(
        LoadLibraryExW(options.library.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH));
    if (!library) {
        throw command_failure(L"the dialog library " + options.library + L" cannot be loaded: " +
                              describe(HRESULT_FROM_WIN32(GetLastError())));
    }
    if (options.ordinal == dialog::protect_ordinal) {
        show_protect(library.get(), options);
    } else {
        show_chronels(library.get(), options);
    }
    return exit_done;
}

}  // namespace ov::shellhost
