#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "ovufc/dialog/dialog_records.h"
#include "ovufc/noncopyable.h"
#include "testkit/imports/import_patch.h"

namespace ov::test {

/// Stands in for orvdialog.dll towards one module, through its import table: no file is loaded. Calls for
/// other libraries reach the system. One instance at a time, one thread.
class fake_dialog_library : private noncopyable {
  public:
    explicit fake_dialog_library(HMODULE module);
    ~fake_dialog_library();

    bool is_missing = false;
    bool has_no_exports = false;
    /// What the dialogs do; a test sets the one that it expects.
    std::function<std::uint32_t(dialog::ProtectDialogRequest&)> protect;
    std::function<std::uint32_t(const dialog::ChronelDialogRequest&, dialog::ChronelDialogResult&)> chronels;

    struct load {
        std::wstring path;
        DWORD flags;
    };
    [[nodiscard]] const std::vector<load>& loads() const noexcept { return loads_; }
    /// "load", "find 17", "show 17", "free" … in the order in which they came.
    [[nodiscard]] const std::vector<std::string>& events() const noexcept { return events_; }
    /// Adds an event of the test's own.
    void note(const std::string& event) { events_.push_back(event); }

  private:
    static HMODULE WINAPI load_library(LPCWSTR path, HANDLE file, DWORD flags);
    static FARPROC WINAPI find_export(HMODULE library, LPCSTR name);
    static BOOL WINAPI free_library(HMODULE library);
    static std::uint32_t WINAPI show_protect(dialog::ProtectDialogRequest* request);
    static std::uint32_t WINAPI show_chronels(dialog::ChronelDialogRequest* request,
                                              dialog::ChronelDialogResult* result);

    std::vector<load> loads_;
    std::vector<std::string> events_;
    import_patch<decltype(LoadLibraryExW)> load_patch_;
    import_patch<decltype(GetProcAddress)> find_patch_;
    import_patch<decltype(FreeLibrary)> free_patch_;
};

}  // namespace ov::test
