#pragma once

#include <memory>

#include "ovufc/noncopyable.h"

namespace ov::devservice {

/// Lets this process meet its end, or a full disk, at a chosen moment of its work: the calls by which the
/// program changes the file system are counted through its import table.
///
///     const fault_injection faults({.end_at_call = 17});
///
/// ends the process, as a kill would, in place of the seventeenth.
class fault_injection : private noncopyable {
  public:
    struct plan {
        int end_at_call = 0;      // 0: never
        int full_from_write = 0;  // every write from this one on finds the disk full; 0: none
    };

    static constexpr unsigned ended_exit_code = 0xDEAD;

    explicit fault_injection(const plan& wanted);
    ~fault_injection();

  private:
    struct hooks;
    std::unique_ptr<hooks> hooks_;
};

}  // namespace ov::devservice
