#pragma once

#include <windows.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "ovufc/noncopyable.h"

namespace ov::test {

/// Records the handles that one module makes and gives back: icons, bitmaps, device contexts,
/// menus, files and libraries, through its import table. (The system's own counters stand still under Wine.)
///
/// A handle given back by the wrong function is a failure of the running test. One instance at a time; one
/// thread.
class handle_ledger : private noncopyable {
  public:
    explicit handle_ledger(HMODULE module);
    ~handle_ledger();

    /// The functions whose handles are still out, sorted; several when several are.
    [[nodiscard]] std::vector<std::string> outstanding() const;
    /// How many handles `function` has made in all.
    [[nodiscard]] int made_by(const std::string& function) const;
    /// Forgets a handle that its maker has passed on to somebody else.
    void strike(void* handle) { open_.erase(handle); }

    void note_made(void* handle, const char* function);
    void note_closed(void* handle, const char* kind);

    struct patches;

  private:
    struct entry {
        std::string function;
        std::string kind;
    };
    std::map<void*, entry> open_;
    std::map<std::string, int> made_;
    std::unique_ptr<patches> patches_;
};

}  // namespace ov::test
