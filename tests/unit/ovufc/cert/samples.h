#pragma once

#include <string>

#include "testkit/process/module_attach.h"

namespace ov::test {

/// The path of one of the prepared libraries beside this program (see make_samples.sh).
inline std::wstring sample(const std::wstring& name) {
    return module_state::module_directory + L"signed_samples\\" + name + L".dll";
}

}  // namespace ov::test
