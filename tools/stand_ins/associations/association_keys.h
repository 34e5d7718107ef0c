#pragma once

#include <windows.h>
#include <unknwn.h>

#include <vector>

#include "tools/stand_ins/menus/registry_value.h"

namespace ov::stand_ins {

/// What an IQueryAssociations object of this library answers besides: all its class keys, where the public
/// interface gives out the first only. For this process; never marshalled.
struct IAssociationKeys : IUnknown {
    /// The class keys in the order in which they are searched; owned by the object.
    [[nodiscard]] virtual const std::vector<unique_registry_key>& class_keys() const noexcept = 0;
};

/// Every class key of an association object: all of them for an object of this library, else the one that
/// IQueryAssociations gives. The keys are the caller's.
[[nodiscard]] std::vector<unique_registry_key> class_keys_of(IUnknown* associations);

/// Another handle to the same key; empty on failure.
[[nodiscard]] unique_registry_key duplicate_key(HKEY key) noexcept;

}  // namespace ov::stand_ins

#ifdef __CRT_UUID_DECL
// {2F6A9C51-7B0E-4D3A-9E84-51C0D7A6F3B2}
__CRT_UUID_DECL(ov::stand_ins::IAssociationKeys, 0x2F6A9C51, 0x7B0E, 0x4D3A, 0x9E, 0x84, 0x51, 0xC0, 0xD7,
                0xA6, 0xF3, 0xB2)
#endif
