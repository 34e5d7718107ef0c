#include <algorithm>
#include <functional>

#include "companions/devservice/calls/document.h"
#include "companions/devservice/command_line/commands.h"
#include "companions/devservice/command_line/console.h"
#include "companions/devservice/command_line/flag_names.h"
#include "companions/devservice/files/path.h"
#include "companions/devservice/files/text.h"

namespace ov::devservice {
namespace {

/// "add PATH" or "remove PATH" on one of the lists that are only shown. A path that does not exist is taken:
/// managed and synchronised folders may be elsewhere.
int edit_list(command_call& call, const std::function<std::vector<std::wstring>&(service_state&)>& list) {
    const std::wstring verb = call.words.take_word(L"what to do: add or remove");
    if (verb != L"add" && verb != L"remove") {
        throw usage_error(L"say add or remove, not '" + verb + L"'");
    }
    const std::wstring path = path_from_word(call.words.take_word(L"a folder"));
    call.words.expect_end();
    const bool adding = verb == L"add";
    const DWORD error = call.store.change([&](service_state& state) -> DWORD {
        document_changed(state);
        if (adding) {
            list(state).push_back(path);
            return ERROR_SUCCESS;
        }
        const std::size_t removed =
            std::erase_if(list(state), [&](const std::wstring& known) { return same_path(known, path); });
        return removed == 0 ? ERROR_NOT_FOUND : ERROR_SUCCESS;
    });
    return finish_change(call, error);
}

}  // namespace

int command_flags(command_call& call) {
    std::uint32_t set = 0;
    std::uint32_t cleared = 0;
    for (const flag_name& flag : flag_names) {
        const auto value = call.words.take_value(flag.option);
        if (value && *value != L"on" && *value != L"off") {
            throw usage_error(flag.option + (L" is on or off, not '" + *value + L"'"));
        }
        if (value) {
            (*value == L"on" ? set : cleared) |= flag.bit;
        }
    }
    call.words.expect_end();
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
    const auto provider = call.words.take_value(L"--provider");
    if (!provider) {
        throw usage_error(L"name a provider by --provider");
    }
    const std::string name = to_utf8_lossy(*provider);
    const auto known = std::find_if(cloud_providers.begin(), cloud_providers.end(),
                                    [&](const char* candidate) { return name == candidate; });
    if (known == cloud_providers.end()) {
        throw usage_error(L"unknown provider '" + *provider + L"'");
    }
    const auto place = static_cast<std::size_t>(known - cloud_providers.begin());
    return edit_list(
        call, [place](service_state& state) -> std::vector<std::wstring>& { return state.cloud[place]; });
}

int command_mgmt(command_call& call) {
    return edit_list(call, [](service_state& state) -> std::vector<std::wstring>& { return state.managed; });
}

int command_document(command_call& call) {
    const bool none = call.words.take_switch(L"--none");
    const std::wstring file = none ? L"" : path_from_word(call.words.take_word(L"a file, or --none"));
    call.words.expect_end();
    return finish_change(call, none ? release_document(call.store) : fix_document(call.store, file));
}

}  // namespace ov::devservice
