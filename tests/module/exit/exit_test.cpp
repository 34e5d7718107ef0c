#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "testkit/files/temp_folder.h"
#include "testkit/process/child_process.h"
#include "testkit/service/scripted_service.h"
#include "tests/module/exit/busy_host.h"
#include "tests/module/exit/exit_tripwire.h"

namespace ov::test {
namespace {

std::string narrow(const wchar_t* text) {
    const std::wstring wide(text);
    return {wide.begin(), wide.end()};
}

TEST(ProcessExit, with_threads_in_calls_waits_and_dialogs_ends_at_once_and_the_module_touches_nothing) {
    scripted_service service([](const scripted_request& request) -> std::optional<scripted_reply> {
        if (request.text.find(narrow(busy_host::protected_folder)) != std::string::npos) {
            return R"({"data":{"protectedFolder":true},"statusCode":0})";
        }
        return std::nullopt;  // without end, as far as the host can see
    });
    service.set_generation(1);
    const temp_folder folder;
    folder.make_folder(busy_host::protected_folder);
    folder.make_folder(busy_host::silent_folder);
    child_process host(this_program(), {L"busy-host", folder.path()});
    const auto code = host.wait(25'000);  // shorter than the wait for an answer, which is 30 s
    ASSERT_TRUE(code) << "the host does not end";
    EXPECT_NE(*code, tripped_exit_code) << "called after the other threads had been ended";
    EXPECT_EQ(*code, static_cast<DWORD>(busy_host::ended_exit_code));
    EXPECT_EQ(service.requests().size(), 4U);  // three about folders, one about the locations
}

}  // namespace
}  // namespace ov::test
