#include "tests/ui/pictures/picture.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "testkit/files/temp_file.h"

namespace ov::test {
namespace {

/// A bitmap file of rows from bottom to top; `width` is a multiple of four, so that no row is filled up.
std::string bitmap_file(LONG width, LONG height, const std::vector<std::uint32_t>& colours) {
    const auto bits = static_cast<DWORD>(width * height * 3);
    BITMAPFILEHEADER file{};
    BITMAPINFOHEADER info{};
    file.bfType = 0x4D42;
    file.bfOffBits = sizeof file + sizeof info;
    file.bfSize = file.bfOffBits + bits;
    info.biSize = sizeof info;
    info.biWidth = width;
    info.biHeight = height;
    info.biPlanes = 1;
    info.biBitCount = 24;
    std::string content(reinterpret_cast<const char*>(&file), sizeof file);
    content.append(reinterpret_cast<const char*>(&info), sizeof info);
    for (LONG pixel = 0; pixel < width * height; ++pixel) {
        const std::uint32_t colour = colours[static_cast<std::size_t>(pixel) % colours.size()];
        content.append(reinterpret_cast<const char*>(&colour), 3);
    }
    return content;
}

TEST(Picture, black_has_one_colour_and_no_light) {
    const temp_file file(bitmap_file(8, 4, {0}));
    const auto facts = read_picture(file.path());
    ASSERT_TRUE(facts);
    EXPECT_EQ(facts->width, 8U);
    EXPECT_EQ(facts->height, 4U);
    EXPECT_EQ(facts->colours, 1U);
    EXPECT_EQ(facts->lit_pixels, 0U);
}

TEST(Picture, colours_are_counted) {
    const temp_file file(bitmap_file(8, 4, {0, 0xFF0000, 0x00FF00, 0x0000FF}));
    const auto facts = read_picture(file.path());
    ASSERT_TRUE(facts);
    EXPECT_EQ(facts->colours, 4U);
    EXPECT_EQ(facts->lit_pixels, 24U);
}

TEST(Picture, missing_cut_or_other_file_is_none) {
    EXPECT_FALSE(read_picture(L"C:\\no\\such\\picture.png"));
    const temp_file text("not a picture");
    EXPECT_FALSE(read_picture(text.path()));
    const temp_file empty("");
    EXPECT_FALSE(read_picture(empty.path()));
}

}  // namespace
}  // namespace ov::test
