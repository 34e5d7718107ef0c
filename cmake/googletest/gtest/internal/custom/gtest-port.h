#ifndef GOOGLETEST_INCLUDE_GTEST_INTERNAL_CUSTOM_GTEST_PORT_H_
#define GOOGLETEST_INCLUDE_GTEST_INTERNAL_CUSTOM_GTEST_PORT_H_

// GoogleTest's place for what a system needs otherwise. On Windows it is thread-safe by Win32 means, but for
// this one class, which it builds on std::mutex; the compiler's thread model has none.
#include <windows.h>

#define GTEST_HAS_NOTIFICATION_ 1

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
