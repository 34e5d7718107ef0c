#pragma once

// GoogleTest is thread-safe on Windows by Win32 means, but for this one class, which it builds on std::mutex;
// the compiler's thread model has none. Included before every file of GoogleTest and of the tests.
#ifdef __cplusplus
#include <windows.h>

namespace testing::internal {

class Notification {
  public:
    Notification() : event_(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {}
    Notification(const Notification&) = delete;
    Notification& operator=(const Notification&) = delete;
    ~Notification() { CloseHandle(event_); }

    void Notify() { SetEvent(event_); }
    void WaitForNotification() { WaitForSingleObject(event_, INFINITE); }

  private:
    HANDLE event_;
};

}  // namespace testing::internal
#endif
