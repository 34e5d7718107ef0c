#include "companions/devservice/files/file_io.h"
#include "companions/devservice/files/path.h"
#include "companions/devservice/files/text.h"
#include "tests/unit/companions/devservice/vault_fixture.h"

namespace ov::devservice {
namespace {

class ChronelCalls : public vault_fixture {
  protected:
    void SetUp() override {
        write(file, "one");
        protect_user_folder();
        write(file, "two");
        static_cast<void>(take_point());
        write(file, "three");
        context.open_file = [this](const std::wstring& path) { opened.push_back(path); };
    }

    json list() {
        return json::parse(handed_over(
            call(service_call::get_file_chronels, {{"fileName", file_utf8}, {"tempFolder", temp_utf8}})));
    }

    static json from_record(const std::string& file, const json& record) {
        return {{"fileName", file},
                {"usedFileName", record.at("fileName")},
                {"cloneFileName", record.at("cloneFileName")},
                {"chronelType", record.at("type")}};
    }

    std::wstring file = user_path(L"plän.txt");
    std::string file_utf8 = to_utf8_lossy(file);
    std::vector<std::wstring> opened;
};

TEST_F(ChronelCalls, list_names_every_version_newest_first) {
    const json versions = list();
    ASSERT_EQ(versions.size(), 2u);
    EXPECT_EQ(versions[0].at("fileName"), "plän.txt");
    EXPECT_EQ(versions[0].at("type"), "restore point");
    EXPECT_EQ(versions[1].at("type"), "first copy");
    EXPECT_EQ(versions[0].at("size"), 3);
    EXPECT_GT(versions[0].at("createdOn"), versions[1].at("createdOn"));
}

TEST_F(ChronelCalls, version_that_did_not_change_is_listed_once) {
    write(file, "two");
    static_cast<void>(take_point());
    EXPECT_EQ(list().size(), 2u);
}

TEST_F(ChronelCalls, list_of_a_file_without_versions_is_an_empty_array) {
    const json reply = call(service_call::get_file_chronels,
                            {{"fileName", user_utf8 + "\\other.txt"}, {"tempFolder", temp_utf8}});
    EXPECT_EQ(handed_over(reply), "[]");
}

TEST_F(ChronelCalls, restore_puts_the_version_back_and_keeps_the_present_one) {
    EXPECT_EQ(status_of_reply(call(service_call::restore_file_chronel, from_record(file_utf8, list()[1]))),
              0);
    EXPECT_EQ(read(file), "one");
    const json versions = list();
    ASSERT_EQ(versions.size(), 3u);
    EXPECT_EQ(versions[0].at("type"), "before a restore");
    EXPECT_EQ(status_of_reply(call(service_call::restore_file_chronel, from_record(file_utf8, versions[0]))),
              0);
    EXPECT_EQ(read(file), "three");
    EXPECT_EQ(count_files(user), 1u);
}

TEST_F(ChronelCalls, restore_of_a_deleted_file_makes_it_again) {
    const json version = list()[0];
    ASSERT_EQ(remove_file(file), 0u);
    EXPECT_EQ(status_of_reply(call(service_call::restore_file_chronel, from_record(file_utf8, version))), 0);
    EXPECT_EQ(read(file), "two");
}

TEST_F(ChronelCalls, identifier_that_was_never_given_out_restores_nothing) {
    for (const json& clone : {json("..\\..\\state.json"), json("C:\\windows\\win.ini"), json("99"), json(""),
                              json("1 "), json("-1"), json("99999999999999999999999")}) {
        const json parameters = {{"fileName", file_utf8}, {"cloneFileName", clone}};
        EXPECT_EQ(status_of_reply(call(service_call::restore_file_chronel, parameters)), 4) << clone;
    }
    EXPECT_EQ(read(file), "three");
}

TEST_F(ChronelCalls, identifier_of_another_shape_is_a_bad_request) {
    for (const json& clone : {json(1), json(nullptr), json::object(), json::array(), json(1.5)}) {
        const json parameters = {
            {"fileName", file_utf8}, {"cloneFileName", clone}, {"usedFileName", "x"}, {"chronelType", clone}};
        EXPECT_EQ(status_of_reply(call(service_call::restore_file_chronel, parameters)), 1) << clone;
        EXPECT_EQ(status_of_reply(call(service_call::open_file_chronel, parameters)), 1) << clone;
    }
}

TEST_F(ChronelCalls, path_outside_the_protected_folders_is_not_written) {
    json parameters = from_record(user_utf8 + "\\..\\plän.txt", list()[0]);
    EXPECT_EQ(status_of_reply(call(service_call::restore_file_chronel, parameters)), 6);
    EXPECT_FALSE(exists(joined(root, L"plän.txt")));
    parameters["tempFolder"] = temp_utf8;
    EXPECT_EQ(status_of_reply(call(service_call::get_file_chronels, parameters)), 3);
}

TEST_F(ChronelCalls, open_writes_the_version_under_the_given_name) {
    json parameters = from_record(file_utf8, list()[1]);
    parameters["usedFileName"] = "plan of yesterday.txt";
    EXPECT_EQ(status_of_reply(call(service_call::open_file_chronel, parameters)), 0);
    ASSERT_EQ(opened.size(), 1u);
    EXPECT_EQ(base_name(opened[0]), L"plan of yesterday.txt");
    EXPECT_EQ(read(opened[0]), "one");
    EXPECT_EQ(read(file), "three");
    static_cast<void>(remove_file(opened[0]));
    RemoveDirectoryW(parent_of(opened[0]).c_str());
}

TEST_F(ChronelCalls, open_takes_no_path_and_no_other_type_from_the_client) {
    for (const char* name : {"..\\..\\evil.exe", "plan.exe", "", "a:b.txt", "..", "con\ntrol.txt"}) {
        json parameters = from_record(file_utf8, list()[1]);
        parameters["usedFileName"] = name;
        ASSERT_EQ(status_of_reply(call(service_call::open_file_chronel, parameters)), 0);
        EXPECT_EQ(base_name(opened.back()), L"plän.txt") << name;
        EXPECT_EQ(parent_of(parent_of(opened.back())), parent_of(root)) << name;
        static_cast<void>(remove_file(opened.back()));
        RemoveDirectoryW(parent_of(opened.back()).c_str());
    }
}

TEST_F(ChronelCalls, list_goes_into_an_existing_folder_only) {
    json parameters = {{"fileName", file_utf8}, {"tempFolder", user_utf8 + "\\absent"}};
    EXPECT_EQ(status_of_reply(call(service_call::get_file_chronels, parameters)), 4);
    parameters["tempFolder"] = "relative";
    EXPECT_EQ(status_of_reply(call(service_call::get_file_chronels, parameters)), 1);
}

}  // namespace
}  // namespace ov::devservice
