#pragma once

#include <string>

namespace ov::test {

/// Takes a picture of the whole virtual display into screenshots\NAME.png beside the build's bin folder, with
/// the host's own tool; returns once the file is there, or after a few seconds without one. Pictures are for
/// people to look at: no test depends on them.
void take_screenshot(const std::wstring& name);

}  // namespace ov::test
