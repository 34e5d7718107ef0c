#include "companions/devservice/calls/document.h"

#include "companions/devservice/files/file_io.h"
#include "companions/devservice/files/json_text.h"
#include "companions/devservice/files/text.h"

namespace ov::devservice {
namespace {

namespace locations = protocol::locations;

json list_of(const std::vector<std::wstring>& paths) {
    json list = json::array();
    for (const std::wstring& path : paths) {
        list.push_back(to_utf8_lossy(path));
    }
    return list;
}

std::string document_from(const service_state& state) {
    json local = json::array();
    for (const std::wstring& rule : state.rules) {
        local.push_back(rule_text(rule));
    }
    for (const protected_folder& folder : state.folders) {
        local.push_back(to_utf8_lossy(folder.path));
    }
    json document = {{locations::hard_drive, {{locations::folders, std::move(local)}}},
                     {locations::mgmt_custom, list_of(state.managed)}};
    for (std::size_t provider = 0; provider < cloud_providers.size(); ++provider) {
        document[cloud_providers[provider]] = list_of(state.cloud[provider]);
    }
    return to_text(document);
}

}  // namespace

std::string rule_text(const std::wstring& rule) {
    return std::string(locations::profile_rule) + to_utf8_lossy(rule) + R"(\)";
}

std::optional<std::string> protected_locations(const vault& vault) {
    if (!vault.state().fixed_document) {
        return document_from(vault.state());
    }
    std::string text;
    if (read_whole_file(vault.document_path(), document_limit_bytes, text) != ERROR_SUCCESS) {
        return std::nullopt;
    }
    return text;
}

DWORD fix_document(vault& vault, const std::wstring& file) {
    std::string text;
    if (const DWORD error = read_whole_file(file, document_limit_bytes, text); error != ERROR_SUCCESS) {
        return error;
    }
    return vault.change([&](service_state& state) -> DWORD {
        DWORD error = make_folders(vault.folder());
        const std::wstring beside = vault.document_path() + L".new";
        if (error == ERROR_SUCCESS) {
            static_cast<void>(remove_file(beside));
            error = write_new_file(beside, text);
        }
        if (error == ERROR_SUCCESS) {
            error = replace_file(beside, vault.document_path(), own_file_patience_ms);
        }
        state.fixed_document = true;
        document_changed(state);
        return error;
    });
}

DWORD release_document(vault& vault) {
    return vault.change([](service_state& state) -> DWORD {
        state.fixed_document = false;
        document_changed(state);
        return ERROR_SUCCESS;
    });
}

}  // namespace ov::devservice
