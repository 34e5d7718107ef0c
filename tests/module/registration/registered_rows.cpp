#include "tests/module/registration/registered_rows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string_view>

#include "module/registration/registration_table.h"
#include "testkit/process/shipped_module.h"

namespace ov::registration {

namespace {

// A 32-bit module's own view is the 32-bit one: its second pass writes over what its first has written.
constexpr bool has_one_view = sizeof(void*) == 4;

HKEY root_of(const registration_row& row) {
    return row.root == root_key::classes_root ? HKEY_CLASSES_ROOT : HKEY_LOCAL_MACHINE;
}

struct read_value {
    LSTATUS status = 0;
    DWORD type = 0;
    std::vector<BYTE> data;
};

/// Reads a value, or with a null name just opens its key.
read_value read(HKEY root, const wchar_t* path, REGSAM view, const wchar_t* name) {
    read_value read;
    HKEY key = nullptr;
    read.status = RegOpenKeyExW(root, path, 0, KEY_READ | view, &key);
    if (read.status != ERROR_SUCCESS || name == nullptr) {
        RegCloseKey(key);
        return read;
    }
    DWORD size_bytes = 4096;
    read.data.resize(size_bytes);
    read.status = RegQueryValueExW(key, name, nullptr, &read.type, read.data.data(), &size_bytes);
    read.data.resize(read.status == ERROR_SUCCESS ? size_bytes : 0);
    RegCloseKey(key);
    return read;
}

std::vector<BYTE> bytes_of(const std::wstring& text) {
    const auto* first = reinterpret_cast<const BYTE*>(text.c_str());
    return {first, first + (text.size() + 1) * sizeof(wchar_t)};
}

/// What a row should have left in a view: type and bytes.
read_value expected(const registration_row& row, REGSAM view) {
    if ((has_one_view || view == KEY_WOW64_32KEY) && row.pass_2 == second_pass::server_32) {
        return {0, REG_EXPAND_SZ, bytes_of(server_32_path)};
    }
    switch (row.kind) {
        case data::text:
            return {0, REG_SZ, bytes_of(row.text)};
        case data::number: {
            const auto* first = reinterpret_cast<const BYTE*>(&row.number);
            return {0, REG_DWORD, {first, first + sizeof row.number}};
        }
        case data::module_path:
            return {0, REG_SZ, bytes_of(module_path())};
        case data::icon_location:
            return {0, REG_SZ, bytes_of(module_path() + L", -103")};
        default:
            return {ERROR_FILE_NOT_FOUND, 0, {}};
    }
}

}  // namespace

const std::wstring restore_name = L"{E7A05C3B-2D91-4B68-8F4C-16B93AD0725E}";
const std::wstring addons_name = L"{5D8F13A6-74E2-4C0B-B39D-E2A6F7081C54}";

const std::vector<std::wstring> left_behind = [] {
    std::vector<std::wstring> keys = {restore_name, addons_name, L"32:" + restore_name, L"32:" + addons_name};
    if (!has_one_view) {
        for (const wchar_t* type : {L"OrvaneFolderType", L"OrvaneRestoreType", L"OrvaneAddonsType"}) {
            keys.push_back(std::wstring(L"32:SOFTWARE\\Classes\\") + type +
                           L"\\shellex\\ContextMenuHandlers\\Orvane Vaultkeep");
        }
    }
    return keys;
}();

void remove_left_behind() {
    for (const std::wstring& name : {restore_name, addons_name}) {
        RegDeleteTreeW(HKEY_CLASSES_ROOT, name.c_str());
        RegDeleteTreeW(HKEY_CLASSES_ROOT, (L"WOW6432Node\\" + name).c_str());
    }
    for (const wchar_t* type : {L"OrvaneFolderType", L"OrvaneRestoreType", L"OrvaneAddonsType"}) {
        RegDeleteTreeW(HKEY_LOCAL_MACHINE,
                       (std::wstring(L"SOFTWARE\\Classes\\WOW6432Node\\") + type).c_str());
    }
}

std::wstring module_path() {
    return test::program_directory() + L"orvshellext.dll";
}

void expect_registered() {
    for (const REGSAM view : view_flags) {
        for (const registration_row& row : registration_rows()) {
            SCOPED_TRACE(testing::Message() << row.path << L" : " << row.value_name << L" view " << view);
            if (!has_one_view && view != 0 && row.pass_2 == second_pass::left_out) {
                EXPECT_EQ(read(root_of(row), row.path, view, nullptr).status, ERROR_FILE_NOT_FOUND);
                continue;
            }
            EXPECT_EQ(read(root_of(row), row.path, view, nullptr).status, ERROR_SUCCESS);
            const read_value found = read(root_of(row), row.path, view, row.value_name);
            const read_value wanted = expected(row, view);
            EXPECT_EQ(found.status, wanted.status);
            EXPECT_EQ(found.type, wanted.type);
            EXPECT_EQ(found.data, wanted.data);
        }
    }
}

std::vector<std::wstring> registered_keys() {
    std::vector<std::wstring> found;
    for (const REGSAM view : view_flags) {
        for (const registration_row& row : registration_rows()) {
            const bool shared = std::wstring_view(row.path).ends_with(L"NewStartPanel");
            const wchar_t* name = shared ? row.value_name : nullptr;
            if (read(root_of(row), row.path, view, name).status == ERROR_SUCCESS) {
                const std::wstring path = (view != 0 ? L"32:" : L"") + std::wstring(row.path);
                if (std::ranges::find(found, path) == found.end()) {
                    found.push_back(path);
                }
            }
        }
    }
    return found;
}

}  // namespace ov::registration
