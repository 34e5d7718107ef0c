#pragma once

#include <windows.h>
#include <shobjidl.h>

#include <atomic>
#include <cstdint>
#include <vector>

#include "module/state/module_state.h"
#include "namespace/items/item_data.h"
#include "namespace/items/shared_text.h"
#include "namespace/locations/location_document.h"
#include "ovufc/com/com_object.h"
#include "ovufc/com/task_memory.h"

namespace ov::name_space {

class orvNameSpace;

// IUnknown first, then exactly the six.
using orvNameSpaceBase = com::com_object<
    orvNameSpace, com::bases<IShellFolder2, IPersistFolder2, IExplorerPaneVisibility>,
    com::answers<com::answer<IUnknown, IShellFolder2>, com::answer<IShellFolder, IShellFolder2>,
                 com::answer<IShellFolder2>, com::answer<IPersist, IPersistFolder2>,
                 com::answer<IPersistFolder, IPersistFolder2>, com::answer<IPersistFolder2>,
                 com::answer<IExplorerPaneVisibility>>,
    &module_state::namespace_object_count>;

/// The folder "Orvane" of the navigation pane: the protected locations and up to two action entries, as one
/// flat list.
///
/// The list is built in the constructor from the cached protected-locations document and never changes; for
/// the current list, make a new folder. `refresh_protected_locations` must have been called before.
/// Make it with `com::make_object`: the caller owns the one reference. Called from several threads:
/// `itemsLock` guards the items; a location that was handed out to the shell stays valid until the folder
/// ends, whatever `Initialize` is given meanwhile. Every ID list handed in is bounded by its own size words
/// and otherwise untrusted.
class orvNameSpace final : public orvNameSpaceBase {
  public:
    /// A damaged document, or one that there is no memory for, does not fail the construction: its items are
    /// missing then. Throws std::bad_alloc only, when there is no memory for the other items.
    orvNameSpace();
    virtual ~orvNameSpace();

    // IShellFolder
    /// The first item that has the name, compared as a whole and without regard to letter case.
    STDMETHODIMP
    ParseDisplayName(HWND hwnd, IBindCtx* bind_context, LPWSTR name, ULONG* eaten, PIDLIST_RELATIVE* id_list,
                     ULONG* attributes) noexcept override;
    STDMETHODIMP
    EnumObjects(HWND hwnd, SHCONTF wanted, IEnumIDList** enumerator) noexcept override;
    /// Hands the request to the real folder that the item names.
    STDMETHODIMP
    BindToObject(PCUIDLIST_RELATIVE id_list, IBindCtx* bind_context, REFIID riid,
                 void** result) noexcept override;
    STDMETHODIMP
    BindToStorage(PCUIDLIST_RELATIVE id_list, IBindCtx* bind_context, REFIID riid,
                  void** result) noexcept override;
    /// All items are equal, so that the view keeps the order of the enumeration.
    STDMETHODIMP
    CompareIDs(LPARAM flags, PCUIDLIST_RELATIVE first, PCUIDLIST_RELATIVE second) noexcept override;
    STDMETHODIMP
    CreateViewObject(HWND owner, REFIID riid, void** result) noexcept override;
    STDMETHODIMP
    GetAttributesOf(UINT count, PCUITEMID_CHILD_ARRAY entries, SFGAOF* in_out) noexcept override;
    STDMETHODIMP
    GetUIObjectOf(HWND owner, UINT count, PCUITEMID_CHILD_ARRAY entries, REFIID riid, UINT* reserved,
                  void** result) noexcept override;
    STDMETHODIMP
    GetDisplayNameOf(PCUITEMID_CHILD entry, SHGDNF flags, STRRET* result) noexcept override;
    STDMETHODIMP
    SetNameOf(HWND hwnd, PCUITEMID_CHILD entry, LPCWSTR name, SHGDNF flags,
              PITEMID_CHILD* result) noexcept override;

    // IShellFolder2
    STDMETHODIMP
    GetDefaultSearchGUID(GUID* guid) noexcept override;
    STDMETHODIMP
    EnumSearches(IEnumExtraSearch** result) noexcept override;
    STDMETHODIMP
    GetDefaultColumn(DWORD reserved, ULONG* sort, ULONG* display) noexcept override;
    STDMETHODIMP
    GetDefaultColumnState(UINT column, SHCOLSTATEF* state) noexcept override;
    STDMETHODIMP
    GetDetailsEx(PCUITEMID_CHILD entry, const SHCOLUMNID* key, VARIANT* value) noexcept override;
    STDMETHODIMP
    GetDetailsOf(PCUITEMID_CHILD entry, UINT column, SHELLDETAILS* details) noexcept override;
    STDMETHODIMP
    MapColumnToSCID(UINT column, SHCOLUMNID* key) noexcept override;

    // IPersist, IPersistFolder, IPersistFolder2
    STDMETHODIMP
    GetClassID(CLSID* clsid) noexcept override;
    /// May be called again: the folder then is where the last call says.
    STDMETHODIMP
    Initialize(PCIDLIST_ABSOLUTE id_list) noexcept override;
    STDMETHODIMP
    GetCurFolder(PIDLIST_ABSOLUTE* result) noexcept override;

    // IExplorerPaneVisibility
    /// Forces the ribbon on and leaves the caller's value for every other pane.
    STDMETHODIMP
    GetPaneState(REFEXPLORERPANE pane, EXPLORERPANESTATE* state) noexcept override;

  private:
    void build_items();
    void add_item(shared_text name, std::uint16_t type);
    void add_user_folder(std::uint32_t bit);
    void add_category_items(const location_document& document) noexcept;
    void add_locations(const location_document& document);
    void add_action_entries();
    void read_flags() noexcept;

    [[nodiscard]] HRESULT create_view(IShellView** result) noexcept;

    std::vector<ItemData> items;  // in display order
    SRWLOCK itemsLock = SRWLOCK_INIT;
    std::int32_t nextIndex = 0;  // numbers items as they are added
    // From the driver's flags word as it was when the folder was made.
    bool uiRestricted = false;
    [[maybe_unused]] bool isServer = false;  // kept, not used yet
    bool showRestore = false;
    bool showAddons = false;
    bool detailsView = false;
    [[maybe_unused]] bool exportsAvailable = false;  // likewise
    // Where the shell has put this folder: the list that `Initialize` was given last, or null.
    std::atomic<PCIDLIST_ABSOLUTE> folderIdList{nullptr};
    // Every list it was given. The earlier ones are kept until the folder ends, and not freed by the next
    // `Initialize`: another thread may be copying one, or the shell making a menu of one, at that moment. A
    // lock for all that would be held while the shell calls back into this folder.
    std::vector<com::unique_absolute_id_list> givenIdLists;
    SRWLOCK givenListsLock = SRWLOCK_INIT;  // for `Initialize` alone
};

}  // namespace ov::name_space
