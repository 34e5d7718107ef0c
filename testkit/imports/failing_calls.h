#pragma once

#include <windows.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "ovufc/noncopyable.h"
#include "testkit/imports/import_patch.h"

namespace ov::test {

/// The functions of Windows that failing_call knows how to let fail, by name.
[[nodiscard]] const std::vector<std::string>& functions_that_fail();

/// One imported function of one module, a call of which fails in place of reaching the system: it gives what
/// the function gives when it fails, sets the last error to ERROR_NOT_SUPPORTED and writes to no argument.
/// Calls count on the thread that made this. One at a time; where other patches lie over it, it sees the
/// calls that they pass on.
class failing_call : private noncopyable {
  public:
    /// `function` is one of `functions_that_fail`; `nth` is the call that fails, from 1 on. Throws
    /// std::runtime_error when the module does not import it.
    failing_call(HMODULE module, const std::string& function, int nth);
    ~failing_call();

    /// True once the call has failed.
    [[nodiscard]] bool met() const noexcept;

  private:
    std::optional<import_slots> slots_;
};

/// Runs `scene` again and again with the first, second … call of each function that `module` imports failing,
/// at most `most` calls of one function; how often a call failed.
///
///     EXPECT_GE(fail_each_call(module, 3, [&](const failing_call& call, const std::string& name) {
///         EXPECT_EQ(work(), !call.met()) << name;
///     }), 10);
template <class Scene>
int fail_each_call(HMODULE module, int most, Scene scene) {
    int failures = 0;
    for (const std::string& function : functions_that_fail()) {
        bool met = imports(module, "*", function.c_str());
        for (int nth = 1; met && nth <= most; ++nth) {
            const failing_call call(module, function, nth);
            scene(call, function + ", call " + std::to_string(nth));
            met = call.met();
            failures += met ? 1 : 0;
        }
    }
    return failures;
}

}  // namespace ov::test
