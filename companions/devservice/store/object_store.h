#pragma once

#include <windows.h>

#include <cstdint>
#include <set>
#include <string>

namespace ov::devservice {

/// Contents of files, each kept once under its SHA-256.
///
/// An object is written beside, flushed to the disk, and renamed when it is whole, so that one that has its
/// name is complete whatever ended the process or the machine. What is damaged all the same is noticed: when
/// it is written out, and when the same content is put again, which writes it anew. Whoever puts or removes
/// holds the state lock.
class object_store {
  public:
    /// `folder` is made on first use.
    explicit object_store(std::wstring folder);

    struct object {
        std::string digest;
        std::uint64_t size_bytes = 0;
    };

    /// Takes in the content of `file`. An object that is there already is relied on when its size is right
    /// and its content was found right in this run, which is looked up at its first use. A Windows error
    /// code.
    [[nodiscard]] DWORD put(const std::wstring& file, object& stored);

    [[nodiscard]] bool contains(const std::string& digest) const;

    /// Writes an object into an open file and checks it against its digest on the way: ERROR_CRC when the
    /// store's copy was damaged; what was written is then of no use.
    [[nodiscard]] DWORD write_out(const std::string& digest, HANDLE to) const;

    /// Removes every object but those named, and what interrupted puts left. What cannot be removed now is by
    /// the next call.
    void keep_only(const std::set<std::string>& digests);

  private:
    [[nodiscard]] std::wstring path_of(const std::string& digest) const;
    [[nodiscard]] DWORD copy_in(HANDLE from, object& taken);
    [[nodiscard]] DWORD keep(const std::wstring& incoming, const object& taken);
    [[nodiscard]] bool holds(const object& wanted);

    std::wstring folder_;
    std::set<std::string> verified_;  // whose content was right in this run
};

}  // namespace ov::devservice
