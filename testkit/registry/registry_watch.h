#pragma once

#include <windows.h>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "ovufc/noncopyable.h"

namespace ov::test {

/// Writes down every registry call that one module makes through its import table, with its arguments.
///
/// Each call is a line, for example:
///
///     create HKCR "CLSID\{...}" options 0 access F003F -> #1
///     set #1 (default) REG_SZ 14 "Orvane\0"
///     open HKLM "SOFTWARE\..." options 0 access 20019 = 2
///     close #1
///
/// "#1" is the first key that was opened, "= 2" the status of a call that failed; sizes are in bytes, access
/// rights and numbers hexadecimal. Arguments that nobody should pass (a class, a security descriptor) are
/// named when they are there. One watch at a time, on one thread.
class registry_watch : private noncopyable {
  public:
    enum class mode {
        pass_through,  ///< calls reach the registry
        simulate,      ///< calls only seem to succeed
    };

    registry_watch(HMODULE module, mode how);
    ~registry_watch();

    /// Asked before each call, with its number (from 0) and its line as far as the arguments. A status that
    /// it gives is returned in place of the call, and the last error set to `injected_last_error`.
    std::function<std::optional<LSTATUS>(std::size_t number, const std::string& line)> answer;
    static constexpr DWORD injected_last_error = 1234;

    /// Adds a line of the test's own.
    void note(const std::string& line) { calls_.push_back(line); }
    void clear() { calls_.clear(); }
    [[nodiscard]] const std::vector<std::string>& calls() const noexcept { return calls_; }
    /// Keys that were opened and not closed.
    [[nodiscard]] std::size_t open_keys() const noexcept { return numbers_.size(); }

  private:
    struct patches;
    friend struct registry_doubles;

    LSTATUS run(std::string line, const std::function<LSTATUS()>& real, HKEY* opened);
    [[nodiscard]] std::string name_of(HKEY key) const;

    mode mode_;
    std::vector<std::string> calls_;
    std::map<HKEY, int> numbers_;
    int opened_ = 0;
    std::unique_ptr<patches> patches_;
};

}  // namespace ov::test
