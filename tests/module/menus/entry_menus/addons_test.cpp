#include <gmock/gmock.h>

#include <new>

#include "module/state/class_ids.h"
#include "testkit/checks/message_box_script.h"
#include "tests/module/menus/entry_menus/entry_fixture.h"

namespace ov::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto get_last_timestamp = service_call::get_last_timestamp;
constexpr std::uint64_t some_time = 133'500'000'000'000'000;  // in January 2024

class Addons : public entry_fixture {
  protected:
    void reply_timestamp(const std::string& value) {
        reply(get_last_timestamp, R"({"data":{"lastTimestamp":)" + value + R"(},"statusCode":-2})");
    }
    std::string request() const { return request_text(get_last_timestamp, "{}"); }

    Microsoft::WRL::ComPtr<IContextMenu> menu_ = entry_menu(class_ids::addons);
};

TEST_F(Addons, open_asks_then_tells_the_timestamp) {
    reply_timestamp(std::to_string(some_time));
    message_box_script boxes(module_.handle(), {IDOK, IDOK});
    EXPECT_EQ(invoke(menu_.Get(), 0), S_OK);
    ASSERT_EQ(boxes.shown().size(), 2U);
    EXPECT_EQ(boxes.shown()[0].text, message_texts::of(0x40017));
    EXPECT_EQ(boxes.shown()[0].style, 0x50121U);
    EXPECT_FALSE(display(some_time).empty());
    EXPECT_EQ(boxes.shown()[1].text, message_texts::of(0x40018, display(some_time)));
    EXPECT_EQ(boxes.shown()[1].style, 0x50040U);
    for (const auto& box : boxes.shown()) {
        EXPECT_EQ(box.owner, nullptr);
        EXPECT_EQ(box.caption, message_texts::of(0));
    }
    EXPECT_THAT(sent(), ElementsAre(request()));
}

TEST_F(Addons, cancel_sends_nothing) {
    message_box_script boxes(module_.handle(), {IDCANCEL});
    EXPECT_EQ(invoke(menu_.Get(), 0), S_OK);
    EXPECT_EQ(boxes.shown().size(), 1U);
    EXPECT_THAT(sent(), IsEmpty());
}

TEST_F(Addons, timestamp_of_zero_is_an_empty_date) {
    reply_timestamp("0");
    message_box_script boxes(module_.handle(), {IDOK, IDOK});
    EXPECT_EQ(invoke(menu_.Get(), 0), S_OK);
    ASSERT_EQ(boxes.shown().size(), 2U);
    EXPECT_EQ(boxes.shown()[1].text, message_texts::of(0x40018, L""));
    EXPECT_EQ(boxes.shown()[1].style, 0x50040U);
}

// File times have no sign; the system turns none of the upper half into a date.
TEST_F(Addons, timestamp_in_the_upper_half_is_a_timestamp_without_a_date) {
    for (const char* timestamp : {"9223372036854775808", "18446744073709551615"}) {
        reply_timestamp(timestamp);
        message_box_script boxes(module_.handle(), {IDOK, IDOK});
        EXPECT_EQ(invoke(menu_.Get(), 0), S_OK);
        ASSERT_EQ(boxes.shown().size(), 2U);
        EXPECT_EQ(boxes.shown()[1].text, message_texts::of(0x40018, L"")) << timestamp;
        EXPECT_EQ(boxes.shown()[1].style, 0x50040U) << timestamp;
    }
}

TEST_F(Addons, no_timestamp_is_the_failure_message) {
    for (const char* text :
         {R"({"data":{"lastTimestamp":5},"statusCode":0})", R"({"data":{},"statusCode":-2})",
          R"({"data":{"lastTimestamp":5},"statusCode":5})", "not json"}) {
        reply(get_last_timestamp, text);
        message_box_script boxes(module_.handle(), {IDOK, IDOK});
        EXPECT_EQ(invoke(menu_.Get(), 0), S_OK);
        ASSERT_EQ(boxes.shown().size(), 2U) << text;
        EXPECT_EQ(boxes.shown()[1].text, message_texts::of(0x40014));
        EXPECT_EQ(boxes.shown()[1].caption, message_texts::of(0));
        EXPECT_EQ(boxes.shown()[1].style, 0x50010U);
    }
}

TEST_F(Addons, driver_that_serves_nothing_is_the_failure_message) {
    service_.set_state(0);
    message_box_script boxes(module_.handle(), {IDOK, IDOK});
    EXPECT_EQ(invoke(menu_.Get(), 0), S_OK);
    EXPECT_EQ(boxes.shown().at(1).style, 0x50010U);
}

TEST_F(Addons, error_while_telling_is_the_failure_message) {
    reply_timestamp(std::to_string(some_time));
    message_box_script boxes(module_.handle(), {IDOK, IDOK, IDOK});
    boxes.while_shown = [](const message_box_script::box& box) {
        if (box.style == 0x50040U) {
            throw std::bad_alloc();
        }
    };
    EXPECT_EQ(invoke(menu_.Get(), 0), S_OK);
    ASSERT_EQ(boxes.shown().size(), 3U);
    EXPECT_EQ(boxes.shown()[2].text, message_texts::of(0x40014));
    EXPECT_EQ(boxes.shown()[2].style, 0x50010U);
}

TEST_F(Addons, error_in_the_question_ends_the_command_quietly) {
    message_box_script boxes(module_.handle(), {IDOK});
    boxes.while_shown = [](const auto&) { throw std::bad_alloc(); };
    EXPECT_EQ(invoke(menu_.Get(), 0), S_OK);
    EXPECT_EQ(boxes.shown().size(), 1U);
    EXPECT_THAT(sent(), IsEmpty());
}

TEST_F(Addons, without_an_item_nothing_is_asked) {
    message_box_script boxes(module_.handle(), {});
    const auto menu = make_menu(class_ids::addons);
    EXPECT_EQ(invoke(menu.Get(), 0), S_OK);
    EXPECT_EQ(initialize(menu.Get(), nullptr), S_OK);
    EXPECT_EQ(invoke(menu.Get(), 0), S_OK);
    EXPECT_THAT(sent(), IsEmpty());
}

TEST_F(Addons, verb_is_the_default_action_alone) {
    expect_default_verb_alone(menu_.Get(), L"Open");
}

}  // namespace
}  // namespace ov::test
