#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "ovufc/win/handle.h"

namespace ov::test {

/// The library that stands for ours, loaded as long as this lives.
class guarded_sample {
  public:
    guarded_sample() : library_(LoadLibraryW(L"guarded_sample.dll")) {}

    [[nodiscard]] std::uintptr_t guard_number() const { return function<std::uintptr_t()>("guard_number")(); }
    void write_zeros(std::size_t count) const { function<void(std::size_t)>("write_zeros")(count); }

  private:
    template <class Function>
    [[nodiscard]] Function* function(const char* name) const {
        return reinterpret_cast<Function*>(
            reinterpret_cast<void (*)()>(GetProcAddress(library_.get(), name)));
    }

    win::unique_library library_;
};

}  // namespace ov::test
