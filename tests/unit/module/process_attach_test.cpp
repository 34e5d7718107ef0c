// What the module learns of its host while it is loaded, and what it makes of a host that tells little.

#include <windows.h>
#include <softpub.h>
#include <wintrust.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "module/state/module_state.h"
#include "testkit/imports/import_patch.h"

namespace ov::module_state {
namespace {

using test::import_patch;

HMODULE self() {
    return GetModuleHandleW(nullptr);
}

// As GetModuleFileNameW answers: a path that does not fit comes cut, with or without a terminator.
struct {
    std::wstring path;
    bool terminates_what_it_cuts = true;
    HMODULE asked_for = nullptr;
    DWORD capacity_chars = 0;
} file_name;

DWORD WINAPI tell_file_name(HMODULE module, LPWSTR buffer, DWORD capacity_chars) {
    file_name.asked_for = module;
    file_name.capacity_chars = capacity_chars;
    const auto fits = std::min<std::size_t>(file_name.path.size(), capacity_chars);
    std::copy_n(file_name.path.c_str(), fits, buffer);
    if (file_name.path.size() < capacity_chars) {
        buffer[fits] = L'\0';
    } else if (file_name.terminates_what_it_cuts) {
        buffer[capacity_chars - 1] = L'\0';
    }
    return static_cast<DWORD>(fits);
}

// A directory of `length_chars` characters, the backslash at its end included.
std::wstring directory_of(std::size_t length_chars) {
    return L"C:\\" + std::wstring(length_chars - 4, L'd') + L"\\";
}

class ProcessAttach : public testing::Test {
  protected:
    ProcessAttach() { file_name = {}; }
    ~ProcessAttach() override { record_process_attach(self()); }

    static std::wstring directory_for(const std::wstring& path) {
        file_name.path = path;
        const import_patch<decltype(GetModuleFileNameW)> patch(self(), "kernel32.dll", "GetModuleFileNameW",
                                                               tell_file_name);
        record_process_attach(self());
        return module_directory;
    }
};

TEST_F(ProcessAttach, path_is_asked_of_the_instance_with_a_limit_of_2048_characters) {
    EXPECT_EQ(directory_for(L"C:\\a\\b\\module.dll"), L"C:\\a\\b\\");
    EXPECT_EQ(file_name.asked_for, self());
    EXPECT_EQ(file_name.capacity_chars, 2048U);
    EXPECT_EQ(module_instance, self());
}

TEST_F(ProcessAttach, longest_path_that_fits_gives_its_whole_directory) {
    const std::wstring directory = directory_of(2046);
    EXPECT_EQ(directory_for(directory + L"m"), directory);
}

TEST_F(ProcessAttach, longer_path_is_taken_up_to_the_limit) {
    const std::wstring cut = L"C:\\short\\" + std::wstring(2100, L'x') + L"\\m.dll";
    EXPECT_EQ(directory_for(cut), L"C:\\short\\");
    file_name.terminates_what_it_cuts = false;
    EXPECT_EQ(directory_for(cut), L"C:\\short\\");
    // The one character behind the limit would be a backslash.
    EXPECT_EQ(directory_for(directory_of(2048) + L"m.dll"), L"C:\\");
}

TEST_F(ProcessAttach, path_without_a_backslash_gives_no_directory) {
    EXPECT_EQ(directory_for(L"orvshellext.dll"), L"");
    EXPECT_EQ(directory_for(L"C:/a/orvshellext.dll"), L"");
    EXPECT_EQ(directory_for(L""), L"");
}

std::vector<std::wstring> verified;

LONG WINAPI note_and_refuse(HWND, GUID*, LPVOID data) {
    verified.emplace_back(static_cast<WINTRUST_DATA*>(data)->pFile->pcwszFilePath);
    return TRUST_E_NOSIGNATURE;
}

TEST_F(ProcessAttach, resource_library_is_looked_for_in_the_directory_or_under_its_bare_name) {
    const import_patch<decltype(WinVerifyTrust)> patch(self(), "wintrust.dll", "WinVerifyTrust",
                                                       note_and_refuse);
    (void)directory_for(L"C:\\a\\module.dll");
    verified.clear();
    load_resource_library();
    ASSERT_FALSE(verified.empty());
    EXPECT_EQ(verified.front(), L"C:\\a\\orvres.dll");

    (void)directory_for(L"module.dll");
    verified.clear();
    load_resource_library();
    ASSERT_FALSE(verified.empty());
    EXPECT_EQ(verified.front(), L"orvres.dll");
}

constexpr DWORD some_process = 4711;
constexpr DWORD some_session = 9;
DWORD session_asked_of = 0;

DWORD WINAPI tell_some_process() {
    return some_process;
}

BOOL WINAPI tell_some_session(DWORD process_id, DWORD* session_id) {
    session_asked_of = process_id;
    *session_id = some_session;
    return TRUE;
}

BOOL WINAPI tell_no_session(DWORD, DWORD*) {
    SetLastError(ERROR_ACCESS_DENIED);
    return FALSE;
}

// Of the fixture's own kind, for its end: the true ids come back.
class ProcessAttachIds : public ProcessAttach {};

TEST_F(ProcessAttachIds, process_and_its_session_are_kept) {
    const import_patch<decltype(GetCurrentProcessId)> process(self(), "kernel32.dll", "GetCurrentProcessId",
                                                              tell_some_process);
    const import_patch<decltype(ProcessIdToSessionId)> session(self(), "kernel32.dll", "ProcessIdToSessionId",
                                                               tell_some_session);
    record_process_attach(self());
    EXPECT_EQ(current_process_id, some_process);
    EXPECT_EQ(session_asked_of, some_process);
    EXPECT_EQ(current_session_id, some_session);
}

TEST_F(ProcessAttachIds, session_that_the_system_does_not_tell_stays_zero) {
    current_session_id = 0;  // as at load
    const import_patch<decltype(ProcessIdToSessionId)> session(self(), "kernel32.dll", "ProcessIdToSessionId",
                                                               tell_no_session);
    record_process_attach(self());
    EXPECT_EQ(current_session_id, 0U);
    EXPECT_EQ(current_process_id, GetCurrentProcessId());
}

TEST_F(ProcessAttach, restore_flag_and_cache_lock_are_at_rest) {
    restoreInProgress = 1;
    AcquireSRWLockExclusive(&cacheLock);
    record_process_attach(self());
    EXPECT_EQ(restoreInProgress, 0);
    ASSERT_TRUE(TryAcquireSRWLockExclusive(&cacheLock));
    ReleaseSRWLockExclusive(&cacheLock);
}

}  // namespace
}  // namespace ov::module_state
