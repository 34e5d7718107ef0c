// What the folder hands to the desktop when an entry is bound.

#include <cstring>

#include "ovufc/com/com_object.h"
#include "testkit/imports/import_patch.h"
#include "tests/unit/namespace/folder_fixture.h"
#include "tests/unit/namespace/unable_folder.h"

namespace {

using namespace ov::name_space;
using namespace ov::test;

constexpr HRESULT desktops_answer = 0x00040777;

class recording_desktop;
using recording_desktop_base =
    ov::com::com_object<recording_desktop, ov::com::bases<IShellFolder>,
                        ov::com::answers<ov::com::answer<IUnknown>, ov::com::answer<IShellFolder>>>;

/// A desktop that notes what it is asked to bind.
class recording_desktop final : public ov::test::unable_folder<recording_desktop_base> {
  public:
    virtual ~recording_desktop() = default;

    ov::com::unique_absolute_id_list location;
    IBindCtx* bind_context = nullptr;
    IID interface_id{};
    void** out = nullptr;

    STDMETHODIMP
    BindToObject(PCUIDLIST_RELATIVE id_list, IBindCtx* context, REFIID riid,
                 void** result) noexcept override {
        location.reset(ILCloneFull(reinterpret_cast<PCIDLIST_ABSOLUTE>(id_list)));
        bind_context = context;
        interface_id = riid;
        out = result;
        return desktops_answer;
    }
};

recording_desktop* given_desktop = nullptr;

HRESULT WINAPI give_desktop(IShellFolder** result) {
    given_desktop->AddRef();
    *result = given_desktop;
    return S_OK;
}

class Binding : public folder_test {
  protected:
    Binding() {
        given_desktop = desktop.Get();
        (void)CreateBindCtx(0, &bind_context);
    }

    void expect_request(PCIDLIST_ABSOLUTE location, REFIID riid, void** result) const {
        const UINT size_bytes = ILGetSize(location);
        ASSERT_EQ(size_bytes, ILGetSize(desktop->location.get()));
        EXPECT_EQ(0, std::memcmp(location, desktop->location.get(), size_bytes));
        EXPECT_EQ(bind_context.Get(), desktop->bind_context);
        EXPECT_TRUE(riid == desktop->interface_id);
        EXPECT_EQ(result, desktop->out);
    }

    ComPtr<recording_desktop> desktop = ov::com::adopt(ov::com::make_object<recording_desktop>());
    ComPtr<IBindCtx> bind_context;
    ov::com::unique_absolute_id_list windows{ILCreateFromPathW(L"C:\\windows")};

  private:
    import_patch<decltype(SHGetDesktopFolder)> patch_{GetModuleHandleW(nullptr), "shell32.dll",
                                                      "SHGetDesktopFolder", give_desktop};
};

TEST_F(Binding, desktop_is_asked_with_the_callers_bind_context_and_answers) {
    void* result = this;
    EXPECT_EQ(desktops_answer, folder->BindToObject(entry(item_types::folder).get(), bind_context.Get(),
                                                    IID_IShellFolder2, &result));
    expect_request(windows.get(), IID_IShellFolder2, &result);
}

TEST_F(Binding, storage_is_asked_for_in_the_same_way) {
    void* result = this;
    EXPECT_EQ(desktops_answer, folder->BindToStorage(entry(item_types::cloud_folder).get(),
                                                     bind_context.Get(), IID_IStream, &result));
    expect_request(windows.get(), IID_IStream, &result);
}

TEST_F(Binding, entries_after_the_first_are_put_behind_the_location) {
    const auto first = entry(item_types::folder);
    const auto second = entry(item_types::addons, L"some other folder's");
    const ov::com::unique_absolute_id_list both(
        ILCombine(reinterpret_cast<PCIDLIST_ABSOLUTE>(first.get()), second.get()));
    const ov::com::unique_absolute_id_list expected(ILCombine(windows.get(), second.get()));
    void* result = this;
    EXPECT_EQ(desktops_answer,
              folder->BindToObject(both.get(), bind_context.Get(), IID_IShellFolder, &result));
    expect_request(expected.get(), IID_IShellFolder, &result);
}

TEST_F(Binding, desktop_is_given_back) {
    void* result = this;
    (void)folder->BindToObject(entry(item_types::folder).get(), nullptr, IID_IShellFolder, &result);
    EXPECT_EQ(2u, desktop.Get()->AddRef());
    EXPECT_EQ(1u, desktop.Get()->Release());
}

}  // namespace
