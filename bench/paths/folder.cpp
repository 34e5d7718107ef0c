// The folder: made, enumerated and freed, the first of a text and a further one of the same text, by the
// number of locations; and what the view asks of every item.

#include <windows.h>
#include <shlobj.h>
#include <shlwapi.h>
#include <wrl/client.h>

#include <cstring>
#include <new>
#include <string>
#include <vector>

#include "bench/harness/catch2.h"
#include "bench/harness/compare.h"
#include "bench/paths/locations.h"
#include "namespace/folder/orv_name_space.h"
#include "namespace/items/item_data.h"
#include "namespace/locations/location_document.h"
#include "namespace/locations/protected_locations.h"
#include "ovufc/com/adopt.h"
#include "ovufc/json.h"
#include "service/text.h"
#include "testkit/process/module_attach.h"
#include "testkit/service/document_service.h"

namespace {

using Microsoft::WRL::ComPtr;
using ov::bench::compare;
using ov::bench::require;
using ov::name_space::orvNameSpace;

ComPtr<orvNameSpace> make_folder() {
    return ov::com::adopt(ov::com::make_object<orvNameSpace>());
}

template <class Item>
int for_each_item(orvNameSpace& folder, Item use) {
    ComPtr<IEnumIDList> list;
    require(folder.EnumObjects(nullptr, SHCONTF_FOLDERS, &list) == S_OK, "EnumObjects");
    int items = 0;
    PITEMID_CHILD entry = nullptr;
    ULONG fetched = 0;
    for (; list->Next(1, &entry, &fetched) == S_OK; ++items) {
        use(entry);
        CoTaskMemFree(entry);
    }
    return items;
}

void make_enumerate_free(int locations) {
    const auto folder = make_folder();
    require(for_each_item(*folder.Get(), [](PITEMID_CHILD) {}) >= locations, "enumerating");
}

// One walk over the text, one UTF-16 string an item, one task allocation and copy an item.
struct floor_reader : ov::json::json_sax_t {
    std::vector<std::wstring> names;

    bool null() override { return true; }
    bool boolean(bool) override { return true; }
    bool number_integer(ov::json::number_integer_t) override { return true; }
    bool number_unsigned(ov::json::number_unsigned_t) override { return true; }
    bool number_float(ov::json::number_float_t, const std::string&) override { return true; }
    bool binary(ov::json::binary_t&) override { return true; }
    bool string(std::string& text) override {
        names.push_back(ov::service::from_utf8(text));
        return true;
    }
    bool start_object(std::size_t) override { return true; }
    bool key(std::string&) override { return true; }
    bool end_object() override { return true; }
    bool start_array(std::size_t) override { return true; }
    bool end_array() override { return true; }
    bool parse_error(std::size_t, const std::string&, const ov::json::exception&) override { return false; }
};

void floor(const std::string& document) {
    floor_reader reader;
    require(ov::json::sax_parse(document.begin(), document.end(), &reader), "the walk");
    for (const std::wstring& name : reader.names) {
        const std::size_t bytes = 2 * name.size() + 16;
        void* const entry = CoTaskMemAlloc(bytes);
        if (entry == nullptr) {
            throw std::bad_alloc();
        }
        std::memset(entry, 0, 16);
        std::memcpy(static_cast<char*>(entry) + 10, name.c_str(), 2 * name.size() + 2);
        CoTaskMemFree(entry);
    }
}

// The records of 100,000 items are fresh memory of the system, and a third of a further folder's time is
// that.
static_assert(sizeof(ov::name_space::ItemData) == 32);

TEST_CASE("folder", "[served]") {
    ov::test::document_service service;
    for (const int locations : {1'000, 10'000, 100'000}) {
        int seed = 0;
        std::string document = ov::bench::locations_document(locations, seed);
        const auto new_text = [&] {
            service.publish(ov::bench::locations_document(locations, ++seed));
            ov::name_space::refresh_protected_locations();
        };
        const auto ours = [&] { make_enumerate_free(locations); };
        const auto walk = [&] { floor(document); };
        const std::string count = std::to_string(locations) + " locations";
        compare(("first folder of a text, " + count).c_str(), {.aim = 1.4, .rounds = 4},
                {{"ours", ours, new_text}, {"one walk, one text and one allocation an item", walk, {}}});
        compare(("further folder, " + count).c_str(), {.aim = 0.7, .rounds = 4},
                {{"ours", ours, {}}, {"one walk, one text and one allocation an item", walk, {}}});
    }
}

// Whether reading while the text is walked is worth its own reader: beside it the same texts from a tree.
TEST_CASE("reading", "[alone]") {
    for (const int locations : {1'000, 10'000, 100'000}) {
        const std::string document = ov::bench::locations_document(locations, 0);
        const auto ours = [&] {
            require(ov::name_space::read_location_document(document).is_complete(), "reading");
        };
        const auto tree = [&] {
            const auto root = ov::json::parse(document);
            std::vector<std::wstring> names;
            for (const auto& [key, value] : root.items()) {
                for (const auto& entry : key == "hardDrive" ? value["folders"] : value) {
                    names.push_back(ov::service::from_utf8(entry.get_ref<const std::string&>()));
                }
            }
            require(names.size() == static_cast<std::size_t>(locations), "the tree");
        };
        compare(("reading " + std::to_string(locations) + " locations").c_str(), {.aim = 0.75, .rounds = 4},
                {{"ours", ours, {}}, {"the JSON library's tree", tree, {}}});
    }
}

// What the system must do for the name of an item, and to hand out a text.
void hand_out(const wchar_t* path) {
    ComPtr<IShellItem> item;
    const wchar_t* name = PathFindFileNameW(path);
    wchar_t* shown = nullptr;
    if (SUCCEEDED(SHCreateItemFromParsingName(path, nullptr, IID_PPV_ARGS(&item))) &&
        SUCCEEDED(item->GetDisplayName(SIGDN_NORMALDISPLAY, &shown))) {
        name = shown;
    }
    wchar_t* copy = nullptr;
    require(SHStrDupW(name, &copy) == S_OK, "SHStrDupW");
    CoTaskMemFree(copy);
    CoTaskMemFree(shown);
}

std::wstring path_of(PCUITEMID_CHILD entry) {
    const auto* const bytes = reinterpret_cast<const std::byte*>(entry);
    std::uint16_t units = 0;
    std::memcpy(&units, bytes + 8, sizeof units);
    std::wstring path(units, L'\0');
    std::memcpy(path.data(), bytes + 10, 2 * path.size());
    return path;
}

TEST_CASE("items", "[served]") {
    constexpr int locations = 300;
    ov::test::document_service service;
    service.publish(ov::bench::locations_document(locations, 0));
    ov::name_space::refresh_protected_locations();
    const auto folder = make_folder();
    const auto each = [&](auto use) {
        require(for_each_item(*folder.Get(), use) >= locations, "enumerating");
    };
    const auto names = [&](PITEMID_CHILD entry) {
        STRRET name{};
        require(folder->GetDisplayNameOf(entry, SHGDN_NORMAL, &name) == S_OK, "GetDisplayNameOf");
        CoTaskMemFree(name.pOleStr);
    };
    const auto columns = [&](PITEMID_CHILD entry) {
        for (UINT column = 0; column < 2; ++column) {
            SHELLDETAILS details{};
            require(folder->GetDetailsOf(entry, column, &details) == S_OK, "GetDetailsOf");
            CoTaskMemFree(details.str.pOleStr);
        }
    };
    const auto attributes = [&](PITEMID_CHILD entry) {
        PCUITEMID_CHILD one = entry;
        SFGAOF wanted = 0xFFFFFFFF;
        require(folder->GetAttributesOf(1, &one, &wanted) == S_OK, "GetAttributesOf");
    };
    ComPtr<ICategoryProvider> provider;
    ComPtr<ICategorizer> categorizer;
    GUID category{};
    require(folder->CreateViewObject(nullptr, IID_PPV_ARGS(&provider)) == S_OK &&
                provider->GetDefaultCategory(&category, nullptr) == S_OK &&
                provider->CreateCategory(&category, IID_PPV_ARGS(&categorizer)) == S_OK,
            "the categorizer");
    const auto categories = [&](PITEMID_CHILD entry) {
        PCUITEMID_CHILD one = entry;
        DWORD id = 0;
        require(categorizer->GetCategory(1, &one, &id) == S_OK, "GetCategory");
    };
    const auto names_floor = [](PITEMID_CHILD entry) { hand_out(path_of(entry).c_str()); };
    compare("display names of 300 items", {.aim = 1.2},
            {{"ours", [&] { each(names); }, {}},
             {"the system's calls for them", [&] { each(names_floor); }, {}}});
    compare("both columns of 300 items", {.aim = 1.2},
            {{"ours", [&] { each(columns); }, {}},
             {"the system's calls for them", [&] { each(names_floor); }, {}}});
    // The system has no part in these: their floor is the enumeration alone.
    compare(
        "attributes of 300 items", {.aim = 1.5},
        {{"ours", [&] { each(attributes); }, {}}, {"enumeration", [&] { each([](PITEMID_CHILD) {}); }, {}}});
    compare(
        "categories of 300 items", {.aim = 1.5},
        {{"ours", [&] { each(categories); }, {}}, {"enumeration", [&] { each([](PITEMID_CHILD) {}); }, {}}});
}

}  // namespace
