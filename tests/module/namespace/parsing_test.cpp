// Names that the shipped module's folder is asked to parse, among the items of a document.

#include <string>

#include "testkit/service/document_service.h"
#include "tests/module/namespace/module_folder.h"

namespace {

using namespace ov::test;

class NamespaceParsing : public module_folder_test {
  protected:
    struct parsed {
        seen_item item;
        ULONG attributes;
    };

    [[nodiscard]] ComPtr<IShellFolder2> folder_of(const std::string& local, const std::string& managed,
                                                  const std::string& cloud) {
        service.publish(R"({"hardDrive":{"folders":[)" + local + R"(]},"mgmtCustom":[)" + managed +
                        R"(],"oneDrive":[)" + cloud +
                        R"(],"google":[],"boxSyn":[],"dropBox":[],"oneDriveBusiness":[]})");
        return make_folder();
    }

    static parsed parse(IShellFolder2& folder, std::wstring name, ULONG attributes) {
        PIDLIST_RELATIVE id = nullptr;
        EXPECT_EQ(S_OK, folder.ParseDisplayName(nullptr, nullptr, name.data(), nullptr, &id, &attributes));
        const parsed result{id != nullptr ? seen_in(id) : seen_item{}, attributes};
        CoTaskMemFree(id);
        return result;
    }

    document_service service;
};

TEST_F(NamespaceParsing, cloud_folder_keeps_one_attribute_and_a_local_one_two) {
    const auto folder = folder_of(R"("D:\\local")", R"("D:\\managed")", R"("D:\\cloud")");
    const parsed cloud = parse(*folder.Get(), L"D:\\cloud", 0xFFFFFFFF);
    EXPECT_EQ(0x5050, cloud.item.type);
    EXPECT_EQ(0x80000000u, cloud.attributes);
    EXPECT_EQ(0u, parse(*folder.Get(), L"D:\\cloud", 0x20000000).attributes);
    EXPECT_EQ(0xA0000000u, parse(*folder.Get(), L"D:\\local", 0xFFFFFFFF).attributes);
    EXPECT_EQ(0xA0000000u, parse(*folder.Get(), L"D:\\managed", 0xFFFFFFFF).attributes);
}

TEST_F(NamespaceParsing, first_of_two_items_with_equal_names_is_found) {
    const auto folder = folder_of(R"("D:\\other","D:\\twice")", R"("D:\\TWICE")", R"("D:\\Twice")");
    for (const wchar_t* name : {L"D:\\twice", L"D:\\TWICE", L"D:\\Twice"}) {
        EXPECT_EQ((seen_item{0x1010, 1, L"D:\\twice"}), parse(*folder.Get(), name, 0).item);
    }
}

}  // namespace
