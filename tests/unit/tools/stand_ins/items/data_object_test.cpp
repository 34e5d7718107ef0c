#include "tools/stand_ins/items/data_object.h"

#include <gtest/gtest.h>
#include <shellapi.h>
#include <shlobj.h>

#include <array>
#include <cstring>

#include "testkit/files/temp_folder.h"
#include "tests/unit/tools/stand_ins/recording_handler.h"
#include "tests/unit/tools/stand_ins/test_selection.h"
#include "tools/stand_ins/items/global_memory.h"

namespace ov::stand_ins {
namespace {

using Microsoft::WRL::ComPtr;

FORMATETC format_of(UINT format) {
    return {static_cast<CLIPFORMAT>(format), nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};
}

class DataObject : public testing::Test {
  protected:
    DataObject() : selection(folder.make_file(L"report.txt", "text")) {}

    ComPtr<IDataObject> make(IDataObject* inner = nullptr) {
        ComPtr<IDataObject> made;
        PCUITEMID_CHILD child = selection.item.get();
        EXPECT_EQ(
            create_data_object(selection.parent.get(), 1, &child, inner, IID_PPV_ARGS(made.GetAddressOf())),
            S_OK);
        return made;
    }

    static STGMEDIUM memory_with(const char* text) {
        STGMEDIUM medium{};
        medium.tymed = TYMED_HGLOBAL;
        medium.hGlobal = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, std::strlen(text) + 1);
        const global_lock lock(medium.hGlobal);
        std::strcpy(static_cast<char*>(lock.data()), text);
        return medium;
    }

    static std::string text_in(IDataObject* object, FORMATETC format) {
        STGMEDIUM medium{};
        if (object->GetData(&format, &medium) != S_OK) {
            return {};
        }
        std::string text;
        {
            const global_lock lock(medium.hGlobal);
            text = static_cast<const char*>(lock.data());
        }
        ReleaseStgMedium(&medium);
        return text;
    }

    test_apartment apartment;
    test::temp_folder folder;
    test_selection selection;
    UINT own_format = RegisterClipboardFormatW(L"OrvaneTestFormat");
};

TEST_F(DataObject, a_file_carries_its_id_list) {
    const auto object = make();
    item_selection read;
    ASSERT_EQ(read_selection(object.Get(), read), S_OK);
    ASSERT_EQ(read.items.size(), 1U);
    EXPECT_TRUE(ILIsEqual(read.folder.get(), selection.parent.get()));
    EXPECT_EQ(HRESULT_CODE(selection.folder->CompareIDs(0, read.items[0].get(), selection.item.get())), 0);
}

TEST_F(DataObject, a_file_carries_its_path_as_drop_files) {
    const auto object = make();
    FORMATETC format = format_of(CF_HDROP);
    STGMEDIUM medium{};
    ASSERT_EQ(object->GetData(&format, &medium), S_OK);
    auto* const files = static_cast<HDROP>(medium.hGlobal);
    ASSERT_EQ(DragQueryFileW(files, 0xFFFFFFFF, nullptr, 0), 1U);
    std::array<wchar_t, MAX_PATH> path{};
    DragQueryFileW(files, 0, path.data(), MAX_PATH);
    EXPECT_EQ(lstrcmpiW(path.data(), (folder.path() + L"\\report.txt").c_str()), 0);
    ReleaseStgMedium(&medium);
}

TEST_F(DataObject, a_virtual_item_has_no_drop_files) {
    PIDLIST_ABSOLUTE computer = nullptr;
    ASSERT_EQ(SHGetSpecialFolderLocation(nullptr, CSIDL_DRIVES, &computer), S_OK);
    const com::unique_absolute_id_list owner(computer);
    com::unique_absolute_id_list desktop(ILCloneFull(computer));
    ILRemoveLastID(desktop.get());
    PCUITEMID_CHILD child = reinterpret_cast<PCUITEMID_CHILD>(ILFindLastID(computer));
    ComPtr<IDataObject> object;
    ASSERT_EQ(create_data_object(desktop.get(), 1, &child, nullptr, IID_PPV_ARGS(object.GetAddressOf())),
              S_OK);
    FORMATETC drop_files = format_of(CF_HDROP);
    EXPECT_EQ(object->QueryGetData(&drop_files), DV_E_FORMATETC);
    FORMATETC id_lists = format_of(id_list_array_format());
    EXPECT_EQ(object->QueryGetData(&id_lists), S_OK);
}

TEST_F(DataObject, shell_item_array_is_made_from_it) {
    ComPtr<IShellItemArray> items;
    ASSERT_EQ(SHCreateShellItemArrayFromDataObject(make().Get(), IID_PPV_ARGS(items.GetAddressOf())), S_OK);
    DWORD count = 0;
    EXPECT_EQ(items->GetCount(&count), S_OK);
    EXPECT_EQ(count, 1U);
}

TEST_F(DataObject, set_data_is_given_back_and_copied) {
    const auto object = make();
    FORMATETC format = format_of(own_format);
    EXPECT_EQ(object->QueryGetData(&format), DV_E_FORMATETC);
    STGMEDIUM lent = memory_with("lent");
    ASSERT_EQ(object->SetData(&format, &lent, FALSE), S_OK);
    ReleaseStgMedium(&lent);
    EXPECT_EQ(text_in(object.Get(), format), "lent");
    STGMEDIUM given = memory_with("given");
    ASSERT_EQ(object->SetData(&format, &given, TRUE), S_OK);
    EXPECT_EQ(text_in(object.Get(), format), "given");
}

TEST_F(DataObject, wrong_medium_is_refused) {
    FORMATETC format = format_of(id_list_array_format());
    format.tymed = TYMED_ISTREAM;
    STGMEDIUM medium{};
    EXPECT_EQ(make()->GetData(&format, &medium), DV_E_TYMED);
    EXPECT_EQ(make()->QueryGetData(&format), DV_E_TYMED);
}

TEST_F(DataObject, inner_object_is_asked_for_what_is_missing) {
    const auto inner = make();
    FORMATETC format = format_of(own_format);
    STGMEDIUM given = memory_with("inner");
    ASSERT_EQ(inner->SetData(&format, &given, TRUE), S_OK);
    EXPECT_EQ(text_in(make(inner.Get()).Get(), format), "inner");
}

TEST_F(DataObject, enum_format_etc_names_every_format) {
    ComPtr<IEnumFORMATETC> formats;
    ASSERT_EQ(make()->EnumFormatEtc(DATADIR_GET, formats.GetAddressOf()), S_OK);
    std::vector<UINT> named;
    FORMATETC format{};
    while (formats->Next(1, &format, nullptr) == S_OK) {
        named.push_back(format.cfFormat);
    }
    EXPECT_EQ(named, (std::vector<UINT>{id_list_array_format(), CF_HDROP}));
}

TEST_F(DataObject, null_pointers_are_refused) {
    PCUITEMID_CHILD child = selection.item.get();
    ComPtr<IDataObject> made;
    EXPECT_EQ(create_data_object(selection.parent.get(), 1, &child, nullptr, IID_IDataObject, nullptr),
              E_POINTER);
    EXPECT_EQ(create_data_object(nullptr, 1, &child, nullptr, IID_PPV_ARGS(made.GetAddressOf())),
              E_INVALIDARG);
    EXPECT_EQ(
        create_data_object(selection.parent.get(), 1, nullptr, nullptr, IID_PPV_ARGS(made.GetAddressOf())),
        E_INVALIDARG);
    EXPECT_EQ(make()->GetData(nullptr, nullptr), E_INVALIDARG);
    EXPECT_EQ(make()->SetData(nullptr, nullptr, TRUE), E_INVALIDARG);
}

}  // namespace
}  // namespace ov::stand_ins
