#include "ovufc/owned_json.h"

namespace ov {

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
