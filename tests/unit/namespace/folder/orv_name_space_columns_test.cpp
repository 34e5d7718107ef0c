#include <array>
#include <cstddef>

#include "namespace/folder/columns.h"
#include "tests/unit/namespace/folder_fixture.h"

namespace {

using namespace ov::name_space;
using namespace ov::test;

class OrvNameSpaceColumns : public folder_test {
  protected:
    [[nodiscard]] std::wstring details_of(PCUITEMID_CHILD id, UINT column) {
        SHELLDETAILS details{};
        EXPECT_EQ(S_OK, folder->GetDetailsOf(id, column, &details));
        EXPECT_EQ(64, details.cxChar);
        return text_of(details.str);
    }
};

constexpr PROPERTYKEY some_other_key = {
    {0x6A4F2C81, 0x0D3B, 0x4E97, {0xB2, 0xA6, 0x19, 0xC8, 0xE5, 0xF7, 0xD0, 0x34}}, 3};

TEST_F(OrvNameSpaceColumns, keys_are_those_of_the_property_system_and_our_own) {
    SHCOLUMNID key{};
    EXPECT_EQ(S_OK, folder->MapColumnToSCID(0, &key));
    wchar_t text[64];
    StringFromGUID2(key.fmtid, text, 64);
    EXPECT_STREQ(L"{B725F130-47EF-101A-A5F1-02608C9EEBAC}", text);
    EXPECT_EQ(10u, key.pid);
    EXPECT_EQ(S_OK, folder->MapColumnToSCID(1, &key));
    StringFromGUID2(key.fmtid, text, 64);
    EXPECT_STREQ(L"{6A4F2C81-0D3B-4E97-B2A6-19C8E5F7D034}", text);
    EXPECT_EQ(2u, key.pid);
}

TEST_F(OrvNameSpaceColumns, third_column_has_no_key) {
    SHCOLUMNID key = some_other_key;
    EXPECT_EQ(E_FAIL, folder->MapColumnToSCID(2, &key));
    EXPECT_EQ(E_FAIL, folder->MapColumnToSCID(0xFFFFFFFF, &key));
    EXPECT_EQ(3u, key.pid);
    EXPECT_EQ(E_POINTER, folder->MapColumnToSCID(0, nullptr));
}

TEST_F(OrvNameSpaceColumns, three_columns_have_a_state) {
    for (UINT column = 0; column < 3; ++column) {
        SHCOLSTATEF state = 0;
        EXPECT_EQ(S_OK, folder->GetDefaultColumnState(column, &state));
        EXPECT_EQ(0x11u, state);
    }
    SHCOLSTATEF state = 77;
    EXPECT_EQ(E_INVALIDARG, folder->GetDefaultColumnState(3, &state));
    EXPECT_EQ(77u, state);
    EXPECT_EQ(E_POINTER, folder->GetDefaultColumnState(0, nullptr));
}

TEST_F(OrvNameSpaceColumns, name_is_the_default_column) {
    ULONG sort = 9;
    ULONG display = 9;
    EXPECT_EQ(S_OK, folder->GetDefaultColumn(0, &sort, &display));
    EXPECT_EQ(0u, sort);
    EXPECT_EQ(0u, display);
    EXPECT_EQ(E_POINTER, folder->GetDefaultColumn(0, nullptr, &display));
    EXPECT_EQ(E_POINTER, folder->GetDefaultColumn(0, &sort, nullptr));
}

TEST_F(OrvNameSpaceColumns, headers_are_localised_texts) {
    EXPECT_EQ(text(0x4000A), details_of(nullptr, 0));
    EXPECT_EQ(text(0x4000B), details_of(nullptr, 1));
    EXPECT_FALSE(text(0x4000A).empty());
}

// Their type is packed, so a host may have them at any address. The build that traps tells a wrong one.
TEST_F(OrvNameSpaceColumns, details_may_stand_at_any_address) {
    alignas(8) std::array<std::byte, sizeof(SHELLDETAILS) + 8> room{};
    for (std::size_t at = 0; at < 8; ++at) {
        auto* const details = reinterpret_cast<SHELLDETAILS*>(&room[at]);
        ASSERT_EQ(S_OK, folder->GetDetailsOf(nullptr, 0, details));
        EXPECT_EQ(text(0x4000A), text_of(details->str));
    }
}

TEST_F(OrvNameSpaceColumns, header_request_clears_the_alignment) {
    SHELLDETAILS details{};
    details.fmt = LVCFMT_RIGHT;
    EXPECT_EQ(S_OK, folder->GetDetailsOf(nullptr, 0, &details));
    EXPECT_EQ(0, details.fmt);
    (void)text_of(details.str);
}

TEST_F(OrvNameSpaceColumns, header_of_a_third_column_fails) {
    SHELLDETAILS details{};
    EXPECT_EQ(E_FAIL, folder->GetDetailsOf(nullptr, 2, &details));
    EXPECT_EQ(64, details.cxChar) << "the width is set before the column is looked at";
    EXPECT_EQ(E_FAIL, folder->GetDetailsOf(entry(item_types::folder).get(), 2, &details));
    EXPECT_EQ(E_POINTER, folder->GetDetailsOf(nullptr, 0, nullptr));
}

TEST_F(OrvNameSpaceColumns, name_column_shows_the_display_name) {
    EXPECT_EQ(L"windows", details_of(entry(item_types::folder).get(), 0));
    EXPECT_EQ(L"", details_of(foreign_entry().get(), 0)) << "an empty text is no failure here";
}

TEST_F(OrvNameSpaceColumns, type_column_shows_the_category) {
    const std::pair<std::uint16_t, std::uint32_t> expected[] = {
        {item_types::folder, 0x40004},
        {item_types::cloud_folder, 0x40005},
        {item_types::reserved_with_icon, 0x40006},
        {item_types::one_click_restore, 0x40006},
        {item_types::addons, 0x40007},
        {item_types::reserved, 0x40004},
        {std::uint16_t{0x1234}, 0x40004},
    };
    for (const auto& [type, number] : expected) {
        EXPECT_EQ(text(number), details_of(entry(type).get(), 1)) << std::hex << type;
        EXPECT_FALSE(text(number).empty());
    }
    EXPECT_EQ(text(0x40004), details_of(foreign_entry().get(), 1));
}

TEST_F(OrvNameSpaceColumns, name_property_is_a_string) {
    VARIANT value;
    ASSERT_EQ(S_OK, folder->GetDetailsEx(entry(item_types::folder).get(), &item_name_key, &value));
    ASSERT_EQ(VT_BSTR, value.vt);
    EXPECT_STREQ(L"windows", value.bstrVal);
    VariantClear(&value);
    ASSERT_EQ(S_OK, folder->GetDetailsEx(foreign_entry().get(), &item_name_key, &value));
    ASSERT_EQ(VT_BSTR, value.vt);
    EXPECT_STREQ(L"", value.bstrVal);
    VariantClear(&value);
}

TEST_F(OrvNameSpaceColumns, type_property_is_the_item_type) {
    VARIANT value;
    ASSERT_EQ(S_OK, folder->GetDetailsEx(entry(item_types::addons).get(), &item_type_key, &value));
    EXPECT_EQ(VT_UI2, value.vt);
    EXPECT_EQ(0x7070, value.uiVal);
    ASSERT_EQ(S_OK, folder->GetDetailsEx(foreign_entry().get(), &item_type_key, &value));
    EXPECT_EQ(VT_UI2, value.vt);
    EXPECT_EQ(0xFFFF, value.uiVal);
    ASSERT_EQ(S_OK, folder->GetDetailsEx(nullptr, &item_type_key, &value));
    EXPECT_EQ(0xFFFF, value.uiVal);
}

TEST_F(OrvNameSpaceColumns, every_other_property_is_empty_and_no_failure) {
    VARIANT value;
    std::memset(&value, 0x5A, sizeof(value));
    ASSERT_EQ(S_OK, folder->GetDetailsEx(entry(item_types::folder).get(), &some_other_key, &value));
    EXPECT_EQ(VT_EMPTY, value.vt);
    EXPECT_EQ(E_POINTER, folder->GetDetailsEx(nullptr, nullptr, &value));
    EXPECT_EQ(E_POINTER, folder->GetDetailsEx(nullptr, &item_type_key, nullptr));
}

TEST_F(OrvNameSpaceColumns, there_is_no_search) {
    GUID guid{};
    EXPECT_EQ(E_NOTIMPL, folder->GetDefaultSearchGUID(&guid));
    auto* searches = reinterpret_cast<IEnumExtraSearch*>(this);
    EXPECT_EQ(E_NOINTERFACE, folder->EnumSearches(&searches));
    EXPECT_EQ(nullptr, searches);
    EXPECT_EQ(E_NOINTERFACE, folder->EnumSearches(nullptr));
}

}  // namespace
