#pragma once

#include <memory>

#include "namespace/locations/location_document.h"

/// The process's copy of the protected-locations document, which the driver writes.
///
/// Guarded by `module_state::cacheLock`. The cache lives until the module is unloaded and changes only in the
/// refresh. UTF-8 JSON; empty while nothing has been fetched and after a fetch that failed.
namespace ov::name_space {

/// Fetches the document anew when the driver's configuration generation is not 0 and either it has changed or
/// there is no document. Any thread; holds the lock exclusively throughout, service call included (30 seconds
/// at most), so that folders which are made at the same time wait for one fetch. A fetch that fails leaves an
/// empty document with the generation: the emptiness makes the next folder ask again.
void refresh_protected_locations() noexcept;

/// What the document says; the text is taken while the lock is held shared, and read without it. Folders that
/// see the same text share what the first of them has read from it. An incomplete document with all user
/// folders when there is no text, none that can be read, or no memory. Any thread; the caller may keep it.
[[nodiscard]] std::shared_ptr<const location_document> protected_locations() noexcept;

}  // namespace ov::name_space
