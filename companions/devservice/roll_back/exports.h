#pragma once

#include <string>

#include "companions/devservice/files/problem.h"
#include "companions/devservice/store/vault.h"

namespace ov::devservice {

struct export_result {
    std::wstring folder;  // made for this export; empty when there was nothing to write
    std::size_t files = 0;
    problems failed;
};

/// Writes the files that some copy has and `folder` no longer has, each as it was last kept, into a new dated
/// folder below `desktop`.
[[nodiscard]] export_result export_deleted_files(const vault& vault, const std::wstring& folder,
                                                 const std::wstring& desktop);

/// Writes every kept version below `folder` that differs from what the file is now, its time in its name.
[[nodiscard]] export_result export_chronels(const vault& vault, const std::wstring& folder,
                                            const std::wstring& desktop);

}  // namespace ov::devservice
