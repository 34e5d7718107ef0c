#include "tools/command_line/arguments.h"

#include <algorithm>
#include <cwchar>
#include <utility>

namespace ov::command_line {
namespace {

bool is_option(const std::wstring& word) {
    return word.starts_with(L"--");
}

}  // namespace

bool arguments::take_switch(const std::wstring& name) {
    const auto found = std::find(words_.begin(), words_.end(), name);
    if (found == words_.end()) {
        return false;
    }
    words_.erase(found);
    taken_.push_back(name);
    return true;
}

std::optional<std::wstring> arguments::take_value(const std::wstring& name) {
    const auto found = std::find(words_.begin(), words_.end(), name);
    if (found == words_.end()) {
        return std::nullopt;
    }
    if (found + 1 == words_.end() || is_option(*(found + 1))) {
        throw usage_error(name + L" needs a value");
    }
    std::wstring value = *(found + 1);
    words_.erase(found, found + 2);
    taken_.push_back(name);
    return value;
}

std::optional<unsigned> arguments::take_number(const std::wstring& name, unsigned least, unsigned most) {
    const auto text = take_value(name);
    return text ? std::optional(to_number(name, *text, least, most)) : std::nullopt;
}

std::wstring arguments::take_word(const std::wstring& what) {
    if (words_.empty()) {
        throw usage_error(L"name " + what);
    }
    if (is_option(words_.front())) {
        refuse(words_.front());
    }
    std::wstring word = std::move(words_.front());
    words_.erase(words_.begin());
    return word;
}

std::vector<std::wstring> arguments::take_rest() {
    const auto option = std::find_if(words_.begin(), words_.end(), is_option);
    if (option != words_.end()) {
        refuse(*option);
    }
    return std::exchange(words_, {});
}

void arguments::expect_end() {
    const std::vector<std::wstring> left = take_rest();
    if (!left.empty()) {
        throw usage_error(L"unexpected word '" + left.front() + L"'");
    }
}

void arguments::refuse(const std::wstring& option) const {
    const bool is_known = std::find(taken_.begin(), taken_.end(), option) != taken_.end();
    throw usage_error(is_known ? option + L" is given twice" : L"unknown option '" + option + L"'");
}

unsigned to_number(const std::wstring& name, const std::wstring& text, unsigned least, unsigned most) {
    const bool is_number = !text.empty() && text.find_first_not_of(L"0123456789") == std::wstring::npos;
    const unsigned long long number = is_number ? std::wcstoull(text.c_str(), nullptr, 10) : 0;
    if (!is_number || number < least || number > most) {
        throw usage_error(name + L" needs a number from " + std::to_wstring(least) + L" to " +
                          std::to_wstring(most) + L", not '" + text + L"'");
    }
    return static_cast<unsigned>(number);
}

}  // namespace ov::command_line
