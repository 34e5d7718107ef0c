#include "service/file_exchange.h"

#include <array>
#include <new>

#include "ovufc/win/handle.h"

namespace ov::service {
namespace {

/// What GetTempPathW is told that it may fill; the buffer holds one more.
constexpr DWORD temp_path_chars = 260;

constexpr HRESULT file_too_large = HRESULT_FROM_WIN32(ERROR_BUFFER_OVERFLOW);
constexpr HRESULT file_is_empty = HRESULT_FROM_WIN32(ERROR_NO_DATA);

HRESULT last_error() noexcept {
    return HRESULT_FROM_WIN32(GetLastError());
}

/// The driver may still hold the file open, for writing or to delete it: everything is shared.
win::unique_file open_driver_file(const std::wstring& path) noexcept {
    return win::unique_file(CreateFileW(
        path.c_str(), GENERIC_READ | SYNCHRONIZE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
        nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL | FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
}

HRESULT read_open_file(HANDLE file, std::string& text) {
    LARGE_INTEGER size{};
    if (GetFileSizeEx(file, &size) == FALSE) {
        return last_error();
    }
    if (size.HighPart != 0 || size.QuadPart > driver_file_limit_bytes) {
        return file_too_large;
    }
    if (size.QuadPart == 0) {
        return file_is_empty;
    }
    // One zero byte more than the file: the first NUL is always there.
    std::string buffer(static_cast<std::size_t>(size.QuadPart) + 1, '\0');
    DWORD read_bytes = 0;
    if (ReadFile(file, buffer.data(), size.LowPart, &read_bytes, nullptr) == FALSE) {
        return last_error();
    }
    buffer.resize(buffer.find('\0'));
    text.swap(buffer);
    return S_OK;
}

}  // namespace

std::wstring temp_folder() {
    std::array<wchar_t, temp_path_chars + 1> folder{};
    GetTempPathW(temp_path_chars, folder.data());
    folder.back() = L'\0';
    return folder.data();
}

HRESULT read_file_text(const std::wstring& path, std::string& text) noexcept {
    try {
        const win::unique_file file = open_driver_file(path);
        return file ? read_open_file(file.get(), text) : last_error();
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }
}

std::string take_driver_file(const std::wstring& path) noexcept {
    std::string text;
    static_cast<void>(read_file_text(path, text));
    DeleteFileW(path.c_str());
    return text;
}

}  // namespace ov::service
