#include "tools/stand_ins/elevation.h"

#include <shlwapi.h>

#include <string_view>

#include "tools/stand_ins/system_function.h"

namespace ov::stand_ins {

namespace {

constexpr std::wstring_view moniker_prefix = L"Elevation:Administrator!new:";

consent prompt_answer = consent::given;
void (*prompt_listener)(consent) = nullptr;

/// The system's own function, also when this module's import of it has been pointed here.
decltype(&CoGetObject) system_get_object() noexcept {
    static const auto function = system_function<decltype(CoGetObject)>(L"ole32.dll", "CoGetObject");
    return function;
}

}  // namespace

void set_elevation_answer(consent answer) noexcept {
    prompt_answer = answer;
}

void set_elevation_listener(void (*listener)(consent answer)) noexcept {
    prompt_listener = listener;
}

STDAPI get_object(PCWSTR name, BIND_OPTS* options, REFIID riid, void** result) {
    if (name == nullptr || result == nullptr) {
        return E_INVALIDARG;
    }
    *result = nullptr;
    if (StrCmpNIW(name, moniker_prefix.data(), static_cast<int>(moniker_prefix.size())) != 0) {
        return system_get_object()(name, options, riid, result);
    }
    CLSID clsid{};
    const HRESULT parsed = CLSIDFromString(name + moniker_prefix.size(), &clsid);
    if (FAILED(parsed)) {
        return MK_E_SYNTAX;
    }
    if (prompt_listener != nullptr) {
        prompt_listener(prompt_answer);
    }
    if (prompt_answer == consent::declined) {
        return HRESULT_FROM_WIN32(ERROR_CANCELLED);
    }
    return CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, riid, result);
}

}  // namespace ov::stand_ins
