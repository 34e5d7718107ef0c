// A crowd of processes and threads on eight slots of the real driver, while others are killed at any moment.

#include <gtest/gtest.h>

#include <list>
#include <random>
#include <string>

#include "ovufc/ipc/drvport/wire.h"
#include "testkit/process/child_process.h"
#include "testkit/service/scripted_service.h"
#include "tests/driver/eventually.h"
#include "tests/driver/exchange.h"
#include "tests/soak/effort.h"
#include "tests/soak/roles.h"
#include "tests/soak/threads.h"

namespace ov::test {

namespace {

using ipc::drvport::details::client_port;

constexpr DWORD patience_ms = 900'000;

std::string answer_to(const std::string& text) {
    return "re: " + text;
}

// 0 when every one of `calls` was answered as it should be. With more threads than slots a call may find none
// free; it is made again, as nothing of it was sent.
unsigned call_often(client_port& port, const std::string& tag, unsigned calls) {
    for (unsigned call = 0; call < calls;) {
        const std::string text = tag + '/' + std::to_string(call);
        const exchange_result result = ask(port, text);
        if (result.ok && result.reply != answer_to(text)) {
            return 1;
        }
        if (result.ok) {
            ++call;
        } else {
            Sleep(1);
        }
    }
    return 0;
}

std::uint32_t owned_slots(scripted_service& service) {
    std::uint32_t owned = 0;
    for (std::uint32_t slot = 0; slot < service.side().slot_count(); ++slot) {
        owned += service.side().slot(slot).owner != 0 ? 1 : 0;
    }
    return owned;
}

}  // namespace

int play_crowd(const std::wstring& tag, unsigned threads, unsigned calls) {
    client_port port;
    const std::string narrow(tag.begin(), tag.end());
    return static_cast<int>(on_threads(threads, 0, [&](unsigned number) {
        return call_often(port, narrow + '.' + std::to_string(number), calls);
    }));
}

namespace {

TEST(Clients, crowd_gets_its_own_replies_while_others_are_killed) {
    const unsigned processes = effort(4, 16);
    const unsigned threads = effort(3, 4);
    const unsigned calls = effort(25, 100'000 / (16 * 4) + 1);
    scripted_service service([](const scripted_request& request) {
        scripted_reply reply(answer_to(request.text));
        reply.delay_ms = request.text.size() % 3;  // answered out of order
        return reply;
    });
    service.set_section_bytes(ORV_STATUS_BLOCK_BYTES + 8 * ORV_SLOT_BYTES);
    std::list<child_process> crowd;
    const auto start = [](unsigned number, unsigned of_threads, unsigned of_calls) {
        return child_process(this_program(), {role_crowd, std::to_wstring(number),
                                              std::to_wstring(of_threads), std::to_wstring(of_calls)});
    };
    for (unsigned number = 0; number < processes; ++number) {
        crowd.push_back(start(number, threads, calls));
    }
    std::mt19937 random(9);  // NOLINT: the same kills in every run
    for (unsigned kill = 0; kill < effort(3, 60); ++kill) {
        child_process victim = start(1000 + kill, 2, 1'000'000);
        Sleep(100 + random() % 100);
        victim.kill();
    }
    for (child_process& child : crowd) {
        EXPECT_EQ(child.wait(patience_ms), 0U);
    }
    EXPECT_TRUE(eventually([&] { return owned_slots(service) == 0; }))
        << owned_slots(service) << " slots are lost";
}

}  // namespace

}  // namespace ov::test
