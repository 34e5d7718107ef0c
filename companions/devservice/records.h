#pragma once

#include <windows.h>

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "companions/devservice/path.h"

namespace ov::devservice {

/// What the service remembers between runs; kept in the state file. All paths are clean paths, all times file
/// times (100 ns since 1601, UTC).

/// A folder that the user protects: its files are copied.
struct protected_folder {
    std::wstring path;
    std::wstring object_path;  // chosen in the protection dialog; empty when none was
    std::int64_t protected_on = 0;
};

/// A file or folder as it was when a copy was taken.
struct file_record {
    std::wstring relative;  // below the folder of its folder_copy
    bool folder = false;
    std::string digest;  // of the object with the content; empty for a folder
    std::uint64_t size_bytes = 0;
    std::int64_t written = 0;
    DWORD attributes = 0;
};

struct folder_copy {
    std::wstring folder;
    std::vector<file_record> records;
};

/// Why a copy was taken.
enum class copy_kind { first, restore_point, before_restore };

/// The same for people: "first copy", "restore point", "before a restore".
[[nodiscard]] const char* words_for(copy_kind kind) noexcept;

struct stored_copy {
    std::int64_t number = 0;  // unique, ascending; a restore point's sequence number
    copy_kind kind = copy_kind::first;
    std::int64_t taken_on = 0;
    std::vector<folder_copy> folders;
};

/// The lists of synchronised folders in the protected-locations document, in the document's order.
inline constexpr std::array<const char*, 5> cloud_providers = {"oneDrive", "google", "boxSyn", "dropBox",
                                                               "oneDriveBusiness"};

struct service_state {
    std::uint64_t revision = 0;    // raised by every save
    std::uint32_t generation = 0;  // what clients see; raised when the document changes, never 0
    std::uint32_t flags = 0;       // ORV_FLAG_*
    std::int64_t next_copy = 1;
    std::vector<protected_folder> folders;
    std::vector<std::wstring> rules;  // names of folders of every user, such as "Documents": listed only
    std::vector<std::wstring> managed;
    std::array<std::vector<std::wstring>, cloud_providers.size()> cloud;
    bool fixed_document = false;  // the document is the text given on the command line
    std::vector<stored_copy> copies;
};

[[nodiscard]] std::int64_t now_as_file_time() noexcept;

/// Raises the generation; it skips 0, which clients take for "no driver".
void document_changed(service_state& state) noexcept;

/// The protected folder that `path` is in, or null.
[[nodiscard]] const protected_folder* protection_of(const service_state& state, const std::wstring& path);

/// Whether clients are told that `path` is protected: in a protected folder or in a listed location.
[[nodiscard]] bool counts_as_protected(const service_state& state, const std::wstring& path);

/// The rule whose folder `path` is in ("C:\Users\NAME\RULE…"), or null.
[[nodiscard]] const std::wstring* rule_of(const service_state& state, const std::wstring& path);

}  // namespace ov::devservice
