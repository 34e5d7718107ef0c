#include "testkit/process/shipped_module.h"

#include <wrl/client.h>

#include <array>

#include "testkit/require.h"

namespace ov::test {

namespace {

template <class Function>
Function* exported(HMODULE library, const char* name) {
    auto* found = reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(library, name)));
    require(found != nullptr, std::string("the module does not export ") + name);
    return found;
}

using server_function = HRESULT WINAPI();

HRESULT call(HMODULE library, const char* name) {
    return exported<server_function>(library, name)();
}

}  // namespace

std::wstring program_directory() {
    std::array<wchar_t, 4096> path{};
    GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size() - 1));
    const std::wstring text(path.data());
    return text.substr(0, text.rfind(L'\\') + 1);
}

shipped_module::shipped_module(const std::wstring& path)
    : library_(
          LoadLibraryW(path.empty() ? (program_directory() + L"orvshellext.dll").c_str() : path.c_str())) {
    require(static_cast<bool>(library_), "the module did not load");
}

HRESULT shipped_module::get_class_object(REFCLSID rclsid, REFIID riid, void** ppv) const {
    return exported<HRESULT WINAPI(REFCLSID, REFIID, void**)>(library_.get(), "DllGetClassObject")(rclsid,
                                                                                                   riid, ppv);
}

HRESULT shipped_module::can_unload_now() const {
    return call(library_.get(), "DllCanUnloadNow");
}

HRESULT shipped_module::register_server() const {
    return call(library_.get(), "DllRegisterServer");
}

HRESULT shipped_module::unregister_server() const {
    return call(library_.get(), "DllUnregisterServer");
}

HRESULT shipped_module::create(REFCLSID rclsid, REFIID riid, void** ppv) const {
    Microsoft::WRL::ComPtr<IClassFactory> factory;
    const HRESULT result =
        get_class_object(rclsid, IID_IClassFactory, reinterpret_cast<void**>(factory.GetAddressOf()));
    return FAILED(result) ? result : factory->CreateInstance(nullptr, riid, ppv);
}

}  // namespace ov::test
