#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "service/reply.h"

/// What each kind of call reads from its reply: fields, their order, and the status that counts as success.
///
/// Pure functions of untrusted input. A reply of the wrong shape is the plain failure value and takes no
/// exception; only std::bad_alloc gets out.
namespace ov::service {

/// S_OK when "data" is there, of whatever kind, and the status is 0; E_UNEXPECTED otherwise.
[[nodiscard]] HRESULT read_outcome(const reply& answer) noexcept;

/// True when the reply could be read to its end. `is_protected` and `restricted` are set as far as it could:
/// a reply whose "uiLevel" is no string fails after it has told that the folder is protected.
[[nodiscard]] bool read_folder_status(const reply& answer, bool& is_protected, bool& restricted) noexcept;

/// The path of the file that the driver wrote; none when it names none. An empty path is a name like any
/// other.
[[nodiscard]] std::optional<std::wstring> read_file_path(const reply& answer);

/// The paths in the text of a restore point's folder list; empty when any part of it is not as it should be.
[[nodiscard]] std::vector<std::wstring> read_restore_folders(const std::string& file_text);

/// True when there is a restore point; the out-values are then the first one's, else untouched.
[[nodiscard]] bool read_restore_point(const reply& answer, std::int64_t& createdOn,
                                      std::int64_t& sequenceNumber) noexcept;

/// True when the driver says that it did not restore. A reply that cannot be read says no such thing.
[[nodiscard]] bool read_restore_refused(const reply& answer) noexcept;

[[nodiscard]] std::optional<std::uint64_t> read_last_timestamp(const reply& answer) noexcept;

}  // namespace ov::service
