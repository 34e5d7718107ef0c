#include "module/registration/shell_notice.h"

#include <windows.h>
#include <shlobj.h>

#include "ovufc/com/task_memory.h"

namespace ov::registration {

void notify_desktop_changed() noexcept {
    PIDLIST_ABSOLUTE desktop = nullptr;
    if (SUCCEEDED(SHGetSpecialFolderLocation(nullptr, CSIDL_DESKTOP, &desktop))) {
        const com::unique_absolute_id_list owned(desktop);
        SHChangeNotify(SHCNE_UPDATEDIR, SHCNF_IDLIST, desktop, nullptr);
    }
}

}  // namespace ov::registration
