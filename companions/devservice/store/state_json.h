#pragma once

#include <optional>
#include <string>

#include "companions/devservice/store/records.h"

namespace ov::devservice {

/// The state file's text: one JSON object. None when something in the state could not be read back: text that
/// is not well formed, a record whose name is not recordable.
[[nodiscard]] std::optional<std::string> state_to_text(const service_state& state);

/// None when the text is not one that `state_to_text` makes: not JSON, nested too deep, a member missing or
/// of the wrong type, or a path that would lead out of its folder.
[[nodiscard]] std::optional<service_state> state_from_text(const std::string& text);

}  // namespace ov::devservice
