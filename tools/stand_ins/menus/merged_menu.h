#pragma once

#include <windows.h>
#include <shobjidl.h>
#include <wrl/client.h>

#include <functional>
#include <string>
#include <vector>

namespace ov::stand_ins {

/// Where one share of a merged menu comes from.
struct menu_source {
    /// For messages: the handler's name.
    std::wstring name;
    /// Also asked when only the default verb is wanted (CMF_DEFAULTONLY); other sources are not even opened.
    bool serves_default = false;
    /// Set for the system's own commands: what follows is put behind their first group, between separators,
    /// and not at their end.
    bool leads = false;
    /// Makes the menu object, ready to be queried; called once a query.
    std::function<HRESULT(IContextMenu** menu)> open;
};

/// One source's share after a query.
struct menu_part {
    std::wstring name;
    Microsoft::WRL::ComPtr<IContextMenu> menu;
    /// What opening it and asking it for its items gave; the second stays E_PENDING when the first failed.
    HRESULT open_result = E_PENDING;
    HRESULT query_result = E_PENDING;
    /// Its command offsets start here and are so many, within the merged menu's own.
    UINT first_offset = 0;
    UINT count = 0;

    [[nodiscard]] bool holds(UINT offset) const noexcept {
        return offset >= first_offset && offset - first_offset < count;
    }
};

/// What a merged menu of this library answers besides IContextMenu3 and IObjectWithSite. For this process;
/// never marshalled.
struct IMergedMenu : IUnknown {
    /// The parts of the last query; valid until the next one.
    [[nodiscard]] virtual const std::vector<menu_part>& parts() const noexcept = 0;
};

/// One context menu out of several, as the shell makes it for a selection: each source adds its items behind
/// those of the one before, with command numbers behind the one before, and commands go back to the source
/// that they came from.
///
/// A source that cannot be opened, or that refuses the query, has no share; the rest is made all the same. A
/// verb given as a text goes to the part that names it so (GCS_VERBW), never to a part that does not. When
/// only the default verb is asked for and no source marked a default item, the first command becomes it.
/// `result` is null and E_OUTOFMEMORY returned when there is no memory.
[[nodiscard]] HRESULT make_merged_menu(std::vector<menu_source> sources, REFIID riid, void** result) noexcept;

}  // namespace ov::stand_ins

#ifdef __CRT_UUID_DECL
// {6C1D84F3-20B7-4E8A-8A5D-F3E9027B61C4}
__CRT_UUID_DECL(ov::stand_ins::IMergedMenu, 0x6C1D84F3, 0x20B7, 0x4E8A, 0x8A, 0x5D, 0xF3, 0xE9, 0x02, 0x7B,
                0x61, 0xC4)
#endif
