#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "ovufc/noncopyable.h"

namespace ov::test {

/// A file of its own name in the user's temporary folder, gone at the end of the scope whether or not
/// somebody else has deleted it. Throws std::runtime_error when it cannot be made.
class temp_file : private noncopyable {
  public:
    explicit temp_file(std::string_view content);
    ~temp_file();

    [[nodiscard]] const std::wstring& path() const noexcept { return path_; }
    [[nodiscard]] bool exists() const noexcept;
    /// Makes the file this long; what is added reads as zeros and takes no room on the disk.
    void resize(std::int64_t size_bytes) const;

  private:
    std::wstring path_;
};

}  // namespace ov::test
