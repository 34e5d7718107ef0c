#include "ovufc/owned_json.h"

namespace ov {

// The simple way, to leave a value to its own destructor, ends the host when memory runs out: NoMemoryForJson
// in tests/module/menus and NoMemory in tests/unit/service fail each allocation of a call in turn, also those
// that the library makes while it destroys. Members of an empty value cost its destructor nothing.
void dismantle(json& value) noexcept {
    if (auto* const members = value.get_ptr<json::object_t*>()) {
        for (auto& member : *members) {
            dismantle(member.second);
        }
        members->clear();
    } else if (auto* const elements = value.get_ptr<json::array_t*>()) {
        for (json& element : *elements) {
            dismantle(element);
        }
        elements->clear();
    }
}

}  // namespace ov
