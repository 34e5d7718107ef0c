#pragma once

#include <windows.h>

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "companions/devservice/files/path.h"
#include "ovufc/protocol/protected_locations.h"

namespace ov::devservice {

/// What the service remembers between runs; kept in the state file. All paths
/// are clean paths, all times file times (100 ns since 1601, UTC).

/// A folder that the user protects: its files are copied.
struct protected_folder {
    std::wstring path;
    std::wstring object_path;  // chosen in the protection dialog; empty when none was
    std::int64_t protected_on = 0;
};

enum class entry_kind { file, folder, link };

/// A file, folder or link as it was seen when a copy was taken.
struct file_record {
    std::wstring relative;  // below the folder of its folder_copy; a recordable name
    entry_kind kind = entry_kind::file;
    std::string digest;  // of the object with a file's content; empty when that
                         // could not be kept
    std::uint64_t size_bytes = 0;
    std::int64_t written = 0;
    DWORD attributes = 0;

    [[nodiscard]] bool folder() const noexcept { return kind == entry_kind::folder; }
    /// A file whose content is in the store.
    [[nodiscard]] bool kept() const noexcept { return !digest.empty(); }
};

/// What a copy saw of one folder. What stands there and has no record appeared
/// later, unless its name is not recordable or it is below a folder that could
/// not be listed.
struct folder_copy {
    std::wstring folder;
    std::vector<file_record> records;
    std::vector<std::wstring> unlisted;  // relative paths of folders; empty text for the folder itself
};

/// Whether the state file can hold a path below a folder and give it back: well
/// formed, and one that stays below. Who writes the state and who reads it both
/// ask here.
[[nodiscard]] bool is_recordable(std::wstring_view relative);

/// Why a copy was taken. A past point is what is left of a restore point that
/// is no longer kept: the versions that files still have in it. Nothing is
/// rolled back to it.
enum class copy_kind { first, restore_point, before_restore, past_point };

/// The same for people: "first copy", "restore point" (a past one too), "before
/// a restore".
[[nodiscard]] const char* words_for(copy_kind kind) noexcept;

struct stored_copy {
    std::int64_t number = 0;  // unique, ascending; a restore point's sequence number
    copy_kind kind = copy_kind::first;
    std::int64_t taken_on = 0;
    std::vector<folder_copy> folders;
};

/// The document's lists of synchronised folders.
inline constexpr const auto& cloud_providers = protocol::locations::cloud;

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

/// Whether clients are told that `path` is protected: in a protected folder or
/// in a listed location.
[[nodiscard]] bool counts_as_protected(const service_state& state, const std::wstring& path);

/// The rule whose folder `path` is in ("C:\Users\NAME\RULE…"), or null.
[[nodiscard]] const std::wstring* rule_of(const service_state& state, const std::wstring& path);

}  // namespace ov::devservice
