#include "tools/stand_ins/associations/associations.h"

#include <gtest/gtest.h>
#include <shlwapi.h>
#include <wrl/client.h>

#include <array>
#include <string>

#include "tests/unit/tools/stand_ins/recording_handler.h"
#include "tests/unit/tools/stand_ins/test_class_key.h"
#include "tools/stand_ins/associations/association_keys.h"
#include "tools/stand_ins/items/interface_ids.h"

namespace ov::stand_ins {
namespace {

using Microsoft::WRL::ComPtr;

const HRESULT no_association = HRESULT_FROM_WIN32(ERROR_NO_ASSOCIATION);

class Associations : public testing::Test {
  protected:
    Associations() {
        prog_id.set(nullptr, nullptr, L"Test type");
        prog_id.set(L"DefaultIcon", nullptr, L"C:\\test.dll,-3");
        prog_id.set(L"shell\\open\\command", nullptr, L"\"C:\\a b\\test.exe\" \"%1\"");
        prog_id.set(L"shellex\\{00021500-0000-0000-C000-000000000046}", nullptr, L"{tip}");
    }

    ComPtr<IQueryAssociations> make(const std::vector<ASSOCIATIONELEMENT>& classes) const {
        ComPtr<IQueryAssociations> made;
        EXPECT_EQ(
            create_associations(classes.data(), static_cast<ULONG>(classes.size()),
                                __uuidof(IQueryAssociations), reinterpret_cast<void**>(made.GetAddressOf())),
            S_OK);
        return made;
    }
    ComPtr<IQueryAssociations> make_for_prog_id() const {
        return make({{ASSOCCLASS_PROGID_STR, nullptr, prog_id.name().c_str()}});
    }

    static std::wstring text(IQueryAssociations* object, ASSOCSTR kind, const wchar_t* extra = nullptr) {
        std::array<wchar_t, 256> buffer{};
        DWORD length = static_cast<DWORD>(buffer.size());
        const HRESULT result = object->GetString(ASSOCF_NONE, kind, extra, buffer.data(), &length);
        return result == S_OK ? buffer.data() : L"(failed)";
    }

    test_apartment apartment;
    test_class_key prog_id;
};

TEST_F(Associations, texts_are_those_of_the_class_key) {
    const auto object = make_for_prog_id();
    EXPECT_EQ(text(object.Get(), ASSOCSTR_FRIENDLYDOCNAME), L"Test type");
    EXPECT_EQ(text(object.Get(), ASSOCSTR_DEFAULTICON), L"C:\\test.dll,-3");
    EXPECT_EQ(text(object.Get(), ASSOCSTR_COMMAND), L"\"C:\\a b\\test.exe\" \"%1\"");
    EXPECT_EQ(text(object.Get(), ASSOCSTR_EXECUTABLE), L"C:\\a b\\test.exe");
    EXPECT_EQ(text(object.Get(), ASSOCSTR_SHELLEXTENSION, L"{00021500-0000-0000-C000-000000000046}"),
              L"{tip}");
}

TEST_F(Associations, missing_text_is_no_association) {
    std::array<wchar_t, 16> buffer{};
    DWORD length = 16;
    EXPECT_EQ(make_for_prog_id()->GetString(ASSOCF_NONE, ASSOCSTR_INFOTIP, nullptr, buffer.data(), &length),
              no_association);
}

TEST_F(Associations, several_classes_are_searched_in_order) {
    const test_class_key first(prog_id.name() + L"First");
    first.set(nullptr, nullptr, L"First type");
    const auto object = make({{ASSOCCLASS_PROGID_STR, nullptr, first.name().c_str()},
                              {ASSOCCLASS_PROGID_STR, nullptr, prog_id.name().c_str()}});
    EXPECT_EQ(text(object.Get(), ASSOCSTR_FRIENDLYDOCNAME), L"First type");
    EXPECT_EQ(text(object.Get(), ASSOCSTR_DEFAULTICON), L"C:\\test.dll,-3");
    EXPECT_EQ(class_keys_of(object.Get()).size(), 2U);
}

TEST_F(Associations, folder_class_is_the_registrys_folder_key) {
    const auto keys = class_keys_of(make({{ASSOCCLASS_FOLDER, nullptr, nullptr}}).Get());
    ASSERT_EQ(keys.size(), 1U);
    const unique_registry_key folder = open_key_to_read(HKEY_CLASSES_ROOT, L"Folder");
    EXPECT_EQ(read_registry_text(keys[0].get(), nullptr, nullptr),
              read_registry_text(folder.get(), nullptr, nullptr));
}

TEST_F(Associations, unregistered_class_is_left_out) {
    const auto object = make({{ASSOCCLASS_PROGID_STR, nullptr, L"OrvaneTestNobody"},
                              {ASSOCCLASS_PROGID_STR, nullptr, prog_id.name().c_str()}});
    EXPECT_EQ(class_keys_of(object.Get()).size(), 1U);
    EXPECT_EQ(text(object.Get(), ASSOCSTR_FRIENDLYDOCNAME), L"Test type");
}

TEST_F(Associations, get_key_gives_a_key_of_the_caller) {
    unique_registry_key key;
    ASSERT_EQ(make_for_prog_id()->GetKey(ASSOCF_NONE, ASSOCKEY_CLASS, nullptr, key.put()), S_OK);
    EXPECT_EQ(read_registry_text(key.get(), nullptr, nullptr), L"Test type");
}

TEST_F(Associations, buffers_are_measured_and_bounded) {
    const auto object = make_for_prog_id();
    DWORD length = 0;
    EXPECT_EQ(object->GetString(ASSOCF_NONE, ASSOCSTR_FRIENDLYDOCNAME, nullptr, nullptr, &length), S_FALSE);
    EXPECT_EQ(length, 10U);
    std::array<wchar_t, 8> buffer;
    buffer.fill(L'x');
    length = 5;
    EXPECT_EQ(object->GetString(ASSOCF_NONE, ASSOCSTR_FRIENDLYDOCNAME, nullptr, buffer.data(), &length),
              E_POINTER);
    EXPECT_EQ(std::wstring(buffer.data()), L"Test");
    EXPECT_EQ(buffer[5], L'x');
    EXPECT_EQ(length, 10U);
}

TEST_F(Associations, null_pointers_are_refused) {
    ComPtr<IQueryAssociations> made;
    EXPECT_EQ(create_associations(nullptr, 0, __uuidof(IQueryAssociations),
                                  reinterpret_cast<void**>(made.GetAddressOf())),
              E_INVALIDARG);
    const ASSOCIATIONELEMENT element{ASSOCCLASS_FOLDER, nullptr, nullptr};
    EXPECT_EQ(create_associations(&element, 1, __uuidof(IQueryAssociations), nullptr), E_POINTER);
}

}  // namespace
}  // namespace ov::stand_ins
