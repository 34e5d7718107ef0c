#include "testkit/process/watchdog.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

#include "ovufc/win/handle.h"

namespace ov::test {
namespace {

TEST(Watchdog, scope_that_ends_in_time_is_left_alone) {
    const watchdog dog(60'000);
}

// Not a test by itself: it hangs. The test below runs it in a process of its own and expects its end.
TEST(Watchdog, DISABLED_hang) {
    const watchdog dog(100);
    Sleep(60'000);
}

TEST(Watchdog, scope_that_hangs_ends_the_process_and_says_where) {
    std::array<wchar_t, 1024> program{};
    GetModuleFileNameW(nullptr, program.data(), static_cast<DWORD>(program.size() - 1));
    std::wstring command = L"\"" + std::wstring(program.data()) +
                           L"\" --gtest_also_run_disabled_tests --gtest_filter=Watchdog.DISABLED_hang";
    SECURITY_ATTRIBUTES inheritable{sizeof inheritable, nullptr, TRUE};
    HANDLE read_end = nullptr;
    HANDLE write_end = nullptr;
    ASSERT_TRUE(CreatePipe(&read_end, &write_end, &inheritable, 0));
    const win::unique_kernel_handle reader(read_end);
    win::unique_kernel_handle writer(write_end);
    STARTUPINFOW start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdOutput = start.hStdError = writer.get();
    PROCESS_INFORMATION made{};
    ASSERT_TRUE(
        CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start, &made));
    const win::unique_kernel_handle process(made.hProcess);
    const win::unique_kernel_handle thread(made.hThread);
    writer.reset();
    std::string text;
    std::array<char, 512> piece{};
    DWORD got = 0;
    while (ReadFile(reader.get(), piece.data(), static_cast<DWORD>(piece.size()), &got, nullptr) &&
           got != 0) {
        text.append(piece.data(), got);
    }
    ASSERT_EQ(WaitForSingleObject(process.get(), 20'000), WAIT_OBJECT_0);
    DWORD code = 0;
    GetExitCodeProcess(process.get(), &code);
    EXPECT_EQ(code, watchdog::exit_code);
    EXPECT_NE(text.find("still running after 100 ms"), std::string::npos) << text;
    EXPECT_NE(text.find("testkit_tests.exe+0x"), std::string::npos) << text;
}

}  // namespace
}  // namespace ov::test
