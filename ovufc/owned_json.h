#pragma once

#include <utility>

#include "ovufc/json.h"

namespace ov {

/// Empties a value without allocating; a few dozen bytes of stack for each level that it nests.
void dismantle(json& value) noexcept;

/// Owner of a JSON value whose destruction needs no memory.
///
/// The library's destructor allocates (to avoid recursion) and is noexcept: where that allocation fails, for
/// a value that holds members, the host process ends. For values that nest no deeper than the bounded parser
/// lets through.
class owned_json {
  public:
    owned_json(json owned) noexcept : value(std::move(owned)) {}  // NOLINT: meant to be implicit
    owned_json(owned_json&&) noexcept = default;
    owned_json& operator=(owned_json&&) = delete;
    ~owned_json() { dismantle(value); }

    /// Puts a member into an object, or an object's first one into null. The library's own notation moves
    /// the new value into a temporary before it allocates the member, and destroys it when that fails; here
    /// it stays with its owner until there is room.
    template <class Value>
    void set(const char* key, Value&& member) {
        json& room = value[key];
        room = std::forward<Value>(member);
    }

    json value;
};

}  // namespace ov
