#include <algorithm>
#include <cstring>
#include <memory>

#include "companions/devservice/command_line/commands.h"
#include "companions/devservice/files/file_io.h"
#include "companions/devservice/files/path.h"
#include "companions/devservice/files/text.h"
#include "ovufc/ipc/drvport/client.h"
#include "testkit/process/child_process.h"
#include "testkit/process/module_attach.h"
#include "tests/unit/companions/devservice/vault_fixture.h"

namespace ov::devservice {
namespace {

constexpr DWORD patience_ms = 20'000;

/// The real service in a process of its own, the real driver, and this process as the client.
class ServiceProcess : public vault_fixture {
  protected:
    void SetUp() override { start(); }

    void TearDown() override { static_cast<void>(command({L"stop"})); }

    [[nodiscard]] static std::wstring program() {
        return joined(parent_of(test::this_program()), L"orvsvc.exe");
    }

    [[nodiscard]] std::vector<std::wstring> on_state(std::vector<std::wstring> words) const {
        words.insert(words.begin(), {L"--state", store.folder()});
        return words;
    }

    void start() {
        service = std::make_unique<test::child_process>(
            program(), on_state({L"run", L"--no-open", L"--desktop", desktop}));
        const ULONGLONG start_ms = GetTickCount64();
        while (ipc::drvport::state() == 0 && GetTickCount64() - start_ms < patience_ms) {
            Sleep(10);
        }
        ASSERT_NE(ipc::drvport::state(), 0u) << "the service does not serve";
    }

    /// Runs a command to its end; its exit code.
    [[nodiscard]] DWORD command(std::vector<std::wstring> words) const {
        return test::child_process(program(), on_state(std::move(words)))
            .wait(patience_ms)
            .value_or(~DWORD{0});
    }

    /// One exchange through the driver.
    [[nodiscard]] static json ask(service_call number, const json& parameters) {
        const std::string text =
            json{{"parameters", parameters}, {"serviceCall", static_cast<std::int64_t>(number)}}.dump();
        orv_request request{};
        request.process_id = GetCurrentProcessId();
        request.thread_id = GetCurrentThreadId();
        std::memcpy(request.text, text.data(), std::min<std::size_t>(text.size(), sizeof request.text - 1));
        std::string reply(ORV_REPLY_LIMIT_BYTES, '\0');
        std::uint32_t reply_bytes = 0;
        if (!ipc::drvport::transact(request, reply.data(), reply_bytes)) {
            return {{"statusCode", -1000}, {"data", "no reply"}};
        }
        return json::parse(reply.substr(0, reply_bytes));
    }

    [[nodiscard]] bool told_protected() const {
        return ask(service_call::get_folder_status, {{"folderName", user_utf8}})
            .at("data")
            .at("protectedFolder")
            .get<bool>();
    }

    std::unique_ptr<test::child_process> service;
};

TEST_F(ServiceProcess, folder_protected_through_the_driver_comes_back_byte_identical) {
    const std::string content(200'000, '\x7f');
    write(user_path(L"photos\\Zürich.jpg"), content);
    write(user_path(L"notes.txt"), "notes");
    EXPECT_FALSE(told_protected());
    const std::uint32_t generation = ipc::drvport::generation();
    ASSERT_EQ(status_of_reply(ask(service_call::protect_folder, {{"folderName", user_utf8}})), 0);
    EXPECT_TRUE(told_protected());
    EXPECT_NE(ipc::drvport::generation(), generation);
    ASSERT_EQ(command({L"restore-point"}), DWORD{exit_done});

    write(user_path(L"photos\\Zürich.jpg"), std::string(200'000, 'x'));
    ASSERT_EQ(remove_file(user_path(L"notes.txt")), 0u);
    write(user_path(L"READ ME.txt"), "pay");

    json point = ask(service_call::get_restore_points, json::object()).at("data").at("restorePoints").at(0);
    point["tempFolder"] = temp_utf8;
    const json folders = json::parse(handed_over(ask(service_call::get_restore_folders, point)));
    EXPECT_EQ(folders.at("restoreFolders"), json({user_utf8}));
    EXPECT_EQ(status_of_reply(ask(service_call::restore_from_point, point)), 0);

    EXPECT_EQ(read(user_path(L"photos\\Zürich.jpg")), content);
    EXPECT_EQ(read(user_path(L"notes.txt")), "notes");
    EXPECT_EQ(count_files(user), 2u);
    const json last = ask(service_call::get_last_timestamp, json::object());
    EXPECT_EQ(status_of_reply(last), -2);
    EXPECT_EQ(last.at("data").at("lastTimestamp"), point.at("createdOn"));
}

TEST_F(ServiceProcess, commands_change_what_clients_see_before_they_end) {
    EXPECT_EQ(ipc::drvport::flags(), 0u);
    ASSERT_EQ(command({L"flags", L"--exports", L"on", L"--details", L"on"}), DWORD{exit_done});
    EXPECT_EQ(ipc::drvport::flags(), ORV_FLAG_EXPORTS_AVAILABLE | ORV_FLAG_DETAILS_VIEW);
    const std::uint32_t generation = ipc::drvport::generation();
    ASSERT_EQ(command({L"protect", L"--rule", L"Music"}), DWORD{exit_done});
    EXPECT_NE(ipc::drvport::generation(), generation);
    const json document =
        json::parse(handed_over(ask(service_call::get_protected_folders, {{"tempFolder", temp_utf8}})));
    EXPECT_EQ(document.at("hardDrive").at("folders"), json({"C:\\Users\\[^\\\\]*\\Music\\"}));
}

TEST_F(ServiceProcess, exports_and_chronels_go_through_the_driver) {
    write(user_path(L"plan.txt"), "one");
    ASSERT_EQ(status_of_reply(
                  ask(service_call::protect_folder_as, {{"folderName", user_utf8}, {"objPath", "D:\\x"}})),
              0);
    write(user_path(L"plan.txt"), "two");
    ASSERT_EQ(command({L"flags", L"--exports", L"on"}), DWORD{exit_done});
    EXPECT_EQ(ask(service_call::export_folder, {{"exportType", "chronels"}, {"folderName", user_utf8}})
                  .at("data")
                  .at("files"),
              1);
    EXPECT_EQ(count_with_content(desktop, "one"), 1u);
    const std::string file = user_utf8 + "\\plan.txt";
    const json versions = json::parse(
        handed_over(ask(service_call::get_file_chronels, {{"fileName", file}, {"tempFolder", temp_utf8}})));
    ASSERT_EQ(versions.size(), 1u);
    EXPECT_EQ(status_of_reply(
                  ask(service_call::restore_file_chronel, {{"fileName", file},
                                                           {"usedFileName", versions[0].at("fileName")},
                                                           {"cloneFileName", versions[0].at("cloneFileName")},
                                                           {"chronelType", versions[0].at("type")}})),
              0);
    EXPECT_EQ(read(user_path(L"plan.txt")), "one");
}

TEST_F(ServiceProcess, killed_service_is_seen_gone_and_its_successor_remembers) {
    write(user_path(L"a.txt"), "content");
    ASSERT_EQ(status_of_reply(ask(service_call::protect_folder, {{"folderName", user_utf8}})), 0);
    service->kill();
    const ULONGLONG start_ms = GetTickCount64();
    while (ipc::drvport::state() != 0 && GetTickCount64() - start_ms < patience_ms) {
        Sleep(10);
    }
    EXPECT_EQ(ipc::drvport::state(), 0u);
    EXPECT_EQ(command({L"stop"}), DWORD{exit_absent});
    start();
    EXPECT_TRUE(told_protected());
}

TEST_F(ServiceProcess, second_service_on_another_state_does_not_take_the_driver) {
    test::child_process second(program(), {L"--state", joined(root, L"other"), L"run"});
    EXPECT_EQ(second.wait(patience_ms), DWORD{exit_failed});
    EXPECT_EQ(status_of_reply(ask(service_call::get_restore_points, json::object())), 0);
}

TEST_F(ServiceProcess, stop_ends_it_cleanly) {
    EXPECT_EQ(command({L"stop"}), DWORD{exit_done});
    EXPECT_EQ(service->wait(patience_ms), DWORD{exit_done});
    EXPECT_EQ(ipc::drvport::state(), 0u);
}

TEST_F(ServiceProcess, nonsense_from_a_client_gets_an_answer_and_the_service_goes_on) {
    orv_request request{};
    std::memset(request.text, '[', sizeof request.text);
    std::string reply(ORV_REPLY_LIMIT_BYTES, '\0');
    std::uint32_t reply_bytes = 0;
    ASSERT_TRUE(ipc::drvport::transact(request, reply.data(), reply_bytes));
    EXPECT_EQ(json::parse(reply.substr(0, reply_bytes)).at("statusCode"), 1);
    EXPECT_FALSE(told_protected());
}

}  // namespace
}  // namespace ov::devservice
