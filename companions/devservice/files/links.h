#pragma once

#include <windows.h>

#include <string>

namespace ov::devservice {

/// A link is whatever leads from its name to something elsewhere: any reparse point but the
/// mark of a tracked file. The service neither follows, copies nor replaces one.
///
/// Wine follows links even when asked not to, and of those to files it shows no attribute; that what was
/// opened has its final name elsewhere gives them away. To move or delete such a link would move or delete
/// what it leads to.

/// True when an open file is not the one that `path`, under which it was opened, names.
[[nodiscard]] bool reached_elsewhere(HANDLE file, const std::wstring& path);

/// True when the system follows the link at `path` whoever asks for the link itself, or when that cannot be
/// told.
[[nodiscard]] bool is_always_followed(const std::wstring& path);

/// True when what stands at `path` is a link.
[[nodiscard]] bool is_link(const std::wstring& path);

/// True when some part of the way to `path` is a link, from the volume's root to what stands there itself:
/// what is read or written under that name may be anywhere.
[[nodiscard]] bool leads_through_link(const std::wstring& path);

}  // namespace ov::devservice
