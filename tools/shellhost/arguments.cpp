#include "tools/shellhost/arguments.h"

#include <algorithm>
#include <cwchar>
#include <utility>

namespace ov::shellhost {

bool arguments::take_switch(const std::wstring& name) {
    const auto found = std::find(words_.begin(), words_.end(), name);
    if (found == words_.end()) {
        return false;
    }
    words_.erase(found);
    return true;
}

std::optional<std::wstring> arguments::take_value(const std::wstring& name) {
    const auto found = std::find(words_.begin(), words_.end(), name);
    if (found == words_.end()) {
        return std::nullopt;
    }
    if (found + 1 == words_.end()) {
        throw usage_error(name + L" needs a value");
    }
    std::wstring value = *(found + 1);
    words_.erase(found, found + 2);
    return value;
}

std::optional<unsigned> arguments::take_number(const std::wstring& name, unsigned least, unsigned most) {
    const auto text = take_value(name);
    if (!text) {
        return std::nullopt;
    }
    wchar_t* end = nullptr;
    const unsigned long number = std::wcstoul(text->c_str(), &end, 10);
    if (end == text->c_str() || *end != L'\0' || number < least || number > most) {
        throw usage_error(name + L" needs a number from " + std::to_wstring(least) + L" to " +
                          std::to_wstring(most) + L", not '" + *text + L"'");
    }
    return static_cast<unsigned>(number);
}

std::vector<std::wstring> arguments::take_rest() {
    for (const std::wstring& word : words_) {
        if (word.rfind(L"--", 0) == 0) {
            throw usage_error(L"unknown option '" + word + L"'");
        }
    }
    return std::exchange(words_, {});
}

void arguments::expect_end() {
    const auto left = take_rest();
    if (!left.empty()) {
        throw usage_error(L"unexpected word '" + left.front() + L"'");
    }
}

}  // namespace ov::shellhost
