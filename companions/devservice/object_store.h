#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

namespace ov::devservice {

/// Contents of files, each kept once under its SHA-256.
///
/// An object is written beside and renamed when it is whole, so that one that has its name is complete
/// whatever ended the process. It is not flushed to the disk, which would take longer than everything else
/// together: what a power failure damages is noticed by its digest when it is written out. Objects are never
/// changed or deleted. Whoever puts holds the state lock.
class object_store {
  public:
    /// `folder` is made on first use.
    explicit object_store(std::wstring folder);

    struct object {
        std::string digest;
        std::uint64_t size_bytes = 0;
    };

    /// Takes in the content of `file`. A Windows error code.
    [[nodiscard]] DWORD put(const std::wstring& file, object& stored);

    [[nodiscard]] bool contains(const std::string& digest) const;

    /// Writes an object into a new file and checks it against its digest on the way: ERROR_CRC, and no file,
    /// when the store's copy was damaged; ERROR_FILE_EXISTS when something stands there.
    [[nodiscard]] DWORD write_out(const std::string& digest, const std::wstring& new_file) const;

  private:
    [[nodiscard]] std::wstring path_of(const std::string& digest) const;
    [[nodiscard]] DWORD copy_in(HANDLE from, object& taken);
    [[nodiscard]] DWORD keep(const std::wstring& incoming, const std::string& digest);

    std::wstring folder_;
};

}  // namespace ov::devservice
