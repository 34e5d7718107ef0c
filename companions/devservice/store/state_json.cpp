#include "companions/devservice/store/state_json.h"

#include <exception>
#include <stdexcept>

#include "companions/devservice/files/json_text.h"
#include "companions/devservice/files/text.h"
#include "companions/devservice/store/sha256.h"
#include "ovufc/json_bounded.h"

namespace ov::devservice {
namespace {

constexpr int format_version = 2;
// In the order of the enumerations.
constexpr const char* copy_kind_names[] = {"first", "restorePoint", "beforeRestore", "pastPoint"};
constexpr const char* entry_kind_names[] = {"file", "folder", "link"};

/// The place of `name` in a list of names, as a value of the enumeration that
/// the list goes with.
template <class Enumeration, std::size_t Count>
Enumeration value_named(const char* const (&names)[Count], const std::string& name) {
    for (std::size_t place = 0; place < Count; ++place) {
        if (name == names[place]) {
            return static_cast<Enumeration>(place);
        }
    }
    throw std::runtime_error("unknown kind");
}

std::string text_of(const std::wstring& path) {
    std::optional<std::string> text = to_utf8(path);
    if (!text) {
        throw std::runtime_error("not well formed");
    }
    return *std::move(text);
}

/// The one rule for records, on the way out and on the way in.
void check(const file_record& record) {
    const bool digest_fits =
        record.kept() ? record.kind == entry_kind::file && is_digest(record.digest) : true;
    if (!is_recordable(record.relative) || !digest_fits) {
        throw std::runtime_error("not a record");
    }
}

void check_unlisted(const std::wstring& relative) {
    if (!relative.empty() && !is_recordable(relative)) {
        throw std::runtime_error("not a path below the folder");
    }
}

std::wstring path_from(const json& value) {
    std::optional<std::wstring> path = from_utf8(value.get_ref<const std::string&>());
    if (!path) {
        throw std::runtime_error("not UTF-8");
    }
    return *std::move(path);
}

json list_to_json(const std::vector<std::wstring>& list) {
    json array = json::array();
    for (const std::wstring& item : list) {
        array.push_back(text_of(item));
    }
    return array;
}

std::vector<std::wstring> list_from_json(const json& array) {
    std::vector<std::wstring> list;
    for (const json& item : array.get_ref<const json::array_t&>()) {
        list.push_back(path_from(item));
    }
    return list;
}

json record_to_json(const file_record& record) {
    check(record);
    json value = {{"path", text_of(record.relative)},
                  {"kind", entry_kind_names[static_cast<int>(record.kind)]},
                  {"attributes", record.attributes},
                  {"written", record.written},
                  {"size", record.size_bytes}};
    if (record.kept()) {
        value["object"] = record.digest;
    }
    return value;
}

file_record record_from_json(const json& value) {
    file_record record;
    record.relative = path_from(value.at("path"));
    record.kind = value_named<entry_kind>(entry_kind_names, value.at("kind").get_ref<const std::string&>());
    record.written = value.at("written").get<std::int64_t>();
    record.attributes = value.at("attributes").get<DWORD>();
    record.size_bytes = value.at("size").get<std::uint64_t>();
    record.digest = value.value("object", std::string());
    check(record);
    return record;
}

json copy_to_json(const stored_copy& copy) {
    json folders = json::array();
    for (const folder_copy& folder : copy.folders) {
        json records = json::array();
        for (const file_record& record : folder.records) {
            records.push_back(record_to_json(record));
        }
        for (const std::wstring& relative : folder.unlisted) {
            check_unlisted(relative);
        }
        folders.push_back({{"folder", text_of(folder.folder)},
                           {"files", std::move(records)},
                           {"unlisted", list_to_json(folder.unlisted)}});
    }
    return {{"number", copy.number},
            {"kind", copy_kind_names[static_cast<int>(copy.kind)]},
            {"takenOn", copy.taken_on},
            {"folders", std::move(folders)}};
}

stored_copy copy_from_json(const json& value) {
    stored_copy copy;
    copy.number = value.at("number").get<std::int64_t>();
    copy.kind = value_named<copy_kind>(copy_kind_names, value.at("kind").get_ref<const std::string&>());
    copy.taken_on = value.at("takenOn").get<std::int64_t>();
    for (const json& folder : value.at("folders")) {
        folder_copy& taken = copy.folders.emplace_back();
        taken.folder = path_from(folder.at("folder"));
        for (const json& record : folder.at("files")) {
            taken.records.push_back(record_from_json(record));
        }
        taken.unlisted = list_from_json(folder.at("unlisted"));
        for (const std::wstring& relative : taken.unlisted) {
            check_unlisted(relative);
        }
    }
    return copy;
}

service_state state_from_json(const json& root) {
    if (root.at("version").get<int>() != format_version) {
        throw std::runtime_error("another version");
    }
    service_state state;
    state.revision = root.at("revision").get<std::uint64_t>();
    state.generation = root.at("generation").get<std::uint32_t>();
    state.flags = root.at("flags").get<std::uint32_t>();
    state.next_copy = root.at("nextCopy").get<std::int64_t>();
    for (const json& folder : root.at("folders")) {
        state.folders.push_back({.path = path_from(folder.at("path")),
                                 .object_path = path_from(folder.at("objectPath")),
                                 .protected_on = folder.at("protectedOn").get<std::int64_t>()});
    }
    state.rules = list_from_json(root.at("rules"));
    state.managed = list_from_json(root.at("mgmtCustom"));
    for (std::size_t provider = 0; provider < cloud_providers.size(); ++provider) {
        state.cloud[provider] = list_from_json(root.at("cloud").at(cloud_providers[provider]));
    }
    state.fixed_document = root.at("fixedDocument").get<bool>();
    for (const json& copy : root.at("copies")) {
        state.copies.push_back(copy_from_json(copy));
    }
    return state;
}

json state_to_json(const service_state& state) {
    json folders = json::array();
    for (const protected_folder& folder : state.folders) {
        folders.push_back({{"path", text_of(folder.path)},
                           {"objectPath", text_of(folder.object_path)},
                           {"protectedOn", folder.protected_on}});
    }
    json cloud = json::object();
    for (std::size_t provider = 0; provider < cloud_providers.size(); ++provider) {
        cloud[cloud_providers[provider]] = list_to_json(state.cloud[provider]);
    }
    json copies = json::array();
    for (const stored_copy& copy : state.copies) {
        copies.push_back(copy_to_json(copy));
    }
    return {{"version", format_version},          {"revision", state.revision},
            {"generation", state.generation},     {"flags", state.flags},
            {"nextCopy", state.next_copy},        {"folders", std::move(folders)},
            {"rules", list_to_json(state.rules)}, {"mgmtCustom", list_to_json(state.managed)},
            {"cloud", std::move(cloud)},          {"fixedDocument", state.fixed_document},
            {"copies", std::move(copies)}};
}

}  // namespace

std::optional<std::string> state_to_text(const service_state& state) {
    try {
        return to_text(state_to_json(state), 1);
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

std::optional<service_state> state_from_text(const std::string& text) {
    const json root = parse_bounded(text);
    if (root.is_discarded()) {
        return std::nullopt;
    }
    try {
        return state_from_json(root);
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

}  // namespace ov::devservice
