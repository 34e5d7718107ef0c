#include "ovufc/win/reg_key.h"

#include <utility>

#include "ovufc/exception.h"
#include "ovufc/win/error.h"

// The file's name alone: the directories of the machine that built it belong in no message. A compiler that
// does not know __FILE_NAME__ writes paths with backslashes, and those file_name_of takes off.
#ifdef __FILE_NAME__
#define ORV_SOURCE_FILE __FILE_NAME__
#else
#define ORV_SOURCE_FILE __FILE__
#endif

namespace ov::win {

namespace {

constexpr const char* message_prefix = "Win32";

// The place that a failed write names: part of the message's text and kept on purpose, not where the code
// happens to stand in this file.
constexpr std::int32_t set_value_line = 433;

constexpr REGSAM read_write_access = KEY_READ | KEY_SET_VALUE | KEY_CREATE_SUB_KEY;
static_assert(read_write_access == 0x2001F);

REGSAM in_view(REGSAM access, std::uint32_t view) {
    switch (view) {
        case reg_view::bits_32:
            return access | KEY_WOW64_32KEY;
        case reg_view::bits_64:
            return access | KEY_WOW64_64KEY;
        default:
            return access;
    }
}

[[noreturn]] void raise(LSTATUS status, const char* context) {
    // The system's text is the printf format here, percent signs and all: "%%" is printed as one.
    throw exception(
        format_error_message(message_prefix, format_system_error(static_cast<DWORD>(status), context)),
        from_last_error);
}

const wchar_t* value_name(const std::wstring& name) {
    return name.empty() ? nullptr : name.c_str();
}

}  // namespace

void reg_key::create(HKEY root, const std::wstring& subkey, std::uint32_t view,
                     const std::wstring& default_value) {
    const auto create_with = [&](DWORD options) {
        DWORD disposition = 0;
        return RegCreateKeyExW(root, subkey.c_str(), 0, nullptr, options, in_view(KEY_ALL_ACCESS, view),
                               nullptr, &key, &disposition);
    };
    LSTATUS status = create_with(REG_OPTION_NON_VOLATILE);
    if (status == ERROR_ACCESS_DENIED) {
        // Only when access is denied: the backup privilege allows writing anywhere, and helps with nothing
        // else.
        status = create_with(REG_OPTION_BACKUP_RESTORE);
    }
    if (status != ERROR_SUCCESS) {
        key = nullptr;
        raise(status, "win_registry::create, RegCreateKeyExW");
    }
    if (!default_value.empty()) {
        set_text({}, REG_SZ, default_value);
    }
}

void reg_key::open(HKEY root, const std::wstring& subkey, std::uint32_t view, bool read_only) {
    const REGSAM access = in_view(read_only ? KEY_READ : read_write_access, view);
    const LSTATUS status = RegOpenKeyExW(root, subkey.c_str(), 0, access, &key);
    if (status != ERROR_SUCCESS) {
        key = nullptr;
        raise(status, "win_registry::open, RegOpenKeyExW");
    }
}

void reg_key::internal_set_value(const std::wstring& name, DWORD type, const void* data,
                                 std::uint32_t size_bytes) {
    const LSTATUS status =
        RegSetValueExW(key, value_name(name), 0, type, static_cast<const BYTE*>(data), size_bytes);
    if (status != ERROR_SUCCESS) {
        throw exception(
            format_located_message(ORV_SOURCE_FILE, set_value_line, "ov::win::reg_key::internal_set_value",
                                   message_prefix, format_system_error(static_cast<DWORD>(status))),
            from_last_error);
    }
}

void reg_key::set_dword(const std::wstring& name, std::uint32_t number) {
    internal_set_value(name, REG_DWORD, &number, sizeof number);
}

void reg_key::set_text(const std::wstring& name, DWORD type, const std::wstring& text) {
    internal_set_value(name, type, text.c_str(),
                       static_cast<std::uint32_t>((text.size() + 1) * sizeof(wchar_t)));
}

bool reg_key::has_value(const std::wstring& name) const noexcept {
    return RegQueryValueExW(key, value_name(name), nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
}

void reg_key::remove_value(const std::wstring& name) noexcept {
    RegDeleteValueW(key, value_name(name));
}

void reg_key::close() noexcept {
    if (const HKEY open_key = std::exchange(key, nullptr)) {
        RegCloseKey(open_key);
    }
}

LSTATUS remove_key(HKEY root, const std::wstring& subkey) {
    const LSTATUS status = RegDeleteKeyW(root, subkey.c_str());
    if (status != ERROR_SUCCESS && status != ERROR_FILE_NOT_FOUND) {
        raise(status, "win_registry::remove, RegDeleteKey");
    }
    return status;
}

bool remove_key_tree(HKEY root, const std::wstring& subkey) noexcept {
    const LSTATUS status = RegDeleteTreeW(root, subkey.c_str());
    return status == ERROR_SUCCESS || status == ERROR_FILE_NOT_FOUND;
}

}  // namespace ov::win
