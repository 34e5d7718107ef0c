#include "tools/shellhost/script/input.h"

#include <array>
#include <cwctype>
#include <vector>

namespace ov::shellhost {

namespace {

struct named_key {
    const wchar_t* name;
    WORD code;
};

constexpr std::array named_keys = {named_key{L"enter", VK_RETURN}, named_key{L"escape", VK_ESCAPE},
                                   named_key{L"down", VK_DOWN},    named_key{L"up", VK_UP},
                                   named_key{L"left", VK_LEFT},    named_key{L"right", VK_RIGHT},
                                   named_key{L"home", VK_HOME},    named_key{L"menu", VK_APPS}};

WORD code_of(const std::wstring& name) {
    for (const named_key& key : named_keys) {
        if (name == key.name) {
            return key.code;
        }
    }
    return name.size() == 1 && std::iswalnum(name.front()) ? static_cast<WORD>(std::towupper(name.front()))
                                                           : WORD{0};
}

INPUT mouse_input(DWORD flags) {
    INPUT made{};
    made.type = INPUT_MOUSE;
    made.mi.dwFlags = flags;
    return made;
}

INPUT key_input(WORD code, DWORD flags) {
    INPUT made{};
    made.type = INPUT_KEYBOARD;
    made.ki.wVk = code;
    made.ki.dwFlags = flags;
    return made;
}

}  // namespace

void click_at(POINT where, mouse_button button, int times) {
    SetCursorPos(where.x, where.y);
    const bool is_left = button == mouse_button::left;
    std::vector<INPUT> inputs;
    for (int i = 0; i < times; ++i) {
        inputs.push_back(mouse_input(is_left ? MOUSEEVENTF_LEFTDOWN : MOUSEEVENTF_RIGHTDOWN));
        inputs.push_back(mouse_input(is_left ? MOUSEEVENTF_LEFTUP : MOUSEEVENTF_RIGHTUP));
    }
    SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT));
}

bool press_key(const std::wstring& name) {
    const WORD code = code_of(name);
    if (code == 0) {
        return false;
    }
    std::array inputs = {key_input(code, 0), key_input(code, KEYEVENTF_KEYUP)};
    SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT));
    return true;
}

}  // namespace ov::shellhost
