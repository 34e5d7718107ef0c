#pragma once

#include <map>
#include <string>
#include <vector>

#include "companions/devservice/files/problem.h"
#include "companions/devservice/store/records.h"

namespace ov::devservice {

/// Keeps the files of protected folders marked as tracked (mark.h), where that takes nothing from anybody:
/// where the volume keeps reparse points and a file of our own, marked for trial, still opens. Without a
/// file-system filter it does not, and no file of a person's is touched.
///
/// A folder is remembered in the state folder before its first mark and forgotten after its last, so what a
/// process that ended at any moment left behind is made good by the next `update`. A file that is moved out
/// of its folder takes its mark along.
class marks {
  public:
    explicit marks(std::wstring state_folder);

    struct changes {
        std::size_t set = 0;
        std::size_t taken_away = 0;
        problems failed;  // marks that should be away and are not; the next update tries again
    };

    /// Marks the files of the folders that `state` protects; takes the marks away where it protects no more,
    /// and where marked files no longer open.
    changes update(const service_state& state);

  private:
    [[nodiscard]] bool can_be_marked(const std::wstring& folder);
    void mark_folder(const std::wstring& folder, changes& done) const;
    void unmark_folder(const std::wstring& folder, changes& done) const;

    [[nodiscard]] std::wstring reminder(const std::wstring& folder) const;
    [[nodiscard]] std::vector<std::wstring> remembered() const;

    std::wstring state_folder_;
    std::wstring reminders_;
    std::map<std::wstring, bool> volumes_;  // whether files there can be marked; asked once in our life
};

}  // namespace ov::devservice
