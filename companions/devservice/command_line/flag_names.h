#pragma once

#include <cstdint>

#include "ovufc/ipc/drvport/wire.h"

namespace ov::devservice {

/// The bits of the flags word by the names of their command-line options.
struct flag_name {
    const wchar_t* option;
    std::uint32_t bit;
};

inline constexpr flag_name flag_names[] = {
    {L"--restricted", ORV_FLAG_UI_RESTRICTED},  {L"--restore-hidden", ORV_FLAG_RESTORE_HIDDEN},
    {L"--exports", ORV_FLAG_EXPORTS_AVAILABLE}, {L"--addons", ORV_FLAG_ADDONS_SHOWN},
    {L"--details", ORV_FLAG_DETAILS_VIEW},      {L"--unprotect-blocked", ORV_FLAG_UNPROTECT_BLOCKED},
};

}  // namespace ov::devservice
