#include "tests/unit/companions/devservice/vault_fixture.h"

#include "companions/devservice/calls/dispatcher.h"
#include "companions/devservice/copies/folder_walk.h"
#include "companions/devservice/copies/take_copy.h"
#include "companions/devservice/files/file_io.h"
#include "companions/devservice/files/text.h"
#include "tests/unit/companions/devservice/link_maker.h"

namespace ov::devservice {
namespace {

constexpr std::uint64_t test_file_limit_bytes = 64ull * 1024 * 1024;

std::wstring new_root() {
    static int count = 0;
    wchar_t temp[MAX_PATH + 1] = {};
    GetTempPathW(MAX_PATH + 1, temp);
    return joined(clean_path(temp).value(), L"devservice test " + std::to_wstring(GetCurrentProcessId()) +
                                                L"-" + std::to_wstring(++count));
}

}  // namespace

vault_fixture::vault_fixture()
    : root(new_root()),
      user(joined(root, L"user")),
      desktop(joined(root, L"desktop")),
      user_utf8(to_utf8_lossy(user)),
      temp_utf8(to_utf8_lossy(root) + "\\"),
      store(joined(root, L"state")),
      context{store, desktop, {}, {}} {
    EXPECT_EQ(make_folders(user), 0u);
    EXPECT_EQ(make_folders(desktop), 0u);
    EXPECT_EQ(store.reload(), 0u);
}

vault_fixture::~vault_fixture() {
    for (const std::wstring& path : links) {
        remove_link(path);
    }
    remove_tree(root);
}

void vault_fixture::remove_tree(const std::wstring& folder) {
    problems ignored;
    const auto found = walk_folder(folder, L"", ignored);
    for (auto entry = found.rbegin(); entry != found.rend(); ++entry) {
        const std::wstring path = joined(folder, entry->relative);
        if (entry->kind == entry_kind::file) {
            static_cast<void>(remove_file(path));
        } else {
            RemoveDirectoryW(long_form(path).c_str());
        }
    }
    RemoveDirectoryW(long_form(folder).c_str());
}

std::wstring vault_fixture::user_path(const std::wstring& relative) const {
    return joined(user, relative);
}

void vault_fixture::write(const std::wstring& path, const std::string& content) const {
    ASSERT_EQ(make_folders(parent_of(path)), 0u);
    static_cast<void>(remove_file(path));
    ASSERT_EQ(write_new_file(path, content), 0u);
}

std::string vault_fixture::read(const std::wstring& path) {
    std::string content;
    const DWORD error = read_whole_file(path, test_file_limit_bytes, content);
    return error == ERROR_SUCCESS ? content : "unreadable: " + std::to_string(error);
}

bool vault_fixture::exists(const std::wstring& path) {
    return attributes_of(path) != INVALID_FILE_ATTRIBUTES;
}

std::size_t vault_fixture::count_with_content(const std::wstring& folder, const std::string& content) {
    problems ignored;
    std::size_t count = 0;
    for (const found_entry& entry : walk_folder(folder, L"", ignored)) {
        count += entry.kind == entry_kind::file && read(joined(folder, entry.relative)) == content ? 1 : 0;
    }
    return count;
}

std::size_t vault_fixture::count_files(const std::wstring& folder) {
    problems ignored;
    std::size_t count = 0;
    for (const found_entry& entry : walk_folder(folder, L"", ignored)) {
        count += entry.kind == entry_kind::file ? 1 : 0;
    }
    return count;
}

json vault_fixture::call(service_call number, const json& parameters) {
    const json request = {{"parameters", parameters}, {"serviceCall", static_cast<std::int64_t>(number)}};
    return json::parse(answer_request(context, request.dump()));
}

std::string vault_fixture::handed_over(const json& reply) {
    const std::wstring path = from_utf8(reply.at("data").at("objPath").get<std::string>()).value();
    const std::string text = read(path);
    static_cast<void>(remove_file(path));
    return text;
}

void vault_fixture::link(const std::wstring& path, const std::wstring& target) {
    make_link(path, target);
    links.push_back(path);
}

void vault_fixture::protect_user_folder() {
    ASSERT_EQ(status_of_reply(call(service_call::protect_folder, {{"folderName", user_utf8}})), 0);
}

json vault_fixture::take_point(std::size_t left_out_expected) {
    std::int64_t number = 0;
    problems left_out;
    EXPECT_EQ(take_restore_point(store, number, left_out), 0u);
    EXPECT_EQ(left_out.size(), left_out_expected);
    return call(service_call::get_restore_points, json::object()).at("data").at("restorePoints").at(0);
}

}  // namespace ov::devservice
