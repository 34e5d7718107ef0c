#include "tools/stand_ins/associations/default_extract_icon.h"

#include <shobjidl.h>
#include <wrl/client.h>

#include <array>
#include <cwchar>
#include <optional>
#include <string>

#include "ovufc/com/adopt.h"
#include "ovufc/com/com_object.h"
#include "ovufc/com/guard.h"
#include "tools/stand_ins/items/interface_ids.h"
#include "tools/stand_ins/menus/registry_value.h"

namespace ov::stand_ins {

namespace {

struct icon_location {
    std::wstring file;
    int index = 0;
};

std::optional<icon_location> default_icon_of(HKEY key) {
    std::wstring text = read_registry_text(key, L"DefaultIcon", nullptr);
    if (text.empty()) {
        return std::nullopt;
    }
    const int index = PathParseIconLocationW(text.data());
    text.resize(std::wcslen(text.c_str()));  // That call ended the text at its comma.
    return icon_location{std::move(text), index};
}

class default_extract_icon final
    : public com::com_object<
          default_extract_icon, com::bases<IDefaultExtractIconInit, IExtractIconW, IExtractIconA>,
          com::answers<com::answer<IUnknown, IDefaultExtractIconInit>, com::answer<IDefaultExtractIconInit>,
                       com::answer<IExtractIconW>, com::answer<IExtractIconA>>> {
  public:
    virtual ~default_extract_icon() = default;

    STDMETHODIMP
    SetFlags(UINT flags) noexcept override {
        flags_ = flags;
        return S_OK;
    }
    STDMETHODIMP
    SetKey(HKEY key) noexcept override {
        return com::guarded([&] {
            key_icon_ = default_icon_of(key);
            return S_OK;
        });
    }
    STDMETHODIMP
    SetNormalIcon(LPCWSTR file, int index) noexcept override { return set(normal_, file, index); }
    STDMETHODIMP
    SetOpenIcon(LPCWSTR file, int index) noexcept override { return set(open_, file, index); }
    STDMETHODIMP
    SetShortcutIcon(LPCWSTR file, int index) noexcept override { return set(shortcut_, file, index); }
    STDMETHODIMP
    SetDefaultIcon(LPCWSTR file, int index) noexcept override { return set(default_, file, index); }

    STDMETHODIMP
    GetIconLocation(UINT asked, PWSTR file, UINT capacity, int* index, UINT* flags) noexcept override {
        if (file == nullptr || capacity == 0 || index == nullptr || flags == nullptr) {
            return E_INVALIDARG;
        }
        *index = 0;
        *flags = flags_;
        file[0] = L'\0';
        const icon_location* location = choose(asked);
        if (location == nullptr) {
            return S_FALSE;
        }
        if (location->file.size() >= capacity) {
            return HRESULT_FROM_WIN32(ERROR_INSUFFICIENT_BUFFER);
        }
        lstrcpynW(file, location->file.c_str(), static_cast<int>(capacity));
        *index = location->index;
        return S_OK;
    }

    STDMETHODIMP
    Extract(PCWSTR file, UINT index, HICON* large, HICON* small_icon, UINT sizes) noexcept override {
        return SHDefExtractIconW(file, static_cast<int>(index), 0, large, small_icon, sizes);
    }

    STDMETHODIMP
    GetIconLocation(UINT asked, PSTR file, UINT capacity, int* index, UINT* flags) noexcept override {
        std::array<wchar_t, MAX_PATH> wide{};
        if (file == nullptr || capacity == 0) {
            return E_INVALIDARG;
        }
        const HRESULT result = GetIconLocation(asked, wide.data(), MAX_PATH, index, flags);
        if (result == S_OK && WideCharToMultiByte(CP_ACP, 0, wide.data(), -1, file,
                                                  static_cast<int>(capacity), nullptr, nullptr) == 0) {
            return HRESULT_FROM_WIN32(GetLastError());
        }
        return result;
    }

    STDMETHODIMP
    Extract(PCSTR file, UINT index, HICON* large, HICON* small_icon, UINT sizes) noexcept override {
        return SHDefExtractIconA(file, static_cast<int>(index), 0, large, small_icon, sizes);
    }

  private:
    static HRESULT set(std::optional<icon_location>& place, LPCWSTR file, int index) noexcept {
        if (file == nullptr) {
            return E_INVALIDARG;
        }
        return com::guarded([&] {
            place = icon_location{file, index};
            return S_OK;
        });
    }

    [[nodiscard]] const icon_location* choose(UINT asked) const noexcept {
        if ((asked & GIL_OPENICON) != 0 && open_) {
            return &*open_;
        }
        if ((asked & GIL_FORSHORTCUT) != 0 && shortcut_) {
            return &*shortcut_;
        }
        for (const auto* place : {&normal_, &key_icon_, &default_}) {
            if (*place) {
                return &**place;
            }
        }
        return nullptr;
    }

    UINT flags_ = 0;
    std::optional<icon_location> normal_;
    std::optional<icon_location> open_;
    std::optional<icon_location> shortcut_;
    std::optional<icon_location> default_;
    std::optional<icon_location> key_icon_;
};

}  // namespace

STDAPI create_default_extract_icon(REFIID riid, void** result) {
    if (result == nullptr) {
        return E_POINTER;
    }
    *result = nullptr;
    return com::guarded([&]() -> HRESULT {
        Microsoft::WRL::ComPtr<default_extract_icon> object;
        object = com::adopt(com::make_object<default_extract_icon>());
        return object != nullptr ? object->QueryInterface(riid, result) : E_OUTOFMEMORY;
    });
}

}  // namespace ov::stand_ins
