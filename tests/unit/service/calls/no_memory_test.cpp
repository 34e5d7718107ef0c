#include <windows.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <new>
#include <optional>
#include <string>
#include <vector>

#include "ovufc/json.h"
#include "service/calls.h"
#include "testkit/files/temp_file.h"
#include "testkit/memory/failing_allocations.h"
#include "tests/unit/service/calls/calls_fixture.h"

namespace {

using namespace ov::service;  // the functions under test

class NoMemory : public ov::test::service_calls_test {
  protected:
    /// Fails each allocation of `call` in turn, with all that follow it, and looks at each outcome; ends with
    /// the run that needs none of the failures. Says how many runs failed.
    static int fail_each(const std::function<void()>& call, const std::function<void()>& check_failure) {
        using ov::test::failing_allocations;
        return ov::test::fail_each_allocation(GetModuleHandleW(nullptr),
                                              failing_allocations::mode::from_then_on, [&](auto& memory) {
                                                  call();
                                                  memory.pause();
                                                  if (memory.met()) {
                                                      check_failure();
                                                  }
                                              });
    }
};

TEST_F(NoMemory, outcome_call_is_unexpected) {
    answer(R"({"statusCode":0,"data":{"a":["text that is too long for a string's own buffer"]}})");
    const std::wstring folder = L"C:\\a folder with a name of some length";
    HRESULT result = S_OK;
    EXPECT_GT(fail_each([&] { result = protect_folder(folder); }, [&] { EXPECT_EQ(result, E_UNEXPECTED); }),
              5);
    EXPECT_EQ(result, S_OK);
}

TEST_F(NoMemory, folder_status_is_false_and_leaves_the_flags) {
    service.set_flags(ORV_FLAG_EXPORTS_AVAILABLE);
    answer(R"({"statusCode":0,"data":{"protectedFolder":true,"uiLevel":"restricted"}})");
    const std::wstring folder = L"C:\\a folder with a name of some length";
    bool is_protected = false;
    bool restricted = false;
    bool exports_available = false;
    EXPECT_GT(fail_each([&] { is_protected = get_folder_status(folder, restricted, exports_available); },
                        [&] { EXPECT_FALSE(is_protected || restricted || exports_available); }),
              5);
    EXPECT_TRUE(is_protected && restricted && exports_available);
}

TEST_F(NoMemory, restore_points_are_none) {
    answer(R"({"statusCode":0,"data":{"restorePoints":[{"createdOn":5,"sequenceNumber":6}]}})");
    std::int64_t createdOn = 0;
    std::int64_t sequenceNumber = 0;
    bool found = false;
    EXPECT_GT(fail_each([&] { found = get_restore_points(createdOn, sequenceNumber); },
                        [&] { EXPECT_FALSE(found); }),
              5);
    EXPECT_TRUE(found);
}

TEST_F(NoMemory, restore_from_point_is_true) {
    answer(R"({"statusCode":5})");
    bool restored = false;
    EXPECT_GT(fail_each([&] { restored = restore_from_point(1, 2); }, [&] { EXPECT_TRUE(restored); }), 5);
    EXPECT_FALSE(restored);
}

TEST_F(NoMemory, last_timestamp_is_none) {
    answer(R"({"statusCode":-2,"data":{"lastTimestamp":5}})");
    std::optional<std::uint64_t> timestamp;
    EXPECT_GT(
        fail_each([&] { timestamp = get_last_timestamp(); }, [&] { EXPECT_EQ(timestamp, std::nullopt); }), 5);
    EXPECT_EQ(timestamp, 5u);
}

TEST_F(NoMemory, restore_folders_are_empty) {
    const std::string text = R"({"restoreFolders":["C:\\a folder with a name of some length","D:\\"]})";
    std::vector<std::wstring> folders;
    std::optional<ov::test::temp_file> file(text);
    answer_with_file(file->path());
    const int runs = fail_each([&] { folders = get_restore_folders(1, 2); },
                               [&] {
                                   EXPECT_TRUE(folders.empty());
                                   file.emplace(text);
                                   answer_with_file(file->path());
                               });
    EXPECT_GT(runs, 5);
    EXPECT_EQ(folders.size(), 2u);
    EXPECT_FALSE(file->exists());
}

TEST_F(NoMemory, chronel_command_raises_nothing_but_no_memory) {
    const std::string identifier =
        R"({"fileName":"a file with a name of some length","cloneFileName":{"a":["b",{"c":[1,2]}]},"type":[[[1]]]})";
    int raised = 0;
    EXPECT_GT(fail_each(
                  [&] {
                      try {
                          restore_file_chronel(L"C:\\a file with a name of some length", identifier);
                      } catch (const std::bad_alloc&) {
                          ++raised;
                      }
                  },
                  [] {}),
              5);
    EXPECT_GT(raised, 0);
}

}  // namespace
