#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>

#include "testkit/service/scripted_service.h"
#include "tests/driver/exchange.h"

namespace {

using ov::ipc::drvport::details::client_port;
using ov::test::ask;
using ov::test::scripted_reply;
using ov::test::scripted_request;
using ov::test::scripted_service;

std::string echo(const scripted_request& request) {
    return "re: " + request.text;
}

TEST(Exchange, request_and_reply_arrive_whole) {
    scripted_service service(echo);
    client_port port;
    const auto result = ask(port, R"({"parameters":{},"serviceCall":1})");
    EXPECT_TRUE(result.ok);
    EXPECT_EQ(result.reply, R"(re: {"parameters":{},"serviceCall":1})");
    EXPECT_EQ(result.reply_bytes, result.reply.size());
}

TEST(Exchange, header_names_process_thread_and_session) {
    scripted_service service(echo);
    client_port port;
    ASSERT_TRUE(ask(port, "who").ok);
    const auto requests = service.requests();
    ASSERT_EQ(requests.size(), 1u);
    DWORD session_id = 0;
    ProcessIdToSessionId(GetCurrentProcessId(), &session_id);
    EXPECT_EQ(requests[0].process_id, GetCurrentProcessId());
    EXPECT_EQ(requests[0].thread_id, GetCurrentThreadId());
    EXPECT_EQ(requests[0].session_id, session_id);
}

TEST(Exchange, text_of_2047_bytes_arrives_whole) {
    scripted_service service(echo);
    client_port port;
    const std::string text = std::string(2046, 'a') + 'z';
    ASSERT_TRUE(ask(port, text).ok);
    EXPECT_EQ(service.requests().at(0).text, text);
}

TEST(Exchange, text_of_2048_bytes_arrives_cut_to_2047) {
    scripted_service service(echo);
    client_port port;
    const std::string text = std::string(2047, 'a') + 'z';
    ASSERT_TRUE(ask(port, text).ok);
    EXPECT_EQ(service.requests().at(0).text, std::string(2047, 'a'));
}

TEST(Exchange, reply_of_5000_bytes_is_cut_to_2048) {
    scripted_service service([](const scripted_request&) {
        scripted_reply reply(std::string(5000, 'x'));
        reply.length_word = 5000;
        return reply;
    });
    client_port port;
    const auto result = ask(port, "long");
    EXPECT_TRUE(result.ok);
    EXPECT_EQ(result.reply_bytes, 2048u);
    EXPECT_EQ(result.reply, std::string(2048, 'x'));
}

TEST(Exchange, reply_of_2048_bytes_is_whole) {
    scripted_service service([](const scripted_request&) { return std::string(2047, 'x') + 'z'; });
    client_port port;
    EXPECT_EQ(ask(port, "long").reply, std::string(2047, 'x') + 'z');
}

TEST(Exchange, length_word_of_all_bits_gives_no_more_than_2048_bytes) {
    scripted_service service([](const scripted_request&) {
        scripted_reply reply("short");
        reply.length_word = 0xFFFFFFFF;
        return reply;
    });
    client_port port;
    const auto result = ask(port, "lie");
    EXPECT_TRUE(result.ok);
    EXPECT_EQ(result.reply_bytes, 2048u);
    EXPECT_EQ(result.reply.substr(0, 5), "short");
}

class ReplyLength : public testing::TestWithParam<std::uint32_t> {};

TEST_P(ReplyLength, is_held_to_what_a_client_takes) {
    const std::string full = std::string(3979, 'x') + 'z';
    scripted_service service([&](const scripted_request&) {
        scripted_reply reply(full);
        reply.length_word = GetParam();
        return reply;
    });
    client_port port;
    const auto result = ask(port, "how long");
    EXPECT_TRUE(result.ok);
    EXPECT_EQ(result.reply_bytes, std::min(GetParam(), 2048U));
    EXPECT_EQ(result.reply, full.substr(0, result.reply_bytes));
}

INSTANTIATE_TEST_SUITE_P(Words, ReplyLength,
                         testing::Values(0U, 1U, 2047U, 2048U, 2049U, 3980U, 3981U, 0x80000000U,
                                         0xFFFFFFFFU));

TEST(Exchange, garbage_with_zeros_arrives_as_it_is) {
    const std::string garbage("\x00\xFF{\x80\x00\x01", 6);
    scripted_service service([&](const scripted_request&) { return garbage; });
    client_port port;
    EXPECT_EQ(ask(port, "garbage").reply, garbage);
}

TEST(Exchange, empty_reply_is_a_reply) {
    scripted_service service([](const scripted_request&) { return ""; });
    client_port port;
    const auto result = ask(port, "nothing to say");
    EXPECT_TRUE(result.ok);
    EXPECT_EQ(result.reply_bytes, 0u);
}

TEST(Exchange, delayed_reply_is_waited_for) {
    scripted_service service([](const scripted_request&) {
        scripted_reply reply("late");
        reply.delay_ms = 150;
        return reply;
    });
    client_port port;
    const DWORD started = GetTickCount();
    EXPECT_EQ(ask(port, "slow").reply, "late");
    EXPECT_GE(GetTickCount() - started, 130u);  // the tick count may be 16 ms old
}

TEST(Exchange, many_in_a_row_all_use_the_slots_again) {
    scripted_service service(echo);
    client_port port;
    for (int i = 0; i < 200; ++i) {
        ASSERT_EQ(ask(port, std::to_string(i)).reply, "re: " + std::to_string(i));
    }
}

TEST(Exchange, two_ports_of_one_process_both_work) {
    scripted_service service(echo);
    client_port first;
    client_port second;
    EXPECT_EQ(ask(first, "1").reply, "re: 1");
    EXPECT_EQ(ask(second, "2").reply, "re: 2");
}

TEST(Exchange, several_threads_on_one_port_get_their_own_replies) {
    scripted_service service([](const scripted_request& request) {
        scripted_reply reply(echo(request));
        reply.delay_ms = request.text.size() % 4 * 5;  // answered out of order
        return reply;
    });
    client_port port;
    struct shared_state {
        client_port& port;
        volatile LONG right = 0;
    } shared{port};
    constexpr int threads = 8;
    constexpr int rounds = 10;
    std::array<HANDLE, threads> handles{};
    for (HANDLE& handle : handles) {
        handle = CreateThread(
            nullptr, 0,
            [](void* parameter) -> DWORD {
                auto& state = *static_cast<shared_state*>(parameter);
                for (int i = 0; i < rounds; ++i) {
                    const std::string text = std::to_string(GetCurrentThreadId()) + std::string(i, '.');
                    if (ask(state.port, text).reply == "re: " + text) {
                        InterlockedIncrement(&state.right);
                    }
                }
                return 0;
            },
            &shared, 0, nullptr);
    }
    WaitForMultipleObjects(threads, handles.data(), TRUE, INFINITE);
    for (HANDLE handle : handles) {
        CloseHandle(handle);
    }
    EXPECT_EQ(shared.right, threads * rounds);
}

}  // namespace
