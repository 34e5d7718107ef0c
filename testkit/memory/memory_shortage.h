#pragma once

#include <windows.h>

#include <cstddef>

#include "testkit/imports/import_patch.h"

namespace ov::test {

/// No memory for the C++ code of one DLL, for the length of a scope. The runtime is linked into our DLLs, so
/// that all of their allocations come through this import; what the system allocates on their behalf does
/// not.
class memory_shortage {
  public:
    explicit memory_shortage(HMODULE module)
        : patch_(module, "msvcrt.dll;ucrtbase.dll", "malloc", [](std::size_t) -> void* { return nullptr; }) {}

  private:
    import_patch<void*(std::size_t)> patch_;
};

}  // namespace ov::test
