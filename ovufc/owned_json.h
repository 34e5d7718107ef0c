#pragma once

#include <utility>

#include "ovufc/json.h"

namespace ov {

/// Empties a value without allocating; a few dozen bytes of stack for each level that it nests.
void dismantle(json& value) noexcept;

/// Owner of a JSON value whose destruction needs no memory.
///
/// The library's destructor allocates to keep from recursing and lets nothing out: where an allocation fails,
/// and the value on its way out holds members, it would end the host process. For values that nest no deeper
/// than the bounded parser lets through.
class owned_json {
  public:
    owned_json(json owned) noexcept : value(std::move(owned)) {}  // NOLINT: meant to be implicit
    owned_json(owned_json&&) noexcept = default;
    owned_json& operator=(owned_json&&) = delete;
    ~owned_json() { dismantle(value); }

    /// Puts a member into an object, or an object's first one into null. The library's own notation takes the
    /// new value into its hands before it makes room for it; here it stays with its owner until there is
    /// room.
    template <class Value>
    void set(const char* key, Value&& member) {
        json& room = value[key];
        room = std::forward<Value>(member);
    }

    json value;
};

}  // namespace ov
