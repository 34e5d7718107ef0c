#include "companions/devservice/calls/call_context.h"

#include "companions/devservice/files/text.h"

namespace ov::devservice {

void call_context::note(const problems& left_out) const {
    for (const problem& one : left_out) {
        note("  left out: " + to_utf8_lossy(one.path) + " (Windows error " + std::to_string(one.error) + ")");
    }
}

}  // namespace ov::devservice
