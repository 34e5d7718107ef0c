#pragma once

#include <windows.h>

#include <string>

namespace ov::test {

/// Takes a picture of the whole virtual display into screenshots\NAME.png beside the build's bin folder, with
/// the host's own tool. What it shows is for people to look at; that it shows something is checked: a picture
/// that does not come, is not as large as the display, or is black or next to it fails the running test.
void take_screenshot(const std::wstring& name);

/// The same of a part of the display.
void take_screenshot(const std::wstring& name, const RECT& area);

}  // namespace ov::test
