#include <algorithm>

#include "companions/devservice/command_line/commands.h"
#include "companions/devservice/command_line/console.h"
#include "companions/devservice/command_line/remote.h"
#include "companions/devservice/files/path.h"
#include "companions/devservice/files/text.h"

namespace ov::devservice {

int finish_change(command_call& call, DWORD error, const problems& left_out) {
    if (error != ERROR_SUCCESS) {
        print_error(describe(error));
        return exit_failed;
    }
    for (const problem& one : left_out) {
        print_error("left out: " + to_utf8_lossy(one.path) + ": " + describe(one.error));
    }
    if (!remote(call.store.folder()).tell(call.store.state().revision)) {
        print_error("saved, but the running service is busy and has not taken it up yet");
        return exit_failed;
    }
    return left_out.empty() ? exit_done : exit_partial;
}

std::wstring path_from_word(const std::wstring& word) {
    std::wstring full(32'768, L'\0');
    const DWORD length_chars =
        GetFullPathNameW(word.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
    full.resize(std::min<std::size_t>(length_chars, full.size()));
    std::optional<std::wstring> path = clean_path(full);
    if (!path || !to_utf8(*path)) {
        throw usage_error(L"not the path of a folder or file: " + word);
    }
    return *path;
}

}  // namespace ov::devservice
