#pragma once

#include <string>
#include <vector>

#include "ovufc/noncopyable.h"

namespace ov::test {

/// What the system has been told to delete at its next start. The list is as it was again at the end of the
/// scope.
class pending_deletions : private noncopyable {
  public:
    pending_deletions() : before_(read()) {}
    ~pending_deletions();

    [[nodiscard]] bool contain(const std::wstring& path) const;

  private:
    /// Pairs of a path, as the system's kernel writes it, and the new name, empty for a deletion; each ends
    /// with a zero. Empty where there is no list.
    [[nodiscard]] static std::vector<wchar_t> read();

    std::vector<wchar_t> before_;
};

}  // namespace ov::test
