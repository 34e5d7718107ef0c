#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// What the shell code asks of the driver: one function per service call.
///
/// Each runs on the caller's thread and blocks it until the reply, for at most 30 seconds. Nothing is
/// retried, logged or shown. Every failure of the exchange ends in the function's plain failure value; only
/// the two chronel commands let an error out, and say so. Text is UTF-16 unless said otherwise.
namespace ov::service {

enum class export_kind { deleted_files, chronels };

/// True when the folder is protected; false on any failure. `restricted` is set to whether the driver
/// restricts the user interface, and left alone when the reply does not say. `exports_available` is set to
/// true when the driver offers exports, and left alone otherwise.
[[nodiscard]] bool get_folder_status(const std::wstring& folder_path, bool& restricted,
                                     bool& exports_available) noexcept;

/// S_OK or E_UNEXPECTED, as the three below.
[[nodiscard]] HRESULT protect_folder(const std::wstring& folder_path) noexcept;
[[nodiscard]] HRESULT protect_folder_as(const std::wstring& folder_path,
                                        const std::wstring& object_path) noexcept;
[[nodiscard]] HRESULT unprotect_folder(const std::wstring& folder_path) noexcept;
[[nodiscard]] HRESULT export_folder(const std::wstring& folder_path, export_kind kind) noexcept;

/// The chronel list of a tracked file, as the driver wrote it (UTF-8, unparsed); empty on any failure.
[[nodiscard]] std::string get_file_chronels(const std::wstring& file_path) noexcept;

/// Sends a chronel to be restored, or opened under `file_name`. The driver reports the outcome itself; a
/// failed exchange is not told. `chronel_identifier` is the UTF-8 JSON text that the chronel dialog returned:
/// when it is not JSON, the JSON library's parse_error is thrown and nothing is sent.
void restore_file_chronel(const std::wstring& file_path, const std::string& chronel_identifier);
void open_file_chronel(const std::wstring& file_path, const std::string& chronel_identifier,
                       const std::wstring& file_name);

/// True when the driver lists a restore point; the out-values then identify the first. On false they are
/// untouched.
[[nodiscard]] bool get_restore_points(std::int64_t& createdOn, std::int64_t& sequenceNumber) noexcept;

/// The folders that a restore point holds; empty on any failure.
[[nodiscard]] std::vector<std::wstring> get_restore_folders(std::int64_t createdOn,
                                                            std::int64_t sequenceNumber) noexcept;

/// False only when the driver answers that it did not restore. An exchange that fails counts as true, on
/// purpose: the driver may well be at work, and it reports its own outcome.
[[nodiscard]] bool restore_from_point(std::int64_t createdOn, std::int64_t sequenceNumber) noexcept;

/// The driver's last timestamp, a file time; none on any failure.
[[nodiscard]] std::optional<std::uint64_t> get_last_timestamp() noexcept;

/// The protected-locations document (UTF-8 JSON); empty on any failure.
[[nodiscard]] std::string get_protected_folders() noexcept;

}  // namespace ov::service
