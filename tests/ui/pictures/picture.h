#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace ov::test {

/// What can be said of a picture without looking at it.
struct picture_facts {
    unsigned width = 0;
    unsigned height = 0;
    /// Different colours in it, black included.
    std::size_t colours = 0;
    /// Pixels that are not black.
    std::size_t lit_pixels = 0;
};

/// Reads the picture in a file that the system can decode; none when it is not there or not whole.
/// https://learn.microsoft.com/windows/win32/wic/-wic-creating-decoder
[[nodiscard]] std::optional<picture_facts> read_picture(const std::wstring& path);

}  // namespace ov::test
