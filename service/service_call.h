#pragma once

#include <cstdint>

namespace ov::service {

/// The number that a request carries as "serviceCall": the driver tells the calls apart by it alone.
enum class service_call : std::int64_t {
    protect_folder = 3,
    get_folder_status = 13,
    unprotect_folder = 14,
    protect_folder_as = 28,
    get_protected_folders = 35,
    get_restore_points = 36,
    get_restore_folders = 37,
    restore_from_point = 39,
    restore_file_chronel = 42,
    export_folder = 44,
    get_last_timestamp = 45,
    get_file_chronels = 46,
    open_file_chronel = 47,
};

}  // namespace ov::service
