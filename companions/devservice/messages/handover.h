#pragma once

#include <string>

#include "companions/devservice/messages/reply.h"
#include "ovufc/json.h"

namespace ov::devservice {

/// Hands a text to a client as a new file in the folder that its "tempFolder" parameter names, and answers
/// with the file's path as "objPath". The client reads and deletes the file. Only an existing folder is
/// taken, and never a file that is there already.
[[nodiscard]] reply hand_over(const json& parameters, const std::string& text);

}  // namespace ov::devservice
