#include "tools/stand_ins/menus/merged_menu.h"

#include <ocidl.h>
#include <shellapi.h>

#include <algorithm>
#include <array>

#include "ovufc/com/adopt.h"
#include "ovufc/com/com_object.h"
#include "ovufc/com/guard.h"
#include "tools/stand_ins/menus/menu_site.h"

namespace ov::stand_ins {

namespace {

using Microsoft::WRL::ComPtr;

constexpr int verb_chars = 128;

UINT item_count(HMENU menu) noexcept {
    const int count = GetMenuItemCount(menu);
    return count > 0 ? static_cast<UINT>(count) : 0;
}

bool is_separator(HMENU menu, UINT position) noexcept {
    MENUITEMINFOW info{};
    info.cbSize = sizeof info;
    info.fMask = MIIM_FTYPE;
    return GetMenuItemInfoW(menu, position, TRUE, &info) && (info.fType & MFT_SEPARATOR) != 0;
}

void insert_separator(HMENU menu, UINT position) noexcept {
    InsertMenuW(menu, position, MF_BYPOSITION | MF_SEPARATOR, 0, nullptr);
}

/// The position behind the first group of the `count` items that start at `position`.
UINT end_of_first_group(HMENU menu, UINT position, UINT count) noexcept {
    for (UINT i = 0; i < count; ++i) {
        if (is_separator(menu, position + i)) {
            return position + i + 1;
        }
    }
    return position + count;
}

void make_first_command_default(HMENU menu, UINT position) noexcept {
    if (GetMenuDefaultItem(menu, TRUE, 0) != static_cast<UINT>(-1)) {
        return;
    }
    for (UINT i = position; i < item_count(menu); ++i) {
        const UINT state = GetMenuState(menu, i, MF_BYPOSITION);
        if (!is_separator(menu, i) && (state & (MF_GRAYED | MF_DISABLED | MF_POPUP)) == 0) {
            SetMenuDefaultItem(menu, i, TRUE);
            return;
        }
    }
}

void set_site(IUnknown* object, IUnknown* site) noexcept {
    ComPtr<IObjectWithSite> with_site;
    if (object != nullptr && SUCCEEDED(object->QueryInterface(IID_PPV_ARGS(with_site.GetAddressOf())))) {
        (void)with_site->SetSite(site);
    }
}

class merged_menu final
    : public com::com_object<
          merged_menu, com::bases<IContextMenu3, IObjectWithSite, IMergedMenu>,
          com::answers<com::answer<IUnknown, IContextMenu3>, com::answer<IContextMenu, IContextMenu3>,
                       com::answer<IContextMenu2, IContextMenu3>, com::answer<IContextMenu3>,
                       com::answer<IObjectWithSite>, com::answer<IMergedMenu>>> {
  public:
    explicit merged_menu(std::vector<menu_source> sources) : sources_(std::move(sources)) {}
    virtual ~merged_menu() { detach_parts(); }

    STDMETHODIMP
    QueryContextMenu(HMENU menu, UINT index, UINT first, UINT last, UINT flags) noexcept override {
        if (menu == nullptr || first > last) {
            return E_INVALIDARG;
        }
        return com::guarded([&] {
            detach_parts();
            UINT position = std::min(index, item_count(menu));
            UINT next = first;
            bool follows_lead = false;
            for (const menu_source& source : sources_) {
                if ((flags & CMF_DEFAULTONLY) != 0 && !source.serves_default) {
                    continue;
                }
                const UINT added = add_part(source, menu, position, next, first, last, flags);
                next += parts_.back().count;
                if (source.leads) {
                    position = end_of_first_group(menu, position, added);
                    follows_lead = added != 0;
                } else if (added != 0) {
                    position = close_group(menu, position, added, follows_lead);
                    follows_lead = false;
                }
            }
            if ((flags & CMF_DEFAULTONLY) != 0) {
                make_first_command_default(menu, index);
            }
            return MAKE_HRESULT(SEVERITY_SUCCESS, 0, next - first);
        });
    }

    STDMETHODIMP
    InvokeCommand(CMINVOKECOMMANDINFO* info) noexcept override {
        if (info == nullptr || info->cbSize < sizeof(CMINVOKECOMMANDINFO)) {
            return E_INVALIDARG;
        }
        return com::guarded([&]() -> HRESULT {
            CMINVOKECOMMANDINFOEX passed{};
            const bool extended = info->cbSize >= sizeof passed;
            CopyMemory(&passed, info, extended ? sizeof passed : sizeof *info);
            passed.cbSize = extended ? sizeof passed : sizeof *info;
            const UINT offset =
                IS_INTRESOURCE(info->lpVerb) ? LOWORD(info->lpVerb) : offset_of_verb(passed, extended);
            const menu_part* part = part_of(offset);
            if (part == nullptr) {
                return E_INVALIDARG;
            }
            passed.lpVerb = MAKEINTRESOURCEA(offset - part->first_offset);
            passed.lpVerbW = MAKEINTRESOURCEW(offset - part->first_offset);
            return part->menu->InvokeCommand(reinterpret_cast<CMINVOKECOMMANDINFO*>(&passed));
        });
    }

    STDMETHODIMP
    GetCommandString(UINT_PTR command, UINT type, UINT* reserved, LPSTR text,
                     UINT capacity) noexcept override {
        const menu_part* part = command <= largest_offset ? part_of(static_cast<UINT>(command)) : nullptr;
        return part != nullptr ? part->menu->GetCommandString(command - part->first_offset, type, reserved,
                                                              text, capacity)
                               : E_INVALIDARG;
    }

    STDMETHODIMP
    HandleMenuMsg(UINT message, WPARAM wparam, LPARAM lparam) noexcept override {
        return HandleMenuMsg2(message, wparam, lparam, nullptr);
    }

    STDMETHODIMP
    HandleMenuMsg2(UINT message, WPARAM wparam, LPARAM lparam, LRESULT* answer) noexcept override {
        HRESULT result = E_NOTIMPL;
        for (const menu_part& part : parts_) {
            ComPtr<IContextMenu3> third;
            ComPtr<IContextMenu2> second;
            if (SUCCEEDED(part.menu.As(&third))) {
                result = third->HandleMenuMsg2(message, wparam, lparam, answer);
            } else if (SUCCEEDED(part.menu.As(&second))) {
                result = second->HandleMenuMsg(message, wparam, lparam);
            }
        }
        return result;
    }

    STDMETHODIMP
    SetSite(IUnknown* site) noexcept override {
        site_ = site;
        for (const menu_part& part : parts_) {
            set_site(part.menu.Get(), site);
        }
        return S_OK;
    }
    STDMETHODIMP
    GetSite(REFIID riid, void** result) noexcept override { return query_site(site_.Get(), riid, result); }

    [[nodiscard]] const std::vector<menu_part>& parts() const noexcept override { return parts_; }

  private:
    static constexpr UINT largest_offset = 0xFFFF;

    /// Opens and asks one source; says how many items it added at `position`.
    UINT add_part(const menu_source& source, HMENU menu, UINT position, UINT next, UINT first, UINT last,
                  UINT flags) {
        menu_part& part = parts_.emplace_back();
        part.name = source.name;
        part.first_offset = next - first;
        part.open_result = source.open(part.menu.GetAddressOf());
        if (FAILED(part.open_result)) {
            return 0;
        }
        set_site(part.menu.Get(), site_.Get());
        const UINT before = item_count(menu);
        part.query_result = part.menu->QueryContextMenu(menu, position, next, last, flags);
        if (FAILED(part.query_result)) {
            return 0;
        }
        part.count = std::min(static_cast<UINT>(HRESULT_CODE(part.query_result)), last - next + 1);
        return item_count(menu) - before;
    }

    /// Parts a source's items from the system's next group; says where the next source's items go.
    static UINT close_group(HMENU menu, UINT position, UINT added, bool follows_lead) noexcept {
        const UINT end = position + added;
        if (follows_lead && end < item_count(menu)) {
            insert_separator(menu, end);
        }
        return end;
    }

    [[nodiscard]] const menu_part* part_of(UINT offset) const noexcept {
        const auto found = std::find_if(parts_.begin(), parts_.end(), [&](const menu_part& part) {
            return part.menu != nullptr && part.holds(offset);
        });
        return found != parts_.end() ? &*found : nullptr;
    }

    [[nodiscard]] UINT offset_of_verb(const CMINVOKECOMMANDINFOEX& info, bool extended) const {
        std::wstring wanted;
        if (extended && (info.fMask & CMIC_MASK_UNICODE) != 0 && !IS_INTRESOURCE(info.lpVerbW)) {
            wanted = info.lpVerbW;
        } else {
            wanted.assign(info.lpVerb, info.lpVerb + lstrlenA(info.lpVerb));
        }
        for (const menu_part& part : parts_) {
            for (UINT i = 0; i < part.count; ++i) {
                std::array<wchar_t, verb_chars> verb{};
                if (SUCCEEDED(part.menu->GetCommandString(
                        i, GCS_VERBW, nullptr, reinterpret_cast<LPSTR>(verb.data()), verb_chars)) &&
                    lstrcmpiW(verb.data(), wanted.c_str()) == 0) {
                    return part.first_offset + i;
                }
            }
        }
        return ~0U;
    }

    /// A part that keeps the site keeps the browser alive: parts let go of it first.
    void detach_parts() noexcept {
        for (const menu_part& part : parts_) {
            set_site(part.menu.Get(), nullptr);
        }
        parts_.clear();
    }

    std::vector<menu_source> sources_;
    std::vector<menu_part> parts_;
    ComPtr<IUnknown> site_;
};

}  // namespace

HRESULT make_merged_menu(std::vector<menu_source> sources, REFIID riid, void** result) noexcept {
    *result = nullptr;
    return com::guarded([&]() -> HRESULT {
        ComPtr<merged_menu> object;
        object = com::adopt(com::make_object<merged_menu>(std::move(sources)));
        return object != nullptr ? object->QueryInterface(riid, result) : E_OUTOFMEMORY;
    });
}

}  // namespace ov::stand_ins
