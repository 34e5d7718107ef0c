#include "companions/devservice/calls/document.h"

#include "companions/devservice/files/path.h"
#include "tests/unit/companions/devservice/vault_fixture.h"

namespace ov::devservice {
namespace {

class Document : public vault_fixture {
  protected:
    std::string fetched() {
        return handed_over(call(service_call::get_protected_folders, {{"tempFolder", temp_utf8}}));
    }
};

TEST_F(Document, has_all_seven_arrays_from_the_start) {
    const json document = json::parse(fetched());
    EXPECT_TRUE(document.at("hardDrive").at("folders").is_array());
    for (const char* key : {"mgmtCustom", "oneDrive", "google", "boxSyn", "dropBox", "oneDriveBusiness"}) {
        EXPECT_TRUE(document.at(key).is_array()) << key;
    }
}

TEST_F(Document, names_rules_folders_and_lists) {
    protect_user_folder();
    ASSERT_EQ(store.change([](service_state& state) -> DWORD {
        state.rules = {L"Documents", L"Saved Games"};
        state.managed = {L"D:\\managed"};
        state.cloud[1] = {L"D:\\drive"};
        return 0;
    }),
              0u);
    const json document = json::parse(fetched());
    const json expected = {"C:\\Users\\[^\\\\]*\\Documents\\", "C:\\Users\\[^\\\\]*\\Saved Games\\",
                           user_utf8};
    EXPECT_EQ(document.at("hardDrive").at("folders"), expected);
    EXPECT_EQ(document.at("mgmtCustom"), json({"D:\\managed"}));
    EXPECT_EQ(document.at("google"), json({"D:\\drive"}));
}

TEST_F(Document, given_text_is_served_as_it_is_until_it_is_released) {
    const std::uint32_t before = store.state().generation;
    write(joined(root, L"given.json"), "{\"broken\":");
    ASSERT_EQ(fix_document(store, joined(root, L"given.json")), 0u);
    EXPECT_NE(store.state().generation, before);
    EXPECT_EQ(fetched(), "{\"broken\":");
    write(joined(root, L"given.json"), "second");
    ASSERT_EQ(fix_document(store, joined(root, L"given.json")), 0u);
    EXPECT_EQ(fetched(), "second");
    ASSERT_EQ(release_document(store), 0u);
    EXPECT_TRUE(json::parse(fetched()).contains("mgmtCustom"));
}

TEST_F(Document, of_a_hundred_thousand_locations_is_handed_over_whole) {
    json large = json::parse(fetched());
    for (int number = 0; number < 100'000; ++number) {
        large["oneDrive"].push_back("C:\\Users\\somebody\\OneDrive\\folder " + std::to_string(number));
    }
    const std::string text = large.dump();
    write(joined(root, L"large.json"), text);
    ASSERT_EQ(fix_document(store, joined(root, L"large.json")), 0u);
    EXPECT_EQ(fetched(), text);
}

TEST_F(Document, beyond_what_clients_read_is_refused) {
    write(joined(root, L"huge.json"), std::string(document_limit_bytes + 1, ' '));
    EXPECT_EQ(fix_document(store, joined(root, L"huge.json")), DWORD{ERROR_FILE_TOO_LARGE});
    EXPECT_FALSE(store.state().fixed_document);
}

}  // namespace
}  // namespace ov::devservice
