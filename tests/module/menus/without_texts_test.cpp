// The module beside a resource library that it does not take: every localised text is empty, all else works.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <shlobj.h>
#include <wincrypt.h>
#include <wrl/client.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <fstream>
#include <iterator>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "module/state/class_ids.h"
#include "ovufc/ipc/drvport/wire.h"
#include "testkit/checks/message_box_script.h"
#include "testkit/imports/import_patch.h"
#include "tests/module/menus/menus_fixture.h"

namespace ov::test {
namespace {

using Microsoft::WRL::ComPtr;
using testing::Contains;
using testing::HasSubstr;

enum class library { accepted, missing, unsigned_one, tampered, anothers };

void PrintTo(library state, std::ostream* out) {
    *out << (std::array{"accepted", "missing", "unsigned", "tampered", "another's"})[static_cast<int>(state)];
}

std::string read_file(const std::wstring& path) {
    std::ifstream file(path.c_str(), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// Takes the signature out of an image, as a tool that strips it does.
void strip_signature(std::string& image) {
    IMAGE_DOS_HEADER dos{};
    std::memcpy(&dos, image.data(), sizeof dos);
    IMAGE_NT_HEADERS headers{};
    std::memcpy(&headers, image.data() + dos.e_lfanew, sizeof headers);
    auto& entry = headers.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_SECURITY];
    ASSERT_NE(entry.Size, 0U) << "the resource library has no signature";
    image.resize(entry.VirtualAddress);
    entry = {};
    std::memcpy(image.data() + dos.e_lfanew, &headers, sizeof headers);
}

// Within what the signature covers, as every text is.
void change_a_letter(std::string& image) {
    constexpr std::wstring_view word = L"Orvane";
    const auto found = image.find(
        std::string_view(reinterpret_cast<const char*>(word.data()), word.size() * sizeof(wchar_t)));
    ASSERT_NE(found, std::string::npos);
    image[found] = 'A';
}

DWORD WINAPI name_another(PCCERT_CONTEXT, DWORD, DWORD, void*, LPWSTR name, DWORD capacity) {
    constexpr std::wstring_view another = L"Another, Inc";
    if (capacity > another.size()) {
        *std::copy(another.begin(), another.end(), name) = L'\0';
    }
    return another.size() + 1;
}

/// The folder of an installation: the module and the resource library in one of its states.
class installation {
  public:
    explicit installation(library state) {
        folder_.make_file(L"orvshellext.dll", read_file(program_directory() + L"orvshellext.dll"));
        std::string texts = read_file(program_directory() + L"orvres.dll");
        if (state == library::unsigned_one) {
            strip_signature(texts);
        } else if (state == library::tampered) {
            change_a_letter(texts);
        }
        if (state != library::missing) {
            folder_.make_file(L"orvres.dll", texts);
        }
    }
    void add_texts() const {
        folder_.make_file(L"orvres.dll", read_file(program_directory() + L"orvres.dll"));
    }
    [[nodiscard]] std::wstring module_path() const { return folder_.path() + L"\\orvshellext.dll"; }

  private:
    temp_folder folder_;
};

class WithoutTexts : public testing::TestWithParam<library> {
  protected:
    WithoutTexts() {
        CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        if (GetParam() == library::anothers) {
            signer_.emplace(module_.handle(), "crypt32.dll", "CertGetNameStringW", name_another);
        }
        service_.set_flags(ORV_FLAG_EXPORTS_AVAILABLE | ORV_FLAG_ADDONS_SHOWN);
    }
    ~WithoutTexts() override {
        EXPECT_EQ(module_.can_unload_now(), S_OK);
        CoUninitialize();
    }

    [[nodiscard]] ComPtr<IContextMenu> folder_menu() const {
        ComPtr<IContextMenu> menu;
        EXPECT_EQ(module_.create(class_ids::shell_extension, IID_PPV_ARGS(&menu)), S_OK);
        EXPECT_EQ(initialize(menu.Get(), select_paths({selected_.path()}).Get()), S_OK);
        return menu;
    }

    static std::optional<scripted_reply> answer(const scripted_request& request) {
        if (request.text.find(R"("serviceCall":45)") != std::string::npos) {
            return R"({"data":{"lastTimestamp":133500000000000000},"statusCode":-2})";
        }
        return R"({"data":{"protectedFolder":true},"statusCode":0})";
    }

    [[nodiscard]] std::string last_request() const { return service_.requests().back().text; }

    watchdog dog_{60'000};
    installation installation_{GetParam()};
    temp_folder selected_;
    shipped_module module_{installation_.module_path()};
    scripted_service service_{answer};

  private:
    std::optional<import_patch<decltype(CertGetNameStringW)>> signer_;
};

TEST_P(WithoutTexts, folder_menu_has_all_its_items_and_runs_them) {
    const auto menu = folder_menu();
    {
        const queried_menu queried(menu.Get(), CMF_NORMAL);
        EXPECT_EQ(queried.result, 5);
        ASSERT_EQ(queried.submenu.size(), 4U);
        EXPECT_EQ(queried.submenu[0].text, L"");
        EXPECT_EQ(queried.submenu[1].text, L"");
        EXPECT_EQ(queried.submenu[2].text, L"Export deleted files");
        EXPECT_EQ(queried.submenu[3].text, L"Export chronels");
        for (const menu_item& item : queried.submenu) {
            EXPECT_EQ(item.state, 0U);
        }
    }
    EXPECT_EQ(invoke(menu.Get(), 2), S_OK);
    EXPECT_THAT(last_request(), HasSubstr(R"("serviceCall":44)"));
}

TEST_P(WithoutTexts, unprotect_asks_with_an_empty_text_and_goes_on) {
    const auto menu = folder_menu();
    message_box_script boxes(module_.handle(), {IDOK});
    EXPECT_EQ(invoke(menu.Get(), 1), S_OK);
    ASSERT_EQ(boxes.shown().size(), 1U);
    EXPECT_EQ(boxes.shown()[0].text, L"");
    EXPECT_EQ(boxes.shown()[0].caption, L"");
    EXPECT_EQ(boxes.shown()[0].style, 0x50121U);
    EXPECT_THAT(last_request(), HasSubstr(R"("serviceCall":14)"));
}

TEST_P(WithoutTexts, addons_asks_and_tells_in_empty_texts) {
    ComPtr<IContextMenu> menu;
    ASSERT_EQ(module_.create(class_ids::addons, IID_PPV_ARGS(&menu)), S_OK);
    ASSERT_EQ(initialize(menu.Get(), select_items({selected_.path()}).Get()), S_OK);
    message_box_script boxes(module_.handle(), {IDOK, IDOK});
    EXPECT_EQ(invoke(menu.Get(), 0), S_OK);
    ASSERT_EQ(boxes.shown().size(), 2U);
    EXPECT_EQ(boxes.shown()[0].text, L"");
    EXPECT_EQ(boxes.shown()[1].text, L"");
    EXPECT_EQ(boxes.shown()[1].style, 0x50040U) << "the result, not the failure";
}

TEST_P(WithoutTexts, namespace_folder_lists_its_items) {
    ComPtr<IShellFolder2> folder;
    ASSERT_EQ(module_.create(class_ids::namespace_folder, IID_PPV_ARGS(&folder)), S_OK);
    EXPECT_EQ(first_header(module_), L"");
    ComPtr<IEnumIDList> list;
    ASSERT_EQ(folder->EnumObjects(nullptr, SHCONTF_FOLDERS, &list), S_OK);
    std::vector<std::uint16_t> types;
    PITEMID_CHILD entry = nullptr;
    ULONG fetched = 0;
    while (list->Next(1, &entry, &fetched) == S_OK) {
        std::uint16_t words[5];
        std::memcpy(words, entry, sizeof words);
        types.push_back(words[2]);
        EXPECT_EQ(words[4] == 0, words[2] == 0x6060 || words[2] == 0x7070)
            << "the action entries are named by texts, the others by paths";
        CoTaskMemFree(entry);
    }
    EXPECT_GE(types.size(), 3U);
    EXPECT_THAT(types, Contains(0x6060));
    EXPECT_THAT(types, Contains(0x7070));
}

INSTANTIATE_TEST_SUITE_P(Library, WithoutTexts,
                         testing::Values(library::missing, library::unsigned_one, library::tampered,
                                         library::anothers));

// That the tests above would see texts: the same copy, with the library as it is built.
TEST(WithTexts, copy_of_the_library_as_built_is_taken) {
    const installation whole(library::accepted);
    const shipped_module module(whole.module_path());
    EXPECT_NE(first_header(module), L"");
}

TEST(WithTexts, library_that_comes_later_is_taken_by_the_next_request) {
    const installation at_first_without(library::missing);
    const shipped_module module(at_first_without.module_path());
    EXPECT_EQ(first_header(module), L"");
    at_first_without.add_texts();
    EXPECT_NE(first_header(module), L"");
}

}  // namespace
}  // namespace ov::test
