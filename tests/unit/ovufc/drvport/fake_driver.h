#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "ovufc/ipc/drvport/wire.h"
#include "ovufc/noncopyable.h"
#include "testkit/imports/import_patch.h"

namespace ov::test {

/// Stands in for the device, the clock and the naps of the port under test, through this program's import
/// table: what the real driver cannot be made to do (fail half-way, wrap the tick count, hold a poll still).
/// Single-threaded but for `open_delay_ms`. One at a time.
class fake_driver : private noncopyable {
  public:
    explicit fake_driver(std::uint32_t slots = 2);
    ~fake_driver();

    volatile orv_status_block& status() noexcept;
    volatile orv_slot& slot(std::uint32_t index) noexcept;

    // What the driver does.
    bool present = true;
    bool answers_open = true;
    std::optional<std::uint64_t> section_word;  // instead of where the section is
    bool gives_semaphore = true;
    DWORD open_delay_ms = 0;
    std::function<void()> on_signal;  // when the semaphore is released
    std::function<void()> on_nap;     // at the end of each nap
    std::function<void()> on_yield;   // each time the processor is given away

    // The clocks: a nap takes as long as it says.
    DWORD tick = 1000;
    LONGLONG counter_us = 7'000'000'000;
    LONGLONG yield_length_us = 100;

    // What the port did.
    struct file_call {
        std::wstring path;
        DWORD access, share, creation, attributes;
        bool without_security, without_template;
    };
    struct control_call {
        HANDLE device;
        DWORD code, in_bytes, out_bytes;
        bool without_input, synchronous;
    };
    struct nap {
        DWORD length_ms;
        BOOL alertable;
    };
    std::vector<file_call> opened;
    std::vector<control_call> controlled;
    std::vector<HANDLE> closed;
    std::vector<LONG> signalled;
    std::vector<nap> naps;
    unsigned yields = 0;
    std::vector<DWORD> spin_counts;

    // Never real handles.
    static inline const HANDLE device = reinterpret_cast<HANDLE>(std::uintptr_t{0x7001});
    static inline const HANDLE semaphore = reinterpret_cast<HANDLE>(std::uintptr_t{0x7002});

  private:
    struct patches;
    char* section_;
    std::unique_ptr<patches> patches_;
};

}  // namespace ov::test
