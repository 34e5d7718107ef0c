#include "testkit/checks/message_box_script.h"

#include <gtest/gtest.h>

#include "ovufc/win/srw_lock.h"

namespace ov::test {

namespace {

// An import slot holds a plain function, which finds its script here.
message_box_script* current = nullptr;

std::wstring text_or_null(LPCWSTR text) {
    return text == nullptr ? L"(null)" : text;
}

}  // namespace

message_box_script::message_box_script(HMODULE module, std::initializer_list<int> answers)
    : answers_(answers), patch_(module, "user32.dll", "MessageBoxW", &message_box_script::answer_box) {
    EXPECT_EQ(current, nullptr) << "one script at a time";
    current = this;
}

message_box_script::~message_box_script() {
    current = nullptr;
}

int WINAPI message_box_script::answer_box(HWND owner, LPCWSTR text, LPCWSTR caption, UINT style) {
    return current->answer({owner, text_or_null(text), text_or_null(caption), style});
}

int message_box_script::answer(const box& asked) {
    int result = 0;
    {
        const win::exclusive_lock lock(lock_);
        if (shown_.size() < answers_.size()) {
            result = answers_[shown_.size()];
        } else {
            ADD_FAILURE() << "a box that nobody expects, style 0x" << std::hex << asked.style;
        }
        shown_.push_back(asked);
    }
    if (while_shown) {
        while_shown(asked);
    }
    return result;
}

}  // namespace ov::test
