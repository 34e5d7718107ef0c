#include "tests/module/menus/entry_menus/consent.h"

#include <gtest/gtest.h>

namespace ov::test {

namespace {

// An import slot holds a plain function, which finds its instance here.
consent* current = nullptr;

}  // namespace

consent::consent(HMODULE module) : patch_(module, "ole32.dll", "CoGetObject", &consent::answer_prompt) {
    proof_.owner = this;
    current = this;
}

consent::~consent() {
    EXPECT_EQ(proof_.references, 0U) << "the proof of consent was not released";
    current = nullptr;
}

HRESULT WINAPI consent::answer_prompt(LPCWSTR name, BIND_OPTS* /*options*/, REFIID /*riid*/, void** ppv) {
    EXPECT_STREQ(name, L"Elevation:Administrator!new:{3AD05575-8857-4850-9277-11B85BDB8E09}");
    ++current->asked_;
    *ppv = nullptr;
    if (current->while_asked) {
        current->while_asked();
    }
    if (current->answer == S_OK) {
        current->proof_.AddRef();
        *ppv = &current->proof_;
    }
    return current->answer;
}

STDMETHODIMP
consent::proof::QueryInterface(REFIID /*riid*/, void** ppv) noexcept {
    ADD_FAILURE() << "nothing is asked of the proof";
    *ppv = nullptr;
    return E_NOINTERFACE;
}

STDMETHODIMP_(ULONG) consent::proof::AddRef() noexcept {
    return ++references;
}

STDMETHODIMP_(ULONG) consent::proof::Release() noexcept {
    if (--references == 0 && owner->when_released) {
        owner->when_released();
    }
    return references;
}

}  // namespace ov::test
