#include "bench/harness/round_trip.h"

#include <array>

namespace ov::bench {

round_trip::round_trip()
    : asked_(CreateEventW(nullptr, FALSE, FALSE, nullptr)),
      answered_(CreateEventW(nullptr, FALSE, FALSE, nullptr)),
      stop_(CreateEventW(nullptr, TRUE, FALSE, nullptr)),
      thread_(CreateThread(nullptr, 0, &round_trip::answer, this, 0, nullptr)) {}

round_trip::~round_trip() {
    SetEvent(stop_.get());
    WaitForSingleObject(thread_.get(), INFINITE);
}

void round_trip::go() noexcept {
    SetEvent(asked_.get());
    WaitForSingleObject(answered_.get(), INFINITE);
}

DWORD WINAPI round_trip::answer(void* self) noexcept {
    const auto& trip = *static_cast<round_trip*>(self);
    const std::array<HANDLE, 2> waited_for{trip.asked_.get(), trip.stop_.get()};
    while (WaitForMultipleObjects(2, waited_for.data(), FALSE, INFINITE) == WAIT_OBJECT_0) {
        SetEvent(trip.answered_.get());
    }
    return 0;
}

}  // namespace ov::bench
