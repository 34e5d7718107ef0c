#pragma once

#include <windows.h>
#include <bcrypt.h>

#include <cstddef>
#include <string>

#include "ovufc/noncopyable.h"

namespace ov::devservice {

/// A running SHA-256 (BCrypt). One thread at a time.
class sha256 : private noncopyable {
  public:
    sha256() noexcept;
    ~sha256();

    void add(const void* bytes, std::size_t size_bytes) noexcept;

    /// The digest as 64 lower-case hexadecimal digits; empty when the system's hash failed on the way.
    /// Called once.
    [[nodiscard]] std::string finish();

  private:
    BCRYPT_HASH_HANDLE hash_ = nullptr;
    bool good_ = false;
};

/// True for text of the form that `finish` gives.
[[nodiscard]] bool is_digest(const std::string& text) noexcept;

}  // namespace ov::devservice
