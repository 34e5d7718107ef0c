#include "tools/stand_ins/probes.h"

#include <shlwapi.h>
#include <wrl/client.h>

#include "ovufc/com/adopt.h"
#include "ovufc/com/com_object.h"
#include "ovufc/com/guard.h"
#include "ovufc/com/task_memory.h"
#include "ovufc/win/ui_handle.h"
#include "tools/stand_ins/items/interface_ids.h"
#include "tools/stand_ins/system_function.h"

namespace ov::stand_ins {

namespace {

using Microsoft::WRL::ComPtr;

/// Associations that know nothing and note whether anybody asked.
class noting_associations final
    : public com::com_object<noting_associations, com::bases<IQueryAssociations>,
                             com::answers<com::answer<IUnknown>, com::answer<IQueryAssociations>>> {
  public:
    virtual ~noting_associations() = default;

    [[nodiscard]] bool was_asked() const noexcept { return was_asked_; }

    // Windows may ask for an interface of its own first: looking for one is asking.
    STDMETHODIMP
    QueryInterface(REFIID riid, void** result) noexcept override {
        was_asked_ = was_asked_ || riid != __uuidof(IUnknown);
        return com_object::QueryInterface(riid, result);
    }
    STDMETHODIMP
    Init(ASSOCF, LPCWSTR, HKEY, HWND) noexcept override { return note(); }
    STDMETHODIMP
    GetString(ASSOCF, ASSOCSTR, LPCWSTR, LPWSTR, DWORD*) noexcept override { return note(); }
    STDMETHODIMP
    GetKey(ASSOCF, ASSOCKEY, LPCWSTR, HKEY*) noexcept override { return note(); }
    STDMETHODIMP
    GetData(ASSOCF, ASSOCDATA, LPCWSTR, LPVOID, DWORD*) noexcept override { return note(); }
    STDMETHODIMP
    GetEnum(ASSOCF, ASSOCENUM, LPCWSTR, REFIID, LPVOID*) noexcept override { return note(); }

  private:
    HRESULT note() noexcept {
        was_asked_ = true;
        return HRESULT_FROM_WIN32(ERROR_NO_ASSOCIATION);
    }

    bool was_asked_ = false;
};

/// The item "This PC" of the desktop, which every system has.
com::unique_child_id any_item(IShellFolder* desktop) noexcept {
    wchar_t name[] = L"::{20D04FE0-3AEA-1069-A2D8-08002B30309D}";
    PIDLIST_RELATIVE item = nullptr;
    (void)desktop->ParseDisplayName(nullptr, nullptr, name, nullptr, &item, nullptr);
    return com::unique_child_id(reinterpret_cast<PITEMID_CHILD>(item));
}

bool is_exported(const wchar_t* dll, const char* name) noexcept {
    return system_function<void()>(dll, name) != nullptr;
}

}  // namespace

bool lacks_default_extract_icon() noexcept {
    return !is_exported(L"shell32.dll", "SHCreateDefaultExtractIcon");
}

bool lacks_associations_for_classes() noexcept {
    return !is_exported(L"shell32.dll", "AssocCreateForClasses");
}

bool lacks_data_objects() noexcept {
    return is_not_implemented(
        system_function<decltype(SHCreateDataObject)>(L"shell32.dll", "SHCreateDataObject"));
}

bool lacks_handlers_in_menus() noexcept {
    return ignores_classes(
        system_function<decltype(SHCreateDefaultContextMenu)>(L"shell32.dll", "SHCreateDefaultContextMenu"));
}

bool lacks_elevation() noexcept {
    // The name is only read, not bound: nobody is prompted. The class is the shell's own file operation.
    ComPtr<IBindCtx> context;
    ComPtr<IMoniker> moniker;
    ULONG read_chars = 0;
    return FAILED(CreateBindCtx(0, context.GetAddressOf())) ||
           FAILED(MkParseDisplayName(context.Get(),
                                     L"Elevation:Administrator!new:{3AD05575-8857-4850-9277-11B85BDB8E09}",
                                     &read_chars, moniker.GetAddressOf()));
}

bool is_not_implemented(decltype(SHCreateDataObject)* create) noexcept {
    constexpr ITEMIDLIST_ABSOLUTE desktop{};
    ComPtr<IDataObject> made;
    return create == nullptr ||
           create(&desktop, 0, nullptr, nullptr, IID_PPV_ARGS(made.GetAddressOf())) == E_NOTIMPL;
}

bool ignores_classes(decltype(SHCreateDefaultContextMenu)* create) noexcept {
    if (create == nullptr) {
        return true;
    }
    const auto associations = com::adopt(com::make_object<noting_associations>());
    ComPtr<IShellFolder> desktop;
    const com::unique_child_id item =
        SUCCEEDED(SHGetDesktopFolder(desktop.GetAddressOf())) ? any_item(desktop.Get()) : nullptr;
    if (associations == nullptr || item == nullptr) {
        return false;  // What cannot be tried stays the system's.
    }
    PCUITEMID_CHILD child = item.get();
    DEFCONTEXTMENU description{};
    description.psf = desktop.Get();
    description.cidl = 1;
    description.apidl = &child;
    description.punkAssociationInfo = associations.Get();
    ComPtr<IContextMenu> menu;
    const HRESULT made = create(&description, IID_PPV_ARGS(menu.GetAddressOf()));
    if (FAILED(made)) {
        return made == E_NOTIMPL;
    }
    const win::unique_menu popup(CreatePopupMenu());
    (void)menu->QueryContextMenu(popup.get(), 0, 1, 0x7FFF, CMF_NORMAL);
    return !associations->was_asked();
}

}  // namespace ov::stand_ins
