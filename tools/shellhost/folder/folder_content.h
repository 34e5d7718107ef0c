#pragma once

#include <windows.h>
#include <shobjidl.h>

#include <string>
#include <vector>

namespace ov::shellhost {

/// One item of the namespace folder, in words.
struct content_item {
    std::wstring name;
    std::wstring type;
    std::wstring icon_file;
    int icon_index = 0;
    UINT icon_flags = 0;
    SFGAOF attributes = 0;
    std::wstring parsing_name;
};

/// The items below one heading of the view, in the folder's order.
struct content_group {
    DWORD category = 0;
    std::wstring heading;
    std::vector<content_item> items;
};

/// The folder's content grouped as its view groups it: by the category provider's categorizer, headings in
/// the order in which the categorizer compares them. Without a categorizer all items are in one group without
/// a heading.
[[nodiscard]] std::vector<content_group> read_content(IShellFolder2* folder);

}  // namespace ov::shellhost
