#include <algorithm>
#include <functional>

#include "companions/devservice/commands.h"
#include "companions/devservice/console.h"
#include "companions/devservice/document.h"
#include "companions/devservice/flag_names.h"
#include "companions/devservice/path.h"
#include "companions/devservice/text.h"

namespace ov::devservice {
namespace {

/// "add PATH" or "remove PATH" on one of the lists that are only shown. A path that does not exist is taken:
/// managed and synchronised folders may be elsewhere.
int edit_list(command_call& call, const std::function<std::vector<std::wstring>&(service_state&)>& list) {
    if (call.words.size() != 2 || (call.words[0] != L"add" && call.words[0] != L"remove")) {
        return bad_usage("say add or remove, and one path");
    }
    const std::optional<std::wstring> path = path_from_word(call.words[1]);
    if (!path || !to_utf8(*path)) {
        return exit_usage;
    }
    const bool adding = call.words[0] == L"add";
    const DWORD error = call.store.change([&](service_state& state) -> DWORD {
        document_changed(state);
        if (adding) {
            list(state).push_back(*path);
            return ERROR_SUCCESS;
        }
        const std::size_t removed =
            std::erase_if(list(state), [&](const std::wstring& known) { return same_path(known, *path); });
        return removed == 0 ? ERROR_NOT_FOUND : ERROR_SUCCESS;
    });
    return finish_change(call, error);
}

}  // namespace

int command_flags(command_call& call) {
    std::uint32_t set = 0;
    std::uint32_t cleared = 0;
    for (const flag_name& flag : flag_names) {
        std::wstring value;
        if (take_option(call.words, flag.option, value)) {
            if (value != L"on" && value != L"off") {
                return bad_usage(to_utf8_lossy(flag.option) + " is on or off");
            }
            (value == L"on" ? set : cleared) |= flag.bit;
        }
    }
    if (!call.words.empty()) {
        return bad_usage("unknown flag '" + to_utf8_lossy(call.words[0]) + "'");
    }
    if ((set | cleared) == 0) {
        for (const flag_name& flag : flag_names) {
            print(to_utf8_lossy(flag.option) + ((call.store.state().flags & flag.bit) != 0 ? " on" : " off"));
        }
        return exit_done;
    }
    const DWORD error = call.store.change([&](service_state& state) -> DWORD {
        state.flags = (state.flags | set) & ~cleared;
        return ERROR_SUCCESS;
    });
    return finish_change(call, error);
}

int command_cloud(command_call& call) {
    std::wstring provider;
    if (!take_option(call.words, L"--provider", provider)) {
        return bad_usage("name a provider");
    }
    const std::string name = to_utf8_lossy(provider);
    const auto known = std::find_if(cloud_providers.begin(), cloud_providers.end(),
                                    [&](const char* candidate) { return name == candidate; });
    if (known == cloud_providers.end()) {
        return bad_usage("unknown provider '" + name + "'");
    }
    const auto place = static_cast<std::size_t>(known - cloud_providers.begin());
    return edit_list(
        call, [place](service_state& state) -> std::vector<std::wstring>& { return state.cloud[place]; });
}

int command_mgmt(command_call& call) {
    return edit_list(call, [](service_state& state) -> std::vector<std::wstring>& { return state.managed; });
}

int command_document(command_call& call) {
    if (take_switch(call.words, L"--none")) {
        return call.words.empty() ? finish_change(call, release_document(call.store))
                                  : bad_usage("--none stands alone");
    }
    if (call.words.size() != 1) {
        return bad_usage("document takes one file");
    }
    const std::optional<std::wstring> file = path_from_word(call.words[0]);
    return file ? finish_change(call, fix_document(call.store, *file)) : static_cast<int>(exit_usage);
}

}  // namespace ov::devservice
