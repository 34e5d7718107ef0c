#include "tests/unit/companions/devservice/model/fault_injection.h"

#include <windows.h>

#include "testkit/imports/import_patch.h"

namespace ov::devservice {
namespace {

fault_injection::plan current;
int calls = 0;
int writes = 0;

void count_call() {
    if (++calls == current.end_at_call) {
        TerminateProcess(GetCurrentProcess(), fault_injection::ended_exit_code);
    }
}

/// Whether a call that needs room on the disk finds none.
bool disk_is_full() {
    ++writes;
    const bool full = current.full_from_write != 0 && writes >= current.full_from_write;
    if (full) {
        SetLastError(ERROR_DISK_FULL);
    }
    return full;
}

enum class room { not_needed, needed };

/// One import that changes the file system. `Number` tells apart those of one type.
template <class Function, int Number, room Room>
class hook;

template <class... Arguments, int Number, room Room>
class hook<BOOL(Arguments...), Number, Room> {
  public:
    explicit hook(const char* name) : patch_(GetModuleHandleW(nullptr), "kernel32.dll", name, call) {
        original = patch_.original();
    }

  private:
    static BOOL WINAPI call(Arguments... arguments) {
        count_call();
        return Room == room::needed && disk_is_full() ? FALSE : original(arguments...);
    }

    static inline BOOL(WINAPI* original)(Arguments...) = nullptr;
    test::import_patch<BOOL(Arguments...)> patch_;
};

decltype(&CreateFileW) create_file = nullptr;

HANDLE WINAPI create_file_counted(LPCWSTR path, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security,
                                  DWORD disposition, DWORD flags, HANDLE like) {
    if (disposition != OPEN_EXISTING) {
        count_call();
    }
    return create_file(path, access, share, security, disposition, flags, like);
}

}  // namespace

struct fault_injection::hooks {
    hook<decltype(WriteFile), 1, room::needed> write{"WriteFile"};
    hook<decltype(FlushFileBuffers), 2, room::not_needed> flush{"FlushFileBuffers"};
    hook<decltype(MoveFileExW), 3, room::not_needed> move{"MoveFileExW"};
    hook<decltype(DeleteFileW), 4, room::not_needed> remove{"DeleteFileW"};
    hook<decltype(CreateDirectoryW), 5, room::needed> make_folder{"CreateDirectoryW"};
    hook<decltype(RemoveDirectoryW), 6, room::not_needed> remove_folder{"RemoveDirectoryW"};
    hook<decltype(SetFileAttributesW), 7, room::not_needed> attributes{"SetFileAttributesW"};
    hook<decltype(SetFileTime), 8, room::not_needed> time{"SetFileTime"};
    hook<decltype(CreateHardLinkW), 9, room::needed> second_name{"CreateHardLinkW"};
    hook<decltype(SetFileInformationByHandle), 10, room::not_needed> information{
        "SetFileInformationByHandle"};
    test::import_patch<decltype(CreateFileW)> create{GetModuleHandleW(nullptr), "kernel32.dll", "CreateFileW",
                                                     create_file_counted};
};

fault_injection::fault_injection(const plan& wanted) {
    hooks_ = std::make_unique<hooks>();
    create_file = hooks_->create.original();
    current = wanted;
    calls = 0;
    writes = 0;
}

fault_injection::~fault_injection() = default;

}  // namespace ov::devservice
