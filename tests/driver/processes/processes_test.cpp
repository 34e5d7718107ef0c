#include <gtest/gtest.h>

#include <algorithm>
#include <list>
#include <random>
#include <vector>

#include "testkit/process/child_process.h"
#include "testkit/service/scripted_service.h"
#include "tests/driver/eventually.h"
#include "tests/driver/exchange.h"
#include "tests/driver/processes/roles.h"

namespace {

namespace roles = ov::test::roles;
using ov::ipc::drvport::details::client_port;
using ov::test::ask;
using ov::test::child_process;
using ov::test::eventually;
using ov::test::scripted_reply;
using ov::test::scripted_request;
using ov::test::scripted_service;
using ov::test::this_program;

std::string answer(const scripted_request& request) {
    return roles::answer_in_kind(request.text);
}

TEST(Processes, several_at_once_each_gets_its_own_replies) {
    scripted_service service(answer);
    constexpr int count = 6;
    constexpr int exchanges = 40;
    std::list<child_process> children;
    for (int i = 0; i < count; ++i) {
        children.emplace_back(this_program(), std::vector<std::wstring>{roles::client, std::to_wstring(i),
                                                                        std::to_wstring(exchanges)});
    }
    for (child_process& child : children) {
        EXPECT_EQ(child.wait(30000), static_cast<DWORD>(roles::exchange_done));
    }
    EXPECT_EQ(service.requests().size(), static_cast<std::size_t>(count * exchanges));
}

TEST(Processes, dead_holder_loses_its_slot_once_it_is_answered) {
    scripted_service service([](const scripted_request& request) {
        scripted_reply reply(answer(request));
        reply.delay_ms = 200;
        return reply;
    });
    roles::ready_child holder(roles::holder);
    ASSERT_TRUE(service.wait_for_requests(1));
    volatile orv_slot& slot = service.side().slot(service.requests()[0].slot);
    EXPECT_EQ(slot.owner, holder.process().id());
    holder.process().kill();
    EXPECT_TRUE(eventually([&] { return slot.owner == 0; }));
    EXPECT_EQ(slot.abandoned, 0u);
}

TEST(Processes, dead_holder_in_service_keeps_its_slot_until_the_service_side_is_done) {
    scripted_service service([](const scripted_request&) -> std::optional<scripted_reply> { return {}; });
    roles::ready_child holder(roles::holder);
    ASSERT_TRUE(service.wait_for_requests(1));
    const scripted_request request = service.requests()[0];
    volatile orv_slot& slot = service.side().slot(request.slot);
    holder.process().kill();
    Sleep(300);
    EXPECT_EQ(slot.owner, holder.process().id());
    service.side().reply(request, "to nobody");
    EXPECT_TRUE(eventually([&] { return slot.owner == 0; }));
}

TEST(Processes, client_killed_again_and_again_leaves_nothing_behind) {
    scripted_service service(answer);
    for (int i = 0; i < 10; ++i) {
        roles::ready_child idler(roles::idler);
        idler.process().kill();
    }
    client_port port;
    EXPECT_EQ(ask(port, "still there").reply, roles::answer_in_kind("still there"));
    EXPECT_TRUE(eventually([&] {
        std::uint32_t owned = 0;
        for (std::uint32_t i = 0; i < service.side().slot_count(); ++i) {
            owned += service.side().slot(i).owner != 0 ? 1 : 0;
        }
        return owned == 0;
    }));
}

// Mapping into a process waits for it, and for ever when it ends at that moment.
TEST(Processes, many_killed_while_they_open_others_are_served) {
    scripted_service service(answer);
    std::mt19937 random(7);
    constexpr int rounds = 15;
    for (int round = 0; round < rounds; ++round) {
        std::list<roles::ready_child> openers;
        for (int i = 0; i < 3; ++i) {
            openers.emplace_back(roles::opener);
        }
        for (roles::ready_child& opener : openers) {
            Sleep(random() % 10);
            opener.process().kill();
        }
    }
    child_process healthy(this_program(), {roles::client, L"healthy", L"3"});
    EXPECT_EQ(healthy.wait(10000), static_cast<DWORD>(roles::exchange_done));
}

bool is_mapped(const volatile void* address) {
    MEMORY_BASIC_INFORMATION region{};
    VirtualQuery(const_cast<const void*>(address), &region, sizeof region);
    return region.Type == MEM_MAPPED;
}

// A host that loads and unloads the module again and again keeps no mapping.
TEST(Processes, ports_opened_and_closed_their_mappings_are_taken_away) {
    std::vector<const volatile void*> sections;
    {
        std::list<client_port> ports(50);
        for (client_port& port : ports) {
            ASSERT_TRUE(port.connect());
            sections.push_back(&port.status());
        }
        EXPECT_TRUE(std::all_of(sections.begin(), sections.end(), is_mapped));
    }
    EXPECT_TRUE(eventually([&] { return std::none_of(sections.begin(), sections.end(), is_mapped); }));
}

TEST(Processes, vandals_cannot_stop_driver_or_service_for_others) {
    {
        scripted_service service(answer);
        std::list<child_process> vandals;
        for (int seed = 1; seed <= 3; ++seed) {
            vandals.emplace_back(this_program(),
                                 std::vector<std::wstring>{roles::vandal, std::to_wstring(seed)});
        }
        for (child_process& vandal : vandals) {
            EXPECT_EQ(vandal.wait(30000), static_cast<DWORD>(roles::exchange_done));
        }
        // A garbage owner is nobody's, so the driver frees its slot; what the vandals left in service goes
        // with this service side.
    }
    scripted_service service(answer);
    client_port port;
    EXPECT_TRUE(eventually([&] { return ask(port, "after").reply == roles::answer_in_kind("after"); }));
    EXPECT_EQ(service.side().status().section_bytes, ORV_SECTION_BYTES);
}

}  // namespace
