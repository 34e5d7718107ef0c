#pragma once

#include <windows.h>

#include <string>

/// The module's message boxes: no owner window, the product's title as caption, in front of everything else.
///
/// Each blocks the calling thread until it is answered, and throws only std::bad_alloc.
namespace ov::shell {

/// The four kinds of box that are shown.
enum class box_style : UINT {
    question = MB_OKCANCEL | MB_ICONQUESTION | MB_DEFBUTTON2 | MB_SETFOREGROUND | MB_TOPMOST,
    refusal = MB_ICONEXCLAMATION | MB_SETFOREGROUND | MB_TOPMOST,
    failure = MB_ICONHAND | MB_SETFOREGROUND | MB_TOPMOST,
    result = MB_ICONINFORMATION | MB_SETFOREGROUND | MB_TOPMOST,
};

/// Shows `text`; returns the button pressed.
int show_box(const std::wstring& text, box_style style);

/// Asks `text` with Cancel as the default. True only when OK was pressed.
[[nodiscard]] bool confirmed(const std::wstring& text);

/// Says that the command failed.
void show_failure();

}  // namespace ov::shell
