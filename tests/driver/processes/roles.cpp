#include "tests/driver/processes/roles.h"

#include <cstring>
#include <random>
#include <stdexcept>
#include <string_view>

#include "companions/devdriver/service_side.h"
#include "tests/driver/exchange.h"

namespace ov::test::roles {

namespace {

using ipc::drvport::details::client_port;

constexpr DWORD ready_patience_ms = 20000;

void set_ready(const wchar_t* event_name) {
    const win::unique_kernel_handle ready(OpenEventW(EVENT_MODIFY_STATE, FALSE, event_name));
    SetEvent(ready.get());
}

int play_client(const std::wstring& tag, int count) {
    client_port port;
    const std::string narrow_tag(tag.begin(), tag.end());
    for (int i = 0; i < count; ++i) {
        const std::string text = narrow_tag + '/' + std::to_string(i);
        const exchange_result result = ask(port, text);
        if (!result.ok) {
            return exchange_failed;
        }
        if (result.reply != answer_in_kind(text)) {
            return wrong_reply;
        }
    }
    return exchange_done;
}

int play_holder(const wchar_t* event_name) {
    client_port port;
    if (port.acquire_slot(request_with("held")) == nullptr) {
        return exchange_failed;
    }
    set_ready(event_name);
    Sleep(INFINITE);
    return exchange_done;
}

int play_waiter(const wchar_t* event_name) {
    client_port port;
    if (!port.connect()) {
        return exchange_failed;
    }
    set_ready(event_name);
    return ask(port, "waited for").ok ? exchange_done : exchange_failed;
}

int play_idler(const wchar_t* event_name) {
    client_port port;
    if (!port.connect()) {
        return exchange_failed;
    }
    set_ready(event_name);
    Sleep(INFINITE);
    return exchange_done;
}

int play_opener(const wchar_t* event_name) {
    set_ready(event_name);
    for (;;) {
        client_port port;
        (void)port.connect();
    }
}

int play_server(const wchar_t* event_name) {
    devdriver::service_side side;
    const DWORD error = side.open();
    if (error != ERROR_SUCCESS) {
        return static_cast<int>(error);
    }
    side.set_state(1);
    set_ready(event_name);
    for (;;) {
        (void)side.next_request(INFINITE);
    }
}

int play_falterer(const wchar_t* event_name) {
    devdriver::service_side side;
    const DWORD error = side.open();
    if (error != ERROR_SUCCESS) {
        return static_cast<int>(error);
    }
    side.set_state(1);
    set_ready(event_name);
    if (const auto taken = side.next_request(INFINITE)) {
        volatile orv_slot& slot = side.slot(taken->slot);
        constexpr std::string_view half = R"({"statusCode":0,"da)";
        std::memcpy(const_cast<std::uint8_t*>(slot.payload), half.data(), half.size());
        slot.payload_bytes = 2 * half.size();
    }
    TerminateProcess(GetCurrentProcess(), exchange_failed);
    return exchange_failed;
}

int play_asker() {
    devdriver::service_side side;
    return static_cast<int>(side.open());
}

int play_vandal(unsigned seed) {
    client_port port;
    if (!port.connect()) {
        return exchange_failed;
    }
    std::mt19937 random(seed);
    auto* section =
        reinterpret_cast<volatile std::uint8_t*>(const_cast<volatile orv_status_block*>(&port.status()));
    constexpr int strokes = 20000;
    for (int i = 0; i < strokes; ++i) {
        // Half of the strokes hit the words that mean something.
        const std::uint32_t offset = random() % ORV_SECTION_BYTES & ~3u;
        const std::uint32_t aimed = i % 2 == 0 ? offset : (offset & ~0xFFFu) + random() % 6 * 4;
        *reinterpret_cast<volatile std::uint32_t*>(section + aimed) =
            i % 3 == 0 ? random() : (random() % 2 == 0 ? ORV_SLOT_POSTED : ORV_SLOT_IN_SERVICE);
    }
    return exchange_done;
}

}  // namespace

std::string answer_in_kind(const std::string& text) {
    return "re: " + text;
}

std::optional<int> play(int argument_count, wchar_t** arguments) {
    const std::wstring_view role = argument_count > 1 ? arguments[1] : L"";
    const wchar_t* argument = argument_count > 2 ? arguments[2] : L"";
    if (role == client && argument_count > 3) {
        return play_client(argument, _wtoi(arguments[3]));
    }
    if (role == holder) {
        return play_holder(argument);
    }
    if (role == waiter) {
        return play_waiter(argument);
    }
    if (role == idler) {
        return play_idler(argument);
    }
    if (role == opener) {
        return play_opener(argument);
    }
    if (role == server) {
        return play_server(argument);
    }
    if (role == falterer) {
        return play_falterer(argument);
    }
    if (role == asker) {
        return play_asker();
    }
    if (role == vandal) {
        return play_vandal(static_cast<unsigned>(_wtoi(argument)));
    }
    return std::nullopt;
}

ready_child::ready_child(const wchar_t* role) {
    static int next = 0;
    const std::wstring name =
        L"orvdrv-test-" + std::to_wstring(GetCurrentProcessId()) + L'-' + std::to_wstring(next++);
    const win::unique_kernel_handle ready(CreateEventW(nullptr, TRUE, FALSE, name.c_str()));
    process_.emplace(this_program(), std::vector<std::wstring>{role, name});
    if (WaitForSingleObject(ready.get(), ready_patience_ms) != WAIT_OBJECT_0) {
        throw std::runtime_error("a child process did not become ready");
    }
}

}  // namespace ov::test::roles
