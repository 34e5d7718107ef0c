#pragma once

#include <windows.h>
#include <ole2.h>

#include "ovufc/noncopyable.h"

namespace ov::shellhost {

/// The program's single-threaded apartment, as Explorer's windows have one.
class apartment : noncopyable, nonmoveable {
  public:
    apartment() noexcept : result_(OleInitialize(nullptr)) {}
    ~apartment() {
        if (SUCCEEDED(result_)) {
            OleUninitialize();
        }
    }

  private:
    HRESULT result_;
};

}  // namespace ov::shellhost
