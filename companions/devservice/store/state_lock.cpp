#include "companions/devservice/store/state_lock.h"

#include "companions/devservice/serving/named_objects.h"

namespace ov::devservice {
namespace {

constexpr DWORD patience_ms = 60'000;

}  // namespace

state_lock::state_lock(const std::wstring& state_folder)
    : mutex_(CreateMutexW(nullptr, FALSE, object_name(state_folder, L"state").c_str())) {
    if (mutex_) {
        const DWORD result = WaitForSingleObject(mutex_.get(), patience_ms);
        held_ = result == WAIT_OBJECT_0 || result == WAIT_ABANDONED;
    }
}

state_lock::~state_lock() {
    if (held_) {
        ReleaseMutex(mutex_.get());
    }
}

}  // namespace ov::devservice
