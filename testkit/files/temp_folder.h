#pragma once

#include <string>
#include <string_view>

#include "ovufc/noncopyable.h"

namespace ov::test {

/// A folder of its own under the user's temporary folder, deleted with all that it holds at the end of the
/// scope. Throws std::runtime_error for what cannot be made.
class temp_folder : private noncopyable {
  public:
    temp_folder();
    ~temp_folder();

    /// Full path, without a backslash at its end.
    [[nodiscard]] const std::wstring& path() const noexcept { return path_; }

    /// Makes a folder or file inside and returns its full path.
    std::wstring make_folder(std::wstring_view name) const;
    std::wstring make_file(std::wstring_view name, std::string_view content = {}) const;

  private:
    std::wstring path_;
};

}  // namespace ov::test
