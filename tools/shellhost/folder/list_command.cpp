#include <shobjidl.h>
#include <shlobj.h>

#include <algorithm>
#include <string>

#include "tools/shellhost/apartment.h"
#include "tools/shellhost/commands.h"
#include "tools/shellhost/console.h"
#include "tools/shellhost/exit_codes.h"
#include "tools/shellhost/folder/folder_columns.h"
#include "tools/shellhost/folder/folder_content.h"
#include "tools/shellhost/folder/namespace_root.h"
#include "tools/shellhost/product_module.h"
#include "tools/stand_ins/items/item_paths.h"

namespace ov::shellhost {

const wchar_t* const list_usage =
    L"shellhost list [--module DLL]\n"
    L"  Prints the content of the namespace folder as its view shows it: the items below their headings, "
    L"each\n"
    L"  with name, type, icon location, attributes and parsing name.\n"
    L"\n"
    L"  --module DLL  takes the product's classes from this file, whatever is registered\n";

namespace {

constexpr std::size_t name_column = 32;

void print_item(const content_item& item) {
    std::wstring line = L"  " + item.name;
    line.resize(std::max(line.size() + 2, name_column), L' ');
    print_line(line + item.type);
    std::wstring icon = item.icon_file + L"," + std::to_wstring(item.icon_index);
    if ((item.icon_flags & GIL_SHIELD) != 0) {
        icon += L" with the elevation overlay";
    }
    print_line(L"      icon          " + (item.icon_file.empty() ? L"(none)" : icon));
    print_line(L"      attributes    " + hexadecimal(item.attributes));
    print_line(L"      parsing name  " + item.parsing_name);
}

}  // namespace

int run_list(arguments& words) {
    const std::wstring module = words.take_value(L"--module").value_or(L"");
    words.expect_end();
    const apartment com;
    const product_module product(module);
    const namespace_root root = open_namespace_root();
    std::wstring header;
    for (const UINT column : shown_columns(root.folder.Get())) {
        header += (header.empty() ? L"" : L" | ") + column_text(root.folder.Get(), nullptr, column);
    }
    print_line(L"Columns: " + header);
    for (const content_group& group : read_content(root.folder.Get())) {
        print_line(L"");
        print_line(group.heading.empty() ? L"(no heading)" : group.heading);
        for (const content_item& item : group.items) {
            print_item(item);
        }
    }
    return exit_done;
}

}  // namespace ov::shellhost
