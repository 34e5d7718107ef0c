#pragma once

#include <windows.h>

#include <string>

#include "ovufc/noncopyable.h"
#include "tools/stand_ins/menus/registry_value.h"

namespace ov::stand_ins {

/// A class key of this test run below HKEY_CLASSES_ROOT, deleted with all below it at the end of the scope.
/// Its name must be nobody else's: other programs use the same registry meanwhile.
class test_class_key : private noncopyable {
  public:
    explicit test_class_key(std::wstring name = L"OrvaneTest" + std::to_wstring(GetCurrentProcessId()))
        : name_(std::move(name)) {
        RegCreateKeyExW(HKEY_CLASSES_ROOT, name_.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, key_.put(),
                        nullptr);
    }
    ~test_class_key() {
        key_.reset();
        RegDeleteTreeW(HKEY_CLASSES_ROOT, name_.c_str());
    }

    [[nodiscard]] HKEY get() const noexcept { return key_.get(); }
    [[nodiscard]] const std::wstring& name() const noexcept { return name_; }

    void set(const wchar_t* below, const wchar_t* value, const std::wstring& text) const {
        const auto size_bytes = static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t));
        RegSetKeyValueW(key_.get(), below, value, REG_SZ, text.c_str(), size_bytes);
    }
    void make(const wchar_t* below) const {
        unique_registry_key made;
        RegCreateKeyExW(key_.get(), below, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, made.put(), nullptr);
    }

  private:
    std::wstring name_;
    unique_registry_key key_;
};

[[nodiscard]] inline std::wstring text_of(const CLSID& clsid) {
    wchar_t text[39] = {};
    StringFromGUID2(clsid, text, 39);
    return text;
}

}  // namespace ov::stand_ins
