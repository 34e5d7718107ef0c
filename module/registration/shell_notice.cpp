#include "module/registration/shell_notice.h"

#include <windows.h>
#include <shlobj.h>

namespace ov::registration {

void notify_desktop_changed() noexcept {
    PIDLIST_ABSOLUTE desktop = nullptr;
    if (SUCCEEDED(SHGetSpecialFolderLocation(nullptr, CSIDL_DESKTOP, &desktop))) {
        SHChangeNotify(SHCNE_UPDATEDIR, SHCNF_IDLIST, desktop, nullptr);
        CoTaskMemFree(desktop);
    }
}

}  // namespace ov::registration
