#include "testkit/process/before_attach.h"

#include <winternl.h>

#include <stdexcept>
#include <string_view>
#include <utility>

namespace ov::test {

/// LDR_DLL_LOADED_NOTIFICATION_DATA, which no header declares.
struct before_attach::notification {
    ULONG flags;
    const UNICODE_STRING* full_name;
    const UNICODE_STRING* base_name;
    void* base;
    ULONG size_bytes;
};

namespace {

constexpr ULONG reason_loaded = 1;

using notify = void CALLBACK(ULONG reason, const before_attach::notification* data, void* context);

template <class Function>
Function* system_function(const char* name) {
    return reinterpret_cast<Function*>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), name)));
}

}  // namespace

before_attach::before_attach(std::wstring file_name, std::function<void(HMODULE)> act)
    : file_name_(std::move(file_name)), act_(std::move(act)) {
    auto* const enlist =
        system_function<NTSTATUS NTAPI(ULONG, notify*, void*, void**)>("LdrRegisterDllNotification");
    if (enlist == nullptr || enlist(0, &on_load, this, &cookie_) != 0) {
        throw std::runtime_error("the system does not tell of loaded libraries");
    }
}

before_attach::~before_attach() {
    system_function<NTSTATUS NTAPI(void*)>("LdrUnregisterDllNotification")(cookie_);
}

void CALLBACK before_attach::on_load(ULONG reason, const notification* data, void* self) {
    auto& waiting = *static_cast<before_attach*>(self);
    const std::wstring_view name(data->base_name->Buffer, data->base_name->Length / sizeof(wchar_t));
    if (reason == reason_loaded && CompareStringOrdinal(name.data(), static_cast<int>(name.size()),
                                                        waiting.file_name_.c_str(), -1, TRUE) == CSTR_EQUAL) {
        waiting.act_(static_cast<HMODULE>(data->base));
    }
}

}  // namespace ov::test
