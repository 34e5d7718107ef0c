#include "ovufc/win/error.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <cstring>

#include "testkit/imports/import_patch.h"

namespace ov::win {
namespace {

constexpr std::uint32_t unknown_number = 0x2FFF1234;

/// What the double below is asked, and what it gives.
struct format_message_call {
    DWORD flags = 0;
    const void* source = nullptr;
    DWORD number = 0;
    DWORD language = 0;
    DWORD size = 0;
    char** arguments = nullptr;
    const char* text = "";
};
format_message_call asked;

DWORD WINAPI format_message(DWORD flags, LPCVOID source, DWORD number, DWORD language, LPSTR buffer,
                            DWORD size, char** arguments) {
    asked = {flags, source, number, language, size, arguments, asked.text};
    std::strncpy(buffer, asked.text, size);
    return static_cast<DWORD>(std::strlen(asked.text));
}

std::string with_text(const char* text, const std::string& context = {}) {
    asked = {};
    asked.text = text;
    using function = DWORD WINAPI(DWORD, LPCVOID, DWORD, DWORD, LPSTR, DWORD, char**);
    test::import_patch<function> patch(GetModuleHandleW(nullptr), "kernel32.dll", "FormatMessageA",
                                       format_message);
    return format_system_error(42, context);
}

TEST(FormatSystemError, known_number_gives_the_systems_text_with_its_line_break) {
    const std::string text = format_system_error(ERROR_ACCESS_DENIED);
    EXPECT_NE(text.find("denied"), std::string::npos) << text;
    EXPECT_EQ(text.substr(text.size() - 2), "\r\n");
    EXPECT_EQ(format_system_error(ERROR_ACCESS_DENIED, "here"), text + " (here)");
}

TEST(FormatSystemError, unknown_number_says_so_and_keeps_the_context) {
    EXPECT_EQ(format_system_error(unknown_number), "Unknown error");
    EXPECT_EQ(format_system_error(unknown_number, "context"), "Unknown error (context)");
}

TEST(FormatSystemError, text_that_wants_inserts_counts_as_unknown) {
    EXPECT_EQ(format_system_error(ERROR_MR_MID_NOT_FOUND), "Unknown error");
}

TEST(FormatSystemError, asks_the_system_alone_and_lets_inserts_be) {
    EXPECT_EQ(with_text("text\r\n", "where"), "text\r\n (where)");
    EXPECT_EQ(asked.flags, 0x1000U);
    EXPECT_EQ(asked.source, nullptr);
    EXPECT_EQ(asked.number, 42U);
    EXPECT_EQ(asked.language, 0U);
    EXPECT_EQ(asked.size, 1024U);
    EXPECT_EQ(asked.arguments, nullptr);
}

TEST(FormatSystemError, text_without_an_end_is_cut_at_the_limit) {
    EXPECT_EQ(with_text(std::string(2000, 'x').c_str()), std::string(1024, 'x'));
}

TEST(FormatErrorMessage, prefix_and_text_have_two_blanks_between_them) {
    EXPECT_EQ(format_error_message("Win32", "text"), "Win32:  text");
}

TEST(FormatErrorMessage, each_part_may_be_missing) {
    EXPECT_EQ(format_error_message("", ""), "");
    EXPECT_EQ(format_error_message("Win32", ""), "Win32: ");
    EXPECT_EQ(format_error_message("", "text"), " text");
    EXPECT_EQ(format_error_message("", "%s", ""), " ");
}

TEST(FormatErrorMessage, arguments_are_printed) {
    EXPECT_EQ(format_error_message("p", "%s %d%%", "done", 50), "p:  done 50%");
    const std::string long_text(5000, 'y');
    EXPECT_EQ(format_error_message("", "%s", long_text.c_str()), " " + long_text);
}

TEST(FormatLocatedMessage, place_follows_a_message) {
    EXPECT_EQ(format_located_message("c:\\a\\b\\win.x", -7, "f", "p", "%d", 1), "p:  1 (f, win.x, -7)");
    EXPECT_EQ(format_located_message("", 1, "f", "p", ""), "p:  (f, Unknown File, 1)");
}

TEST(FormatLocatedMessage, nothing_to_say_has_no_place) {
    EXPECT_EQ(format_located_message("c:\\win.x", 1, "f", "", ""), "");
}

TEST(FileNameOf, path_gives_what_follows_the_last_backslash) {
    EXPECT_EQ(file_name_of("c:\\a\\b\\win.x"), "win.x");
    EXPECT_EQ(file_name_of("win.x"), "win.x");
    EXPECT_EQ(file_name_of("a/b.x"), "a/b.x");
    EXPECT_EQ(file_name_of("c:\\a\\"), "");
    EXPECT_EQ(file_name_of(""), "Unknown File");
}

}  // namespace
}  // namespace ov::win
