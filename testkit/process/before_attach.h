#pragma once

#include <windows.h>

#include <functional>
#include <string>

#include "ovufc/noncopyable.h"

namespace ov::test {

/// Runs a function on a DLL between its being loaded, imports and all, and its being entered for the first
/// time: the moment at which a test can change what DllMain and the runtime's start-up code meet.
///
///     const before_attach starving(L"orvdialog.dll", [&](HMODULE module) { shortage.emplace(module); });
///     LoadLibraryW(L"orvdialog.dll");
///
/// The function runs under the loader's lock. Throws std::runtime_error when the system does not tell of
/// loads.
class before_attach : private noncopyable {
  public:
    before_attach(std::wstring file_name, std::function<void(HMODULE)> act);
    ~before_attach();

    struct notification;

  private:
    static void CALLBACK on_load(ULONG reason, const notification* data, void* self);

    std::wstring file_name_;
    std::function<void(HMODULE)> act_;
    void* cookie_ = nullptr;
};

}  // namespace ov::test
