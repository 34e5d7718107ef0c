#include "shell/entry_menus/elevation.h"

#include <gtest/gtest.h>
#include <objbase.h>

#include <string>

#include "testkit/imports/import_patch.h"

namespace ov::shell {
namespace {

using test::import_patch;

// Wine has no elevation moniker.
struct moniker_request {
    std::wstring name;
    BIND_OPTS3 options;
    IID riid;
};
moniker_request request;
HRESULT answer;
IUnknown* handed_out;

HRESULT WINAPI answer_moniker(LPCWSTR name, BIND_OPTS* options, REFIID riid, void** ppv) {
    request = {name, *reinterpret_cast<BIND_OPTS3*>(options), riid};
    *ppv = handed_out;
    return answer;
}

class Elevation : public testing::Test {
  protected:
    import_patch<decltype(CoGetObject)> patch_{GetModuleHandleW(nullptr), "ole32.dll", "CoGetObject",
                                               &answer_moniker};
};

TEST_F(Elevation, prompt_is_asked_for_by_the_moniker) {
    answer = E_ACCESSDENIED;
    handed_out = nullptr;
    EXPECT_EQ(ask_for_elevation(), nullptr);
    EXPECT_EQ(request.name, L"Elevation:Administrator!new:{3AD05575-8857-4850-9277-11B85BDB8E09}");
    EXPECT_EQ(request.options.cbStruct, 48U);
    EXPECT_EQ(request.options.dwClassContext, 4U);
    EXPECT_EQ(request.options.hwnd, nullptr);
    EXPECT_EQ(request.options.grfFlags, 0U);
    EXPECT_EQ(request.options.grfMode, 0U);
    EXPECT_EQ(request.riid, IID_IFileOperation);
    const IID file_operation = {0x947AAB5F, 0x0A5C, 0x4C13, {0xB4, 0xD6, 0x4B, 0xF7, 0x83, 0x6F, 0xC9, 0xF8}};
    EXPECT_EQ(request.riid, file_operation);
}

TEST_F(Elevation, success_without_an_object_is_no_consent) {
    answer = S_OK;
    handed_out = nullptr;
    EXPECT_EQ(ask_for_elevation(), nullptr);
}

}  // namespace
}  // namespace ov::shell
