#include <gtest/gtest.h>

#include <array>

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

TEST(Exchange, RequestAndReply_ArriveWhole) {
    scripted_service service(echo);
    client_port port;
    const auto result = ask(port, R"({"parameters":{},"serviceCall":1})");
    EXPECT_TRUE(result.ok);
    EXPECT_EQ(result.reply, R"(re: {"parameters":{},"serviceCall":1})");
    EXPECT_EQ(result.reply_bytes, result.reply.size());
}

TEST(Exchange, Header_NamesProcessThreadAndSession) {
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

TEST(Exchange, TextOf2047Bytes_ArrivesWhole) {
    scripted_service service(echo);
    client_port port;
    const std::string text = std::string(2046, 'a') + 'z';
    ASSERT_TRUE(ask(port, text).ok);
    EXPECT_EQ(service.requests().at(0).text, text);
}

TEST(Exchange, TextOf2048Bytes_ArrivesCutTo2047) {
    scripted_service service(echo);
    client_port port;
    const std::string text = std::string(2047, 'a') + 'z';
    ASSERT_TRUE(ask(port, text).ok);
    EXPECT_EQ(service.requests().at(0).text, std::string(2047, 'a'));
}

TEST(Exchange, ReplyOf5000Bytes_IsCutTo2048) {
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

TEST(Exchange, ReplyOf2048Bytes_IsWhole) {
    scripted_service service([](const scripted_request&) { return std::string(2047, 'x') + 'z'; });
    client_port port;
    EXPECT_EQ(ask(port, "long").reply, std::string(2047, 'x') + 'z');
}

TEST(Exchange, LengthWordOfAllBits_GivesNoMoreThan2048Bytes) {
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

TEST(Exchange, GarbageWithZeros_ArrivesAsItIs) {
    const std::string garbage("\x00\xFF{\x80\x00\x01", 6);
    scripted_service service([&](const scripted_request&) { return garbage; });
    client_port port;
    EXPECT_EQ(ask(port, "garbage").reply, garbage);
}

TEST(Exchange, EmptyReply_IsAReply) {
    scripted_service service([](const scripted_request&) { return ""; });
    client_port port;
    const auto result = ask(port, "nothing to say");
    EXPECT_TRUE(result.ok);
    EXPECT_EQ(result.reply_bytes, 0u);
}

TEST(Exchange, DelayedReply_IsWaitedFor) {
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

TEST(Exchange, ManyInARow_AllUseTheSlotsAgain) {
    scripted_service service(echo);
    client_port port;
    for (int i = 0; i < 200; ++i) {
        ASSERT_EQ(ask(port, std::to_string(i)).reply, "re: " + std::to_string(i));
    }
}

TEST(Exchange, TwoPortsOfOneProcess_BothWork) {
    scripted_service service(echo);
    client_port first;
    client_port second;
    EXPECT_EQ(ask(first, "1").reply, "re: 1");
    EXPECT_EQ(ask(second, "2").reply, "re: 2");
}

TEST(Exchange, SeveralThreadsOnOnePort_GetTheirOwnReplies) {
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
