#include "companions/devservice/serving/presence.h"

#include "companions/devservice/serving/named_objects.h"

namespace ov::devservice {

presence::presence(const std::wstring& state_folder) {
    section_.reset(CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0,
                                      sizeof(presence_block),
                                      object_name(state_folder, L"presence").c_str()));
    error_ = GetLastError();
    if (error_ == ERROR_ALREADY_EXISTS) {
        error_ = ERROR_SERVICE_ALREADY_RUNNING;
    }
    if (error_ != ERROR_SUCCESS) {
        return;
    }
    wake_.reset(CreateEventW(nullptr, FALSE, FALSE, object_name(state_folder, L"wake").c_str()));
    stop_.reset(CreateEventW(nullptr, TRUE, FALSE, object_name(state_folder, L"stop").c_str()));
    block_ = static_cast<presence_block*>(MapViewOfFile(section_.get(), FILE_MAP_ALL_ACCESS, 0, 0, 0));
    if (!wake_ || !stop_ || block_ == nullptr) {
        error_ = GetLastError();
        return;
    }
    // A command may still hold the events of a service before this one.
    ResetEvent(stop_.get());
    error_ = ERROR_SUCCESS;
    InterlockedExchange(&block_->process_id, static_cast<LONG>(GetCurrentProcessId()));
}

presence::~presence() {
    if (block_ != nullptr) {
        UnmapViewOfFile(block_);
    }
}

bool presence::stopping() const noexcept {
    return WaitForSingleObject(stop_.get(), 0) == WAIT_OBJECT_0;
}

void presence::ask_to_stop() const noexcept {
    SetEvent(stop_.get());
    SetEvent(wake_.get());
}

void presence::publish(std::uint64_t revision) noexcept {
    InterlockedExchange64(&block_->revision, static_cast<LONG64>(revision));
}

}  // namespace ov::devservice
