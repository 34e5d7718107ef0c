// The shipped module's folder over the real driver: which items come of which document and flags.

#include <algorithm>

#include "ovufc/com/adopt.h"
#include "testkit/memory/failing_allocations.h"
#include "testkit/service/document_service.h"
#include "tests/module/namespace/module_folder.h"

namespace {

using namespace ov::test;

constexpr std::uint16_t folder_type = 0x1010;
constexpr std::uint16_t cloud_type = 0x5050;
constexpr std::uint16_t restore_type = 0x6060;
constexpr std::uint16_t addons_type = 0x7070;

class NamespaceItems : public module_folder_test {
  protected:
    // Items of a new folder while `document` is served.
    [[nodiscard]] std::vector<seen_item> shown(const std::string& document) {
        service.publish(document);
        return items_of(*make_folder().Get());
    }

    // Index and path of the items that do not come from known folders.
    [[nodiscard]] std::vector<seen_item> shown_locations(const std::string& document) {
        std::vector<seen_item> items = shown(document);
        std::erase_if(items, [](const seen_item& item) { return item.name.starts_with(L"C:\\users\\"); });
        std::erase_if(items, [](const seen_item& item) { return item.type == restore_type; });
        return items;
    }

    document_service service;
};

std::string arrays(const std::string& folders, const std::string& others = "") {
    std::string text = R"({"hardDrive":{"folders":)" + folders + "}";
    for (const char* key : {"oneDrive", "google", "boxSyn", "dropBox", "oneDriveBusiness", "mgmtCustom"}) {
        if (others.find('"' + std::string(key) + '"') == std::string::npos) {
            text += std::string(",\"") + key + "\":[]";
        }
    }
    return text + (others.empty() ? "" : "," + others) + "}";
}

TEST_F(NamespaceItems, user_folders_local_managed_and_cloud_folders_stand_in_their_order) {
    const std::string document = arrays(
        R"(["C:\\Users\\[^\\\\]*\\Music\\","D:\\local 1","C:\\Users\\[^\\\\]*\\Desktop\\","D:\\local 2",)"
        R"("C:\\Users\\[^\\\\]*\\Documents\\"])",
        R"("mgmtCustom":["D:\\managed"],"oneDriveBusiness":["D:\\business"],"dropBox":["D:\\dropped"],)"
        R"("boxSyn":["D:\\box"],"google":["D:\\g1","D:\\g2"],"oneDrive":["D:\\one"])");
    const std::vector<seen_item> expected{
        {folder_type, 0, known_path(FOLDERID_Desktop)},
        {folder_type, 1, known_path(FOLDERID_Documents)},
        {folder_type, 2, L"D:\\local 1"},
        {folder_type, 3, L"D:\\local 2"},
        {folder_type, 4, L"D:\\managed"},
        {cloud_type, 5, L"D:\\one"},
        {cloud_type, 6, L"D:\\g1"},
        {cloud_type, 7, L"D:\\g2"},
        {cloud_type, 8, L"D:\\box"},
        {cloud_type, 9, L"D:\\dropped"},
        {cloud_type, 10, L"D:\\business"},
        {folder_type, 11, known_path(FOLDERID_Music)},
    };
    auto items = shown(document);
    ASSERT_FALSE(items.empty());
    EXPECT_EQ(restore_type, items.back().type);
    EXPECT_EQ(12, items.back().index);
    items.pop_back();
    EXPECT_EQ(expected, items);
    EXPECT_FALSE(service.last_file_exists()) << "the document's file is deleted once it is read";
}

TEST_F(NamespaceItems, desktop_rule_in_lower_case_gives_the_desktop) {
    const auto items = shown(arrays(R"(["c:\\users\\[^\\\\]*\\desktop\\"])"));
    ASSERT_EQ(2u, items.size());
    EXPECT_EQ(known_path(FOLDERID_Desktop), items[0].name);
}

TEST_F(NamespaceItems, rule_for_the_downloads_folder_gives_no_item_and_no_user_folder) {
    const auto items = shown(arrays(R"(["C:\\Users\\[^\\\\]*\\Downloads\\"])"));
    ASSERT_EQ(1u, items.size());
    EXPECT_EQ(restore_type, items[0].type);
}

TEST_F(NamespaceItems, empty_local_folders_give_no_user_folder) {
    EXPECT_EQ(1u, shown(arrays("[]")).size());
}

TEST_F(NamespaceItems, document_without_managed_folders_shows_user_folders_only) {
    const auto items = shown(
        R"({"hardDrive":{"folders":["C:\\Users\\[^\\\\]*\\Music\\","D:\\local"]},"oneDrive":["D:\\one"],)"
        R"("google":[],"boxSyn":[],"dropBox":[],"oneDriveBusiness":[]})");
    ASSERT_EQ(2u, items.size());
    EXPECT_EQ((seen_item{folder_type, 0, known_path(FOLDERID_Music)}), items[0]);
}

TEST_F(NamespaceItems, number_in_a_cloud_array_ends_the_list_there_and_uses_up_an_index) {
    const auto items =
        shown(arrays(R"(["D:\\local","C:\\Users\\[^\\\\]*\\Videos\\"])",
                     R"("oneDrive":["D:\\one"],"google":["D:\\g1",7,"D:\\g2"],"boxSyn":["D:\\box"])"));
    const std::vector<seen_item> expected{
        {folder_type, 0, L"D:\\local"},
        {cloud_type, 1, L"D:\\one"},
        {cloud_type, 2, L"D:\\g1"},
        {folder_type, 4, known_path(FOLDERID_Videos)},
    };
    ASSERT_EQ(5u, items.size());
    EXPECT_EQ(expected, std::vector<seen_item>(items.begin(), items.end() - 1));
    EXPECT_EQ(5, items.back().index);
}

TEST_F(NamespaceItems, broken_entry_of_each_array_but_the_local_folders_uses_up_an_index) {
    for (const std::string key :
         {"mgmtCustom", "oneDrive", "google", "boxSyn", "dropBox", "oneDriveBusiness"}) {
        const auto items = shown(arrays("[]", "\"" + key + "\":[7]"));
        ASSERT_EQ(1u, items.size()) << key;
        EXPECT_EQ(1, items.back().index) << key;
    }
}

TEST_F(NamespaceItems, number_among_the_local_folders_uses_up_no_index) {
    const auto items = shown(arrays(R"(["D:\\local",7,"D:\\more"])", R"("mgmtCustom":["D:\\managed"])"));
    // All user folders, because the rules could not be read to their end.
    ASSERT_GE(items.size(), 8u);
    EXPECT_EQ(known_path(FOLDERID_Desktop), items[0].name);
    EXPECT_EQ(known_path(FOLDERID_Documents), items[1].name);
    EXPECT_EQ((seen_item{folder_type, 2, L"D:\\local"}), items[2]);
    EXPECT_EQ((seen_item{folder_type, 3, known_path(FOLDERID_Pictures)}), items[3]);
}

TEST_F(NamespaceItems, path_listed_twice_is_shown_twice) {
    const auto items = shown(arrays(R"(["D:\\x","D:\\x"])", R"("google":["D:\\x"])"));
    const std::vector<seen_item> expected{
        {folder_type, 0, L"D:\\x"}, {folder_type, 1, L"D:\\x"}, {cloud_type, 2, L"D:\\x"}};
    ASSERT_EQ(4u, items.size());
    EXPECT_EQ(expected, std::vector<seen_item>(items.begin(), items.end() - 1));
}

TEST_F(NamespaceItems, wrong_shapes_show_the_user_folders_and_nothing_else) {
    const std::vector<seen_item> all = items_of(*make_folder().Get());
    ASSERT_GE(all.size(), 7u);
    for (const std::string document : {R"(no json)", R"({})", R"([])", R"({"hardDrive":{"folders":null}})",
                                       R"({"hardDrive":{"folders":{}}})", R"({"hardDrive":null})",
                                       R"({"hardDrive":{"folders":[)", R"("text")"}) {
        EXPECT_EQ(all, shown(document)) << document;
    }
    EXPECT_EQ(all, shown(std::string(200'000, '['))) << "nested without end";
}

TEST_F(NamespaceItems, names_beyond_ascii_arrive_whole) {
    const auto items = shown_locations(arrays("[\"D:\\\\H\xC3\xA4user \xE6\x97\xA5\xE6\x9C\xAC\"]"));
    ASSERT_EQ(1u, items.size());
    EXPECT_EQ(L"D:\\H\x00E4user \x65E5\x672C", items[0].name);
}

TEST_F(NamespaceItems, flags_decide_which_action_entries_are_shown) {
    struct {
        std::uint32_t flags;
        bool restore;
        bool addons;
    } const rows[] = {
        {0, true, false},
        {ORV_FLAG_UI_RESTRICTED, false, false},
        {ORV_FLAG_RESTORE_HIDDEN, false, false},
        {ORV_FLAG_ADDONS_SHOWN, true, true},
        {ORV_FLAG_ADDONS_SHOWN | ORV_FLAG_UI_RESTRICTED, false, true},
        {ORV_FLAG_ADDONS_SHOWN | ORV_FLAG_RESTORE_HIDDEN, false, true},
        {2 | ORV_FLAG_EXPORTS_AVAILABLE | ORV_FLAG_DETAILS_VIEW | ORV_FLAG_UNPROTECT_BLOCKED, true, false},
    };
    service.publish(arrays("[]"));
    for (const auto& row : rows) {
        service.set_flags(row.flags);
        std::vector<std::uint16_t> types;
        for (const seen_item& item : items_of(*make_folder().Get())) {
            types.push_back(item.type);
        }
        std::vector<std::uint16_t> expected;
        if (row.restore) {
            expected.push_back(restore_type);
        }
        if (row.addons) {
            expected.push_back(addons_type);
        }
        EXPECT_EQ(expected, types) << row.flags;
    }
}

TEST_F(NamespaceItems, details_flag_opens_the_view_in_details) {
    service.publish(arrays("[]"));
    for (const auto& [flags, mode] : {std::pair<std::uint32_t, UINT>{ORV_FLAG_DETAILS_VIEW, FVM_DETAILS},
                                      std::pair<std::uint32_t, UINT>{0, FVM_ICON}}) {
        service.set_flags(flags);
        ComPtr<IShellView> view;
        ASSERT_EQ(S_OK, make_folder()->CreateViewObject(nullptr, IID_IShellView,
                                                        reinterpret_cast<void**>(view.GetAddressOf())));
        ComPtr<IFolderView2> modes;
        ASSERT_EQ(S_OK, view.As(&modes));
        UINT seen = 0;
        EXPECT_EQ(S_OK, modes->GetCurrentViewMode(&seen));
        EXPECT_EQ(mode, seen);
    }
}

TEST_F(NamespaceItems, item_of_the_document_opens_the_real_folder) {
    service.publish(arrays(R"(["C:\\windows"])"));
    const auto folder = make_folder();
    wchar_t name[] = L"c:\\WINDOWS";
    PIDLIST_RELATIVE id = nullptr;
    ASSERT_EQ(S_OK, folder->ParseDisplayName(nullptr, nullptr, name, nullptr, &id, nullptr));
    ComPtr<IShellFolder> real;
    EXPECT_EQ(S_OK, folder->BindToObject(id, nullptr, IID_IShellFolder,
                                         reinterpret_cast<void**>(real.GetAddressOf())));
    CoTaskMemFree(id);
    ASSERT_NE(nullptr, real);
    wchar_t inner[] = L"system32";
    PIDLIST_RELATIVE inner_id = nullptr;
    EXPECT_EQ(S_OK, real->ParseDisplayName(nullptr, nullptr, inner, nullptr, &inner_id, nullptr));
    CoTaskMemFree(inner_id);
}

TEST_F(NamespaceItems, want_of_memory_costs_the_items_of_the_document_or_the_whole_folder) {
    service.publish(arrays(R"(["D:\\a local folder with a name that is allocated"])",
                           R"("mgmtCustom":["D:\\a managed folder of the same kind"])"));
    const std::vector<seen_item> whole = items_of(*make_folder().Get());
    bool document_was_missing = false;
    const int failures =
        fail_each_allocation(module.handle(), failing_allocations::mode::once, [&](auto& memory) {
            void* made = nullptr;
            const HRESULT result = module.create(ov::class_ids::namespace_folder, IID_IShellFolder2, &made);
            memory.pause();
            ASSERT_EQ(made != nullptr ? S_OK : E_OUTOFMEMORY, result);
            if (made == nullptr) {
                return;
            }
            const auto folder = ov::com::adopt(static_cast<IShellFolder2*>(made));
            const std::vector<seen_item> items = items_of(*folder.Get());
            // What does not come from the document is there in any case.
            ASSERT_EQ(1, std::count_if(items.begin(), items.end(),
                                       [](const seen_item& item) { return item.type == restore_type; }));
            document_was_missing = document_was_missing || items.size() != whole.size();
            if (!memory.met()) {
                EXPECT_EQ(whole, items);
            }
        });
    EXPECT_GE(failures, 5);
    EXPECT_TRUE(document_was_missing);
}

TEST_F(NamespaceItems, hundred_thousand_locations_are_listed) {
    std::string folders = "[";
    for (int i = 0; i < 100'000; ++i) {
        folders += (i != 0 ? ",\"D:\\\\folder " : "\"D:\\\\folder ") + std::to_string(i) + '"';
    }
    const auto items = shown(arrays(folders + "]"));
    ASSERT_EQ(100'001u, items.size());
    EXPECT_EQ(L"D:\\folder 99999", items[99'999].name);
    EXPECT_EQ(static_cast<std::uint16_t>(99'999), items[99'999].index) << "the counter is kept in 16 bits";
}

}  // namespace
