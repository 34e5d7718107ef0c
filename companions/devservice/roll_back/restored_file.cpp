#include "companions/devservice/roll_back/restored_file.h"

#include "companions/devservice/files/file_io.h"
#include "companions/devservice/files/links.h"
#include "companions/devservice/files/path.h"
#include "companions/devservice/files/unfinished_file.h"

namespace ov::devservice {
namespace {

constexpr wchar_t beside_suffix[] = L".orvrestore";

// What a file may be given back; compression, encryption and the like belong to the volume.
constexpr DWORD restorable_attributes = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN |
                                        FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE |
                                        FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;

DWORD set_written_time(HANDLE file, std::int64_t written) {
    ULARGE_INTEGER ticks{};
    ticks.QuadPart = static_cast<ULONGLONG>(written);
    const FILETIME time{ticks.LowPart, ticks.HighPart};
    return SetFileTime(file, nullptr, nullptr, &time) ? ERROR_SUCCESS : GetLastError();
}

DWORD set_attributes(const std::wstring& path, DWORD attributes) {
    return SetFileAttributesW(long_form(path).c_str(), attributes) ? ERROR_SUCCESS : GetLastError();
}

/// Puts `beside` in the place of the file at `path`, which goes on under the name `aside`. That name comes
/// first, then the place is taken in one step: at no moment is there no file at `path`.
DWORD exchange(const std::wstring& beside, const std::wstring& path, const std::wstring& aside) {
    constexpr DWORD patience_ms =
        200;  // for whoever looks at a new file for a moment, a virus scanner for one
    DWORD error = make_folders(parent_folder(aside));
    const DWORD attributes = attributes_of(path);
    const bool read_only = (attributes & FILE_ATTRIBUTE_READONLY) != 0;
    if (error == ERROR_SUCCESS && read_only) {
        error = set_attributes(path, attributes & ~DWORD{FILE_ATTRIBUTE_READONLY});
    }
    if (error == ERROR_SUCCESS) {
        error = duplicate_file(path, aside);
    }
    if (error != ERROR_SUCCESS) {
        return error;
    }
    error = replace_file(beside, path, patience_ms);
    if (error != ERROR_SUCCESS) {
        static_cast<void>(remove_file(aside));
    }
    if (read_only) {
        static_cast<void>(set_attributes(error == ERROR_SUCCESS ? aside : path, attributes));
    }
    return error;
}

}  // namespace

DWORD write_recorded(const object_store& objects, const file_record& record, const std::wstring& new_file) {
    unfinished_file file;
    DWORD error = file.make(new_file);
    if (error == ERROR_SUCCESS) {
        error = objects.write_out(record.digest, file.get());
    }
    if (error == ERROR_SUCCESS) {
        error = set_written_time(file.get(), record.written);
    }
    if (error == ERROR_SUCCESS) {
        error = file.finish();
    }
    const DWORD attributes = record.attributes & restorable_attributes;
    if (error == ERROR_SUCCESS && attributes != 0) {
        error = set_attributes(new_file, attributes);
        if (error != ERROR_SUCCESS) {
            static_cast<void>(remove_file(new_file));
        }
    }
    return error;
}

DWORD replace_with_recorded(const object_store& objects, const file_record& record, const std::wstring& path,
                            const std::wstring& aside) {
    if (leads_through_link(path)) {
        return ERROR_CANT_ACCESS_FILE;
    }
    const DWORD present = attributes_of(path);
    if (present != INVALID_FILE_ATTRIBUTES && (present & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        return ERROR_ALREADY_EXISTS;
    }
    const std::wstring beside = free_name(path + beside_suffix);
    DWORD error = write_recorded(objects, record, beside);
    if (error != ERROR_SUCCESS) {
        return error;
    }
    error = present == INVALID_FILE_ATTRIBUTES ? move_file(beside, path) : exchange(beside, path, aside);
    if (error != ERROR_SUCCESS) {
        static_cast<void>(remove_file(beside));
    }
    return error;
}

}  // namespace ov::devservice
