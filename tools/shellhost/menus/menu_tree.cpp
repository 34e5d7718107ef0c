#include "tools/shellhost/menus/menu_tree.h"

#include <algorithm>
#include <array>
#include <cwchar>

namespace ov::shellhost {

namespace {

constexpr UINT help_chars = 512;
constexpr unsigned deepest_submenu = 16;
constexpr std::size_t text_column = 40;

std::wstring text_of(HMENU menu, UINT position) {
    const int length = GetMenuStringW(menu, position, nullptr, 0, MF_BYPOSITION);
    if (length <= 0) {
        return {};
    }
    std::wstring text(static_cast<std::size_t>(length) + 1, L'\0');
    const int copied = GetMenuStringW(menu, position, text.data(), length + 1, MF_BYPOSITION);
    text.resize(static_cast<std::size_t>(std::max(copied, 0)));
    return text;
}

std::wstring help_of(IContextMenu* handlers, UINT offset) {
    std::array<wchar_t, help_chars> text{};
    const HRESULT result = handlers->GetCommandString(offset, GCS_HELPTEXTW, nullptr,
                                                      reinterpret_cast<LPSTR>(text.data()), help_chars);
    text.back() = L'\0';
    return SUCCEEDED(result) ? text.data() : std::wstring();
}

class menu_reader {
  public:
    menu_reader(UINT first_id, IContextMenu* handlers) : first_id_(first_id), handlers_(handlers) {}

    void read(HMENU menu, unsigned depth) {
        const int count = GetMenuItemCount(menu);
        for (int i = 0; i < count; ++i) {
            add(menu, static_cast<UINT>(i), depth);
        }
    }

    std::vector<menu_item> items;

  private:
    void add(HMENU menu, UINT position, unsigned depth) {
        MENUITEMINFOW info{};
        info.cbSize = sizeof info;
        info.fMask = MIIM_FTYPE | MIIM_STATE | MIIM_ID | MIIM_SUBMENU | MIIM_CHECKMARKS | MIIM_BITMAP;
        if (!GetMenuItemInfoW(menu, position, TRUE, &info)) {
            return;
        }
        menu_item item;
        item.depth = depth;
        item.is_separator = (info.fType & MFT_SEPARATOR) != 0;
        item.text = menu_text(menu, position);
        // A number in place of a submenu's handle names no menu: the item is a command all the same.
        item.is_submenu = IsMenu(info.hSubMenu);
        item.is_enabled = (info.fState & (MFS_GRAYED | MFS_DISABLED)) == 0;
        item.is_default = (info.fState & MFS_DEFAULT) != 0;
        item.has_bitmap =
            info.hbmpChecked != nullptr || info.hbmpUnchecked != nullptr || info.hbmpItem != nullptr;
        if (!item.is_separator && !item.is_submenu && info.wID >= first_id_) {
            item.offset = info.wID - first_id_;
            item.help = handlers_ != nullptr ? help_of(handlers_, *item.offset) : std::wstring();
        }
        const bool goes_deeper = item.is_submenu && depth < deepest_submenu;
        items.push_back(std::move(item));
        if (goes_deeper) {
            read(info.hSubMenu, depth + 1);
        }
    }

    UINT first_id_;
    IContextMenu* handlers_;
};

}  // namespace

std::wstring without_accelerators(const std::wstring& text) {
    std::wstring plain;
    for (std::size_t i = 0; i < text.size() && text[i] != L'\t'; ++i) {
        if (text[i] == L'&' && i + 1 < text.size()) {
            ++i;  // The mark goes, what it marks stays; "&&" is an ampersand.
        }
        plain += text[i];
    }
    return plain;
}

std::wstring menu_text(HMENU menu, UINT position) {
    return without_accelerators(text_of(menu, position));
}

std::vector<menu_item> read_menu(HMENU menu, UINT first_id, IContextMenu* handlers) {
    menu_reader reader(first_id, handlers);
    reader.read(menu, 0);
    return std::move(reader.items);
}

std::wstring line_of(const menu_item& item) {
    std::wstring line(2 + std::size_t{4} * item.depth, L' ');
    if (item.is_separator) {
        return line + L"----";
    }
    if (item.offset) {
        line += L"[" + std::to_wstring(*item.offset) + L"] ";
    }
    line += item.text;
    line.resize(std::max(line.size() + 2, text_column), L' ');
    line += item.is_submenu ? L"submenu" : item.is_enabled ? L"enabled" : L"greyed";
    if (item.is_submenu && !item.is_enabled) {
        line += L", greyed";
    }
    if (item.is_default) {
        line += L", default";
    }
    if (item.has_bitmap) {
        line += L", bitmap";
    }
    if (!item.help.empty()) {
        line += L", help \"" + item.help + L"\"";
    }
    return line;
}

const menu_item* find_command(const std::vector<menu_item>& items, const std::wstring& name) {
    wchar_t* end = nullptr;
    const unsigned long number = std::wcstoul(name.c_str(), &end, 10);
    const bool is_number = !name.empty() && *end == L'\0';
    const std::wstring plain = without_accelerators(name);
    const auto found = std::find_if(items.begin(), items.end(), [&](const menu_item& item) {
        return item.offset && (is_number ? *item.offset == number
                                         : CompareStringOrdinal(item.text.c_str(), -1, plain.c_str(), -1,
                                                                TRUE) == CSTR_EQUAL);
    });
    return found != items.end() ? &*found : nullptr;
}

}  // namespace ov::shellhost
