#pragma once

#include <windows.h>
#include <unknwn.h>

#include <string>

#include "ovufc/win/handle.h"

namespace ov::test {

/// Folder of the running program, ending in a backslash: all built files of a preset are there.
[[nodiscard]] std::wstring program_directory();

/// The shipped orvshellext.dll, loaded as a host loads it and freed at the end of the scope.
///
/// Throws std::runtime_error when the module or one of its four exports is not there.
class shipped_module {
  public:
    /// Loads `path`; the module beside the running program when it is empty.
    explicit shipped_module(const std::wstring& path = {});

    [[nodiscard]] HMODULE handle() const noexcept { return library_.get(); }
    [[nodiscard]] HRESULT get_class_object(REFCLSID rclsid, REFIID riid, void** ppv) const;
    [[nodiscard]] HRESULT can_unload_now() const;
    [[nodiscard]] HRESULT register_server() const;
    [[nodiscard]] HRESULT unregister_server() const;

    /// Asks for the class object, makes one instance with it and lets the class object go.
    [[nodiscard]] HRESULT create(REFCLSID rclsid, REFIID riid, void** ppv) const;

  private:
    win::unique_library library_;
};

}  // namespace ov::test
