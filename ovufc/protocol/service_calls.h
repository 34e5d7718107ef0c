#pragma once

#include <cstdint>

/// What module and service say to each other, beside the framing of `ovufc/ipc/drvport/wire.h`: a request is
/// {"parameters":{…},"serviceCall":N}, a reply {"data":{…},"statusCode":N}, both UTF-8 JSON. The one list of
/// the numbers and names; docs/service-calls.md says which call has which.
namespace ov::protocol {

/// "serviceCall": the service tells the calls apart by it alone.
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

/// "statusCode" of a call that did its work.
inline constexpr std::int64_t status_success = 0;
/// The same of get_last_timestamp, for which 0 is a failure.
inline constexpr std::int64_t status_timestamp_present = -2;

namespace fields {

// Of the envelope.
inline constexpr const char* service_call = "serviceCall";
inline constexpr const char* parameters = "parameters";
inline constexpr const char* status_code = "statusCode";
inline constexpr const char* data = "data";

// Of parameters and data. Paths are UTF-8.
inline constexpr const char* folder_name = "folderName";
inline constexpr const char* file_name = "fileName";
inline constexpr const char* object_path = "objPath";  // also of a file with the answer, in a reply
inline constexpr const char* temp_folder = "tempFolder";
inline constexpr const char* export_type = "exportType";
inline constexpr const char* used_file_name = "usedFileName";
inline constexpr const char* clone_file_name = "cloneFileName";
inline constexpr const char* chronel_type = "chronelType";
inline constexpr const char* created_on = "createdOn";  // a file time
inline constexpr const char* sequence_number = "sequenceNumber";
inline constexpr const char* protected_folder = "protectedFolder";
inline constexpr const char* ui_level = "uiLevel";
inline constexpr const char* restore_points = "restorePoints";
inline constexpr const char* last_timestamp = "lastTimestamp";  // a file time

// Of the file that answers get_restore_folders.
inline constexpr const char* restore_folders = "restoreFolders";
// Of a record of the chronel list, beside fileName and cloneFileName.
inline constexpr const char* type = "type";

}  // namespace fields

/// Values of "exportType".
inline constexpr const char* export_deleted_files = "recycleBin";
inline constexpr const char* export_chronels = "chronels";

/// The one value of "uiLevel" that has a meaning.
inline constexpr const char* ui_level_restricted = "restricted";

}  // namespace ov::protocol
