#include "companions/devservice/command_line/remote.h"

#include <utility>

#include "companions/devservice/serving/named_objects.h"
#include "companions/devservice/serving/presence.h"
#include "ovufc/win/handle.h"

namespace ov::devservice {
namespace {

constexpr DWORD patience_ms = 10'000;
constexpr DWORD poll_ms = 10;

struct seen {
    DWORD process_id = 0;
    std::uint64_t revision = 0;
};

/// The section as it is now. It is opened anew at each look: one that was kept open would outlive its service
/// and go on looking alive.
seen look(const std::wstring& state_folder) {
    seen result;
    const win::unique_kernel_handle section(
        OpenFileMappingW(FILE_MAP_READ, FALSE, object_name(state_folder, L"presence").c_str()));
    if (!section) {
        return result;
    }
    if (void* view = MapViewOfFile(section.get(), FILE_MAP_READ, 0, 0, sizeof(presence_block));
        view != nullptr) {
        const auto* block = static_cast<const presence_block*>(view);
        result.process_id = static_cast<DWORD>(block->process_id);
        result.revision = static_cast<std::uint64_t>(block->revision);
        UnmapViewOfFile(view);
    }
    return result;
}

bool signal(const std::wstring& state_folder, const wchar_t* purpose) {
    const win::unique_kernel_handle event(
        OpenEventW(EVENT_MODIFY_STATE, FALSE, object_name(state_folder, purpose).c_str()));
    return event && SetEvent(event.get());
}

}  // namespace

remote::remote(std::wstring state_folder) : state_folder_(std::move(state_folder)) {}

DWORD remote::process_id() const {
    return look(state_folder_).process_id;
}

bool remote::tell(std::uint64_t revision) const {
    const ULONGLONG start_ms = GetTickCount64();
    while (GetTickCount64() - start_ms < patience_ms) {
        const seen now = look(state_folder_);
        if (now.process_id == 0 || now.revision >= revision) {
            return true;
        }
        signal(state_folder_, L"wake");
        Sleep(poll_ms);
    }
    return false;
}

bool remote::stop() const {
    const DWORD running = process_id();
    const win::unique_kernel_handle process(OpenProcess(SYNCHRONIZE, FALSE, running));
    if (!process) {
        return process_id() == 0;
    }
    signal(state_folder_, L"stop");
    signal(state_folder_, L"wake");
    return WaitForSingleObject(process.get(), patience_ms) == WAIT_OBJECT_0;
}

}  // namespace ov::devservice
