#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "ovufc/noncopyable.h"

namespace ov::win {

/// Which of the registry's two views a key is opened in; any other number acts as the caller's own view.
namespace reg_view {
inline constexpr std::uint32_t native = 0;
inline constexpr std::uint32_t bits_32 = 1;
inline constexpr std::uint32_t bits_64 = 2;
}  // namespace reg_view

/// Owner of one open registry key. Every failure is an ov::exception whose message carries the registry's
/// status; the destructor closes the key.
///
/// For one thread at a time. Texts are written with their terminating zero.
class reg_key : private noncopyable {
  public:
    reg_key() = default;
    virtual ~reg_key() { close(); }

    /// Creates `subkey` or opens the one that is there, with all access, and sets its unnamed value to
    /// `default_value` unless that is empty. When access is denied it is tried once more with the option that
    /// uses the caller's backup privilege.
    ///
    /// A key held before is forgotten, not closed: close first. After a failure nothing is held, unless it
    /// was the unnamed value that failed.
    virtual void create(HKEY root, const std::wstring& subkey, std::uint32_t view,
                        const std::wstring& default_value);

    /// Opens `subkey` for reading, or for reading and writing. As with create, close first.
    virtual void open(HKEY root, const std::wstring& subkey, std::uint32_t view, bool read_only);

    /// Sets a value of the open key; an empty name means the unnamed value.
    void internal_set_value(const std::wstring& name, DWORD type, const void* data, std::uint32_t size_bytes);
    void set_dword(const std::wstring& name, std::uint32_t number);
    /// `type` is one of the text types, REG_SZ or REG_EXPAND_SZ.
    void set_text(const std::wstring& name, DWORD type, const std::wstring& text);

    /// Whether the open key has a value of that name, whatever it holds.
    [[nodiscard]] bool has_value(const std::wstring& name) const noexcept;
    /// Deletes a value; a failure is ignored.
    void remove_value(const std::wstring& name) noexcept;

    void close() noexcept;

    /// The open key, or null; owned. For reading through functions that this class does not wrap.
    HKEY key = nullptr;
};

/// The status of deleting `subkey`, which must have no subkeys: 0, or 2 when there is no such key. Any other
/// status is thrown as an ov::exception.
LSTATUS remove_key(HKEY root, const std::wstring& subkey);
/// Deletes `subkey` with all below it. True when it is gone, also when it never was.
bool remove_key_tree(HKEY root, const std::wstring& subkey) noexcept;

/// A reg_key below one predefined root, `ROOT` being its number.
///
/// The order of the virtual operations is fixed, and so are the three that do nothing: they keep the slots of
/// those after them in place. The second slot is the inherited `open`, which would get round the root.
template <std::uint32_t ROOT>
class reg_root_key : public reg_key {
  public:
    /// The predefined handles are 32-bit numbers sign-extended to the size of a pointer.
    static HKEY root() noexcept {
        return reinterpret_cast<HKEY>(static_cast<std::intptr_t>(static_cast<std::int32_t>(ROOT)));
    }

    using reg_key::create;
    void open(HKEY /*root*/, const std::wstring& /*subkey*/, std::uint32_t /*view*/,
              bool /*read_only*/) override {}
    virtual void unused_3() {}
    virtual void create(const std::wstring& subkey, std::uint32_t view, const std::wstring& default_value) {
        reg_key::create(root(), subkey, view, default_value);
    }
    virtual void open(const std::wstring& subkey, std::uint32_t view, bool read_only) {
        reg_key::open(root(), subkey, view, read_only);
    }
    virtual void unused_6() {}
    virtual LSTATUS remove(const std::wstring& subkey) { return remove_key(root(), subkey); }
    virtual bool remove_tree(const std::wstring& subkey) noexcept { return remove_key_tree(root(), subkey); }
};

inline constexpr std::uint32_t classes_root_number = 0x80000000;
inline constexpr std::uint32_t local_machine_number = 0x80000002;
using classes_root_key = reg_root_key<classes_root_number>;
using local_machine_key = reg_root_key<local_machine_number>;

}  // namespace ov::win
