#include "companions/devservice/files/file_io.h"

#include <vector>

#include "companions/devservice/copies/mark.h"
#include "companions/devservice/files/links.h"
#include "companions/devservice/files/path.h"
#include "companions/devservice/store/sha256.h"

namespace ov::devservice {
namespace {

constexpr DWORD block_bytes = 64 * 1024;
constexpr DWORD share_all = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

DWORD write_all(HANDLE file, const char* bytes, DWORD size_bytes) noexcept {
    DWORD written = 0;
    if (!WriteFile(file, bytes, size_bytes, &written, nullptr)) {
        return GetLastError();
    }
    return written == size_bytes ? ERROR_SUCCESS : ERROR_DISK_FULL;
}

DWORD flush(HANDLE file) noexcept {
    return FlushFileBuffers(file) ? ERROR_SUCCESS : GetLastError();
}

/// Copies a file to another volume. Nobody can write to `from` as long as `held` is open.
DWORD copy_held(const std::wstring& from, const std::wstring& to, win::unique_file& held) {
    if (is_link(from)) {
        return ERROR_CANT_ACCESS_FILE;  // what it leads to would be copied
    }
    held.reset(CreateFileW(long_form(from).c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE,
                           nullptr, OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
    if (!held) {
        return GetLastError();
    }
    // CopyFileW keeps times, attributes and streams.
    if (!CopyFileW(long_form(from).c_str(), long_form(to).c_str(), TRUE)) {
        const DWORD error = GetLastError();
        if (error != ERROR_FILE_EXISTS) {
            static_cast<void>(remove_file(to));  // a part of it, on a full disk
        }
        return error;
    }
    const DWORD attributes = attributes_of(to);
    SetFileAttributesW(long_form(to).c_str(), FILE_ATTRIBUTE_NORMAL);
    win::unique_file copy(
        CreateFileW(long_form(to).c_str(), GENERIC_WRITE, share_all, nullptr, OPEN_EXISTING, 0, nullptr));
    const DWORD error = copy ? flush(copy.get()) : GetLastError();
    copy.reset();
    SetFileAttributesW(long_form(to).c_str(), attributes);
    return error;
}

bool is_refusal_while_open(DWORD error) noexcept {
    return error == ERROR_ACCESS_DENIED || error == ERROR_SHARING_VIOLATION;
}

}  // namespace

DWORD open_for_reading(const std::wstring& path, win::unique_file& file) {
    win::unique_file opened(CreateFileW(long_form(path).c_str(), GENERIC_READ, share_all, nullptr,
                                        OPEN_EXISTING,
                                        FILE_FLAG_OPEN_REPARSE_POINT | FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    if (!opened) {
        return GetLastError();
    }
    FILE_ATTRIBUTE_TAG_INFO information{};
    if (!GetFileInformationByHandleEx(opened.get(), FileAttributeTagInfo, &information, sizeof information)) {
        return GetLastError();
    }
    const DWORD no_file = FILE_ATTRIBUTE_REPARSE_POINT | FILE_ATTRIBUTE_DIRECTORY;
    if (((information.FileAttributes & no_file) != 0 &&
         !is_marked_file(information.FileAttributes, information.ReparseTag)) ||
        reached_elsewhere(opened.get(), path)) {
        return ERROR_CANT_ACCESS_FILE;
    }
    file = std::move(opened);
    return ERROR_SUCCESS;
}

DWORD create_new_file(const std::wstring& path, win::unique_file& file) {
    file.reset(CreateFileW(long_form(path).c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                           CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
    return file ? ERROR_SUCCESS : GetLastError();
}

DWORD copy_and_hash(HANDLE from, HANDLE to, std::string& digest, std::uint64_t& size_bytes) {
    sha256 hash;
    std::vector<char> block(block_bytes);
    std::uint64_t total_bytes = 0;
    for (;;) {
        DWORD read_bytes = 0;
        if (!ReadFile(from, block.data(), block_bytes, &read_bytes, nullptr)) {
            return GetLastError();
        }
        if (read_bytes == 0) {
            break;
        }
        hash.add(block.data(), read_bytes);
        total_bytes += read_bytes;
        if (to != INVALID_HANDLE_VALUE) {
            if (const DWORD error = write_all(to, block.data(), read_bytes); error != ERROR_SUCCESS) {
                return error;
            }
        }
    }
    digest = hash.finish();
    size_bytes = total_bytes;
    return digest.empty() ? ERROR_INTERNAL_ERROR : ERROR_SUCCESS;
}

DWORD hash_file(const std::wstring& path, std::string& digest) {
    win::unique_file file;
    if (const DWORD error = open_for_reading(path, file); error != ERROR_SUCCESS) {
        return error;
    }
    std::uint64_t size_bytes = 0;
    return copy_and_hash(file.get(), INVALID_HANDLE_VALUE, digest, size_bytes);
}

DWORD make_folders(const std::wstring& path) {
    if (CreateDirectoryW(long_form(path).c_str(), nullptr)) {
        return ERROR_SUCCESS;
    }
    DWORD error = GetLastError();
    if (error == ERROR_PATH_NOT_FOUND && !is_volume_root(path) && !parent_of(path).empty()) {
        error = make_folders(parent_of(path));
        if (error == ERROR_SUCCESS) {
            error = CreateDirectoryW(long_form(path).c_str(), nullptr) ? ERROR_SUCCESS : GetLastError();
        }
    }
    // Whatever the system says of a folder that is there (a root, for one, is "access denied"), it is there.
    const DWORD attributes = attributes_of(path);
    const bool there = attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    return there ? ERROR_SUCCESS : error;
}

DWORD move_file(const std::wstring& from, const std::wstring& to) {
    const std::wstring source = long_form(from);
    const std::wstring target = long_form(to);
    if (MoveFileExW(source.c_str(), target.c_str(), 0)) {
        return ERROR_SUCCESS;
    }
    if (const DWORD error = GetLastError(); error != ERROR_NOT_SAME_DEVICE) {
        return error;
    }
    win::unique_file held;
    const DWORD error = copy_held(from, to, held);
    return error == ERROR_SUCCESS ? remove_file(from) : error;
}

DWORD replace_file(const std::wstring& from, const std::wstring& to, DWORD patience_ms) {
    constexpr DWORD poll_ms = 1;
    const ULONGLONG start_ms = GetTickCount64();
    for (;;) {
        if (MoveFileExW(long_form(from).c_str(), long_form(to).c_str(),
                        MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
            return ERROR_SUCCESS;
        }
        const DWORD error = GetLastError();
        if (!is_refusal_while_open(error) || GetTickCount64() - start_ms >= patience_ms) {
            return error;
        }
        Sleep(poll_ms);
    }
}

DWORD duplicate_file(const std::wstring& from, const std::wstring& to) {
    // A file that is held could get a second name, but neither of them would go away again.
    win::unique_file held(CreateFileW(long_form(from).c_str(), DELETE, share_all, nullptr, OPEN_EXISTING,
                                      FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
    if (!held) {
        return GetLastError();
    }
    held.reset();
    if (CreateHardLinkW(long_form(to).c_str(), long_form(from).c_str(), nullptr)) {
        return ERROR_SUCCESS;
    }
    return copy_held(from, to, held);
}

DWORD remove_file(const std::wstring& path) {
    const std::wstring name = long_form(path);
    const DWORD attributes = GetFileAttributesW(name.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0) {
        SetFileAttributesW(name.c_str(), attributes & ~static_cast<DWORD>(FILE_ATTRIBUTE_READONLY));
    }
    return DeleteFileW(name.c_str()) ? ERROR_SUCCESS : GetLastError();
}

DWORD read_whole_file(const std::wstring& path, std::uint64_t limit_bytes, std::string& bytes) {
    win::unique_file file;
    if (const DWORD error = open_for_reading(path, file); error != ERROR_SUCCESS) {
        return error;
    }
    LARGE_INTEGER size{};
    if (!GetFileSizeEx(file.get(), &size)) {
        return GetLastError();
    }
    if (static_cast<std::uint64_t>(size.QuadPart) > limit_bytes) {
        return ERROR_FILE_TOO_LARGE;
    }
    std::string read(static_cast<std::size_t>(size.QuadPart), '\0');
    DWORD read_bytes = 0;
    if (!ReadFile(file.get(), read.data(), static_cast<DWORD>(read.size()), &read_bytes, nullptr)) {
        return GetLastError();
    }
    read.resize(read_bytes);
    bytes = std::move(read);
    return ERROR_SUCCESS;
}

DWORD write_new_file(const std::wstring& path, const std::string& bytes) {
    win::unique_file file;
    DWORD error = create_new_file(path, file);
    if (error != ERROR_SUCCESS) {
        return error;
    }
    error = write_all(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()));
    if (error == ERROR_SUCCESS) {
        error = flush(file.get());
    }
    file.reset();
    if (error != ERROR_SUCCESS) {
        DeleteFileW(long_form(path).c_str());
    }
    return error;
}

std::wstring free_name(const std::wstring& path) {
    std::wstring candidate = path;
    for (int number = 2; attributes_of(candidate) != INVALID_FILE_ATTRIBUTES; ++number) {
        candidate = path + L" (" + std::to_wstring(number) + L")";
    }
    return candidate;
}

DWORD attributes_of(const std::wstring& path) {
    return GetFileAttributesW(long_form(path).c_str());
}

bool is_plain_folder(const std::wstring& path) {
    const DWORD attributes = attributes_of(path);
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 &&
           (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0;
}

}  // namespace ov::devservice
