#pragma once

#include <windows.h>

#include <functional>
#include <string>

#include "companions/devservice/store/object_store.h"
#include "companions/devservice/store/records.h"
#include "companions/devservice/store/state_file.h"

namespace ov::devservice {

/// What the service has in its folder: the state file, the contents of the copied files, and what a roll-back
/// moved aside. One thread at a time; other processes may work on the same folder.
class vault {
  public:
    /// `folder` is a clean path.
    explicit vault(std::wstring folder);

    /// Reads the state file as it stands. Call first, and again when another process has changed it.
    [[nodiscard]] DWORD reload();

    [[nodiscard]] const service_state& state() const noexcept { return state_; }
    [[nodiscard]] const std::wstring& folder() const noexcept { return folder_; }
    [[nodiscard]] object_store& objects() noexcept { return objects_; }
    [[nodiscard]] const object_store& objects() const noexcept { return objects_; }

    /// Changes the state: takes the lock, reads the file, calls `change` with the state, and saves unless it
    /// answers an error. On any error neither the file nor `state()` has changed. A change that adds a copy
    /// makes older ones give way (see retention.h). `change` may take long (copying); it must not call
    /// `change` again.
    [[nodiscard]] DWORD change(const std::function<DWORD(service_state&)>& change);

    /// A new, empty folder for what the roll-back to `number` moves aside.
    [[nodiscard]] std::wstring aside_folder(std::int64_t number) const;

    /// The text given as the protected-locations document, when the state says that there is one.
    [[nodiscard]] std::wstring document_path() const;

  private:
    std::wstring folder_;
    state_file file_;
    object_store objects_;
    service_state state_;
};

}  // namespace ov::devservice
