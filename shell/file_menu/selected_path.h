#pragma once

#include <windows.h>
#include <shlobj.h>

#include <cstddef>
#include <optional>
#include <string>

namespace ov::shell {

/// The one path that a selection consists of, at most 260 characters of it; none when `selection` is null,
/// holds no file list or a damaged one, or names no file or several.
///
/// The data belongs to the host, or to a third program's drag source: a file list that ends before it says so
/// is refused. Nothing of it is kept. Throws only std::bad_alloc.
[[nodiscard]] std::optional<std::wstring> selected_path(IDataObject* selection);

/// Whether a block of memory holds a file list (DROPFILES and its texts) that ends within the block.
[[nodiscard]] bool is_whole_file_list(const void* block, std::size_t size_bytes) noexcept;

}  // namespace ov::shell
