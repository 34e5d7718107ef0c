#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "ovufc/noncopyable.h"

namespace ov::shellhost {

/// Makes the product's classes ready to be created, and says what it did on standard output.
///
/// Without a path the classes come from the registry, as in Explorer; their modules are loaded beforehand, so
/// that functions which the system lacks can be supplied through their import tables. With a path that
/// module's classes are registered for this process alone, in place of what the registry says, until
/// destruction. The thread has an apartment.
///
/// `as_tracked`: where no file can bear the mark (Wine) the module is told that every file is tracked.
class product_module : noncopyable, nonmoveable {
  public:
    /// Throws command_failure when the module at `path` cannot be loaded or has none of the classes.
    explicit product_module(const std::wstring& path, bool as_tracked = false);
    ~product_module();

  private:
    void load(const std::wstring& path);
    void load_registered();
    void supply(HMODULE module, const std::wstring& path) const;

    bool as_tracked_;
    std::vector<DWORD> registrations_;
};

/// The file that the registry names for an in-process class; empty when it is not registered.
[[nodiscard]] std::wstring registered_module_of(const CLSID& clsid);

}  // namespace ov::shellhost
