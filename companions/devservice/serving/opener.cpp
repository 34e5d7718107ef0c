#include "companions/devservice/serving/opener.h"

#include <windows.h>
#include <shellapi.h>
#include <shlwapi.h>

#include <algorithm>
#include <iterator>

namespace ov::devservice {
namespace {

// Beside what the system itself calls dangerous, for systems that have no opinion (Wine).
constexpr const wchar_t* programs[] = {L".exe", L".com", L".bat", L".cmd", L".scr", L".pif", L".msi", L".vbs",
                                       L".js",  L".wsf", L".ps1", L".lnk", L".hta", L".cpl", L".reg"};

bool may_be_opened(const std::wstring& file) noexcept {
    const wchar_t* extension = PathFindExtensionW(file.c_str());
    const bool program = std::any_of(std::begin(programs), std::end(programs),
                                     [&](const wchar_t* known) { return lstrcmpiW(extension, known) == 0; });
    return *extension != L'\0' && !program && !AssocIsDangerous(extension);
}

}  // namespace

bool session_is_interactive() noexcept {
    USEROBJECTFLAGS flags{};
    return GetUserObjectInformationW(GetProcessWindowStation(), UOI_FLAGS, &flags, sizeof flags, nullptr) &&
           (flags.dwFlags & WSF_VISIBLE) != 0;
}

void open_for_user(const std::wstring& file) noexcept {
    if (!session_is_interactive() || !may_be_opened(file)) {
        return;
    }
    SHELLEXECUTEINFOW execute{};
    execute.cbSize = sizeof execute;
    execute.fMask = SEE_MASK_FLAG_NO_UI | SEE_MASK_NOASYNC;
    execute.lpFile = file.c_str();
    execute.nShow = SW_SHOWNORMAL;
    ShellExecuteExW(&execute);
}

}  // namespace ov::devservice
