#include "module/state/module_state.h"

#include <array>
#include <string_view>

namespace ov::module_state {

namespace {

// The longest module path that is taken, in characters.
constexpr DWORD path_limit_chars = 2048;
constexpr const wchar_t* resource_library_name = L"orvres.dll";

void read_module_directory(HINSTANCE instance) {
    std::array<wchar_t, path_limit_chars> path{};
    GetModuleFileNameW(instance, path.data(), path_limit_chars);
    path.back() = L'\0';
    const std::wstring_view text(path.data());
    // npos + 1 is 0: a path without a backslash gives an empty directory.
    module_directory = text.substr(0, text.rfind(L'\\') + 1);
}

}  // namespace

HINSTANCE module_instance = nullptr;
std::uint32_t current_process_id = 0;
std::uint32_t current_session_id = 0;
std::wstring module_directory;

SRWLOCK cacheLock = SRWLOCK_INIT;
std::atomic<std::int32_t> restoreInProgress{0};
i18n::rosetta_stone resource_strings;

com::live_count shell_ext_factory_count;
com::live_count namespace_factory_count;
com::live_count restore_factory_count;
com::live_count addons_factory_count;
com::live_count context_menu_object_count;
com::live_count property_sheet_object_count;
com::live_count namespace_object_count;

void record_process_attach(HINSTANCE instance) noexcept {
    module_instance = instance;
    current_process_id = GetCurrentProcessId();
    InitializeSRWLock(&cacheLock);
    DWORD session_id = current_session_id;
    ProcessIdToSessionId(current_process_id, &session_id);
    current_session_id = session_id;
    try {
        read_module_directory(instance);
    } catch (...) {
        // Out of memory while loading: the module goes on with empty texts.
        module_directory.clear();
    }
    restoreInProgress = 0;
}

void load_resource_library() noexcept {
    try {
        (void)resource_strings.load(module_directory + resource_library_name);
    } catch (...) {
        // Out of memory for the path: as with a missing library, the next request tries again.
    }
}

}  // namespace ov::module_state
