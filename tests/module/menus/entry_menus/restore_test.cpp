#include <gmock/gmock.h>

#include <new>

#include "module/state/class_ids.h"
#include "testkit/checks/message_box_script.h"
#include "tests/module/menus/entry_menus/consent.h"
#include "tests/module/menus/entry_menus/entry_fixture.h"

namespace ov::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto get_restore_points = service_call::get_restore_points;
constexpr std::uint64_t created_on = 133'500'000'000'000'000;  // in January 2024

class Restore : public entry_fixture {
  protected:
    Restore() {
        reply(get_restore_points,
              R"({"data":{"restorePoints":[{"createdOn":133500000000000000,"sequenceNumber":7},)"
              R"({"createdOn":1,"sequenceNumber":1}]},"statusCode":0})");
    }

    static std::string points_request() { return request_text(get_restore_points, "{}"); }
    static std::string restore_request() {
        return request_text(service_call::restore_from_point,
                            R"({"createdOn":133500000000000000,"sequenceNumber":7})");
    }
    static std::string folders_request() {
        std::array<wchar_t, MAX_PATH + 1> temp{};
        GetTempPathW(MAX_PATH + 1, temp.data());
        return request_text(service_call::get_restore_folders,
                            R"({"createdOn":133500000000000000,"sequenceNumber":7,"tempFolder":)" +
                                json_text(temp.data()) + "}");
    }

    /// Whether a restore is under way, as the file and folder menu sees it.
    bool is_running() const {
        const auto menu = menu_on(folder_.path());
        return queried_menu(menu.Get(), CMF_NORMAL).result == 0;
    }

    /// Runs a restore that is confirmed and forgets it: it would end at once if another still held the turn.
    void expect_another_restore_runs() {
        const int before = consent_.asked();
        message_box_script boxes(module_.handle(), {IDCANCEL});
        EXPECT_EQ(invoke(menu_.Get(), 0), S_OK);
        EXPECT_EQ(consent_.asked(), before + 1);
        EXPECT_EQ(boxes.shown().size(), 1U);
        EXPECT_FALSE(is_running());
    }

    consent consent_{module_.handle()};
    Microsoft::WRL::ComPtr<IContextMenu> menu_ = entry_menu(class_ids::one_click_restore);
};

TEST_F(Restore, confirmed_twice_restores_the_first_point) {
    message_box_script boxes(module_.handle(), {IDOK, IDOK});
    EXPECT_EQ(invoke(menu_.Get(), 0), S_OK);
    ASSERT_EQ(boxes.shown().size(), 2U);
    EXPECT_FALSE(display(created_on).empty());
    EXPECT_EQ(boxes.shown()[0].text, message_texts::of(0x40015, display(created_on)));
    EXPECT_EQ(boxes.shown()[1].text, message_texts::of(0x40016, display(created_on)));
    for (const auto& box : boxes.shown()) {
        EXPECT_EQ(box.owner, nullptr);
        EXPECT_EQ(box.caption, message_texts::of(0));
        EXPECT_EQ(box.style, 0x50121U);
    }
    EXPECT_EQ(consent_.asked(), 1);
    EXPECT_THAT(sent(), ElementsAre(points_request(), folders_request(), restore_request()));
}

TEST_F(Restore, cancel_at_either_question_sends_nothing_more) {
    {
        message_box_script boxes(module_.handle(), {IDCANCEL});
        EXPECT_EQ(invoke(menu_.Get(), 0), S_OK);
        EXPECT_THAT(sent(), ElementsAre(points_request()));
    }
    {
        message_box_script boxes(module_.handle(), {IDOK, IDCANCEL});
        EXPECT_EQ(invoke(menu_.Get(), 0), S_OK);
        EXPECT_EQ(boxes.shown().size(), 2U);
        EXPECT_THAT(sent(), ElementsAre(points_request()));
    }
    EXPECT_FALSE(is_running());
}

TEST_F(Restore, declined_elevation_ends_silently) {
    message_box_script boxes(module_.handle(), {});
    for (const HRESULT refusal :
         {HRESULT_FROM_WIN32(ERROR_CANCELLED), E_ACCESSDENIED, MK_E_SYNTAX, S_FALSE}) {
        consent_.answer = refusal;
        EXPECT_EQ(invoke(menu_.Get(), 0), S_OK);
    }
    EXPECT_THAT(sent(), IsEmpty());
    EXPECT_FALSE(is_running());
}

TEST_F(Restore, no_point_is_one_stop_message_and_no_question) {
    for (const char* text :
         {R"({"data":{"restorePoints":[]},"statusCode":0})", R"({"data":{},"statusCode":0})",
          R"({"data":{"restorePoints":[{"createdOn":1,"sequenceNumber":1}]},"statusCode":3})"}) {
        reply(get_restore_points, text);
        message_box_script boxes(module_.handle(), {IDOK});
        EXPECT_EQ(invoke(menu_.Get(), 0), S_OK);
        ASSERT_EQ(boxes.shown().size(), 1U) << text;
        EXPECT_EQ(boxes.shown()[0].owner, nullptr);
        EXPECT_EQ(boxes.shown()[0].text, message_texts::of(0x40014));
        EXPECT_EQ(boxes.shown()[0].caption, message_texts::of(0));
        EXPECT_EQ(boxes.shown()[0].style, 0x50010U);
        EXPECT_THAT(sent(), ElementsAre(points_request()));
    }
    EXPECT_FALSE(is_running());
}

TEST_F(Restore, driver_that_serves_nothing_is_the_stop_message) {
    service_.set_state(0);
    {
        message_box_script boxes(module_.handle(), {IDOK});
        EXPECT_EQ(invoke(menu_.Get(), 0), S_OK);
        EXPECT_EQ(boxes.shown().at(0).style, 0x50010U);
    }
    service_.set_state(1);
    expect_another_restore_runs();
}

TEST_F(Restore, refusal_of_the_restore_itself_is_not_shown) {
    reply(service_call::restore_from_point, R"({"data":{},"statusCode":5})");
    message_box_script boxes(module_.handle(), {IDOK, IDOK});
    EXPECT_EQ(invoke(menu_.Get(), 0), S_OK);
    EXPECT_EQ(boxes.shown().size(), 2U);
    EXPECT_FALSE(is_running());
}

TEST_F(Restore, without_an_item_nothing_happens) {
    message_box_script boxes(module_.handle(), {});
    const auto menu = make_menu(class_ids::one_click_restore);
    EXPECT_EQ(invoke(menu.Get(), 0), S_OK);
    EXPECT_EQ(consent_.asked(), 0);
    EXPECT_THAT(sent(), IsEmpty());
}

TEST_F(Restore, verb_is_the_default_action_alone) {
    expect_default_verb_alone(menu_.Get(), L"Restore");
    EXPECT_EQ(consent_.asked(), 0);
}

TEST_F(Restore, while_it_runs_new_file_menus_are_empty_and_old_ones_keep_their_items) {
    reply_folder_status(true);
    const auto older = menu_on(folder_.path());
    EXPECT_FALSE(is_running());
    int looked = 0;
    const auto look = [&] {
        ++looked;
        EXPECT_TRUE(is_running());
        EXPECT_EQ(queried_menu(older.Get(), CMF_NORMAL).result, 3);
    };
    consent_.while_asked = look;
    message_box_script boxes(module_.handle(), {IDOK, IDCANCEL});
    boxes.while_shown = [&](const auto&) { look(); };
    EXPECT_EQ(invoke(menu_.Get(), 0), S_OK);
    EXPECT_EQ(looked, 3) << "at the prompt and at both questions";
    EXPECT_FALSE(is_running());
}

TEST_F(Restore, proof_of_consent_is_held_to_the_end_and_released_when_the_turn_is_over) {
    bool running_at_release = true;
    consent_.when_released = [&] { running_at_release = is_running(); };
    message_box_script boxes(module_.handle(), {IDOK, IDOK});
    boxes.while_shown = [&](const auto&) { EXPECT_EQ(consent_.references(), 1U); };
    EXPECT_EQ(invoke(menu_.Get(), 0), S_OK);
    EXPECT_FALSE(running_at_release);
    EXPECT_EQ(consent_.references(), 0U);
}

// One more restore, from a thread of its own, while the first asks its question.
struct second_restore {
    const shipped_module& module;
    IDataObject* selection;
    HRESULT result = E_FAIL;

    static DWORD WINAPI run(void* self) {
        auto& second = *static_cast<second_restore*>(self);
        CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        {
            Microsoft::WRL::ComPtr<IContextMenu> menu;
            if (SUCCEEDED(second.module.create(class_ids::one_click_restore, IID_PPV_ARGS(&menu)))) {
                initialize(menu.Get(), second.selection);
                second.result = invoke(menu.Get(), 0);
            }
        }
        CoUninitialize();
        return 0;
    }
};

TEST_F(Restore, second_restore_on_another_thread_ends_at_once_without_a_word) {
    const auto selection = select_items({folder_.path()});
    second_restore second{module_, selection.Get()};
    message_box_script boxes(module_.handle(), {IDOK, IDOK});
    int rounds = 0;
    boxes.while_shown = [&](const auto&) {
        ++rounds;
        const win::unique_kernel_handle thread(
            CreateThread(nullptr, 0, &second_restore::run, &second, 0, nullptr));
        EXPECT_EQ(WaitForSingleObject(thread.get(), 10'000), WAIT_OBJECT_0);
        EXPECT_EQ(second.result, S_OK);
        EXPECT_TRUE(is_running()) << "the second must not end the first one's turn";
    };
    EXPECT_EQ(invoke(menu_.Get(), 0), S_OK);
    EXPECT_EQ(rounds, 2);
    EXPECT_EQ(boxes.shown().size(), 2U);
    EXPECT_EQ(consent_.asked(), 1);
    EXPECT_FALSE(is_running());
}

TEST_F(Restore, error_on_the_way_is_the_stop_message_and_ends_the_turn) {
    message_box_script boxes(module_.handle(), {IDOK, IDOK});
    boxes.while_shown = [](const message_box_script::box& box) {
        if (box.style == 0x50121U) {
            throw std::bad_alloc();
        }
    };
    EXPECT_EQ(invoke(menu_.Get(), 0), S_OK);
    ASSERT_EQ(boxes.shown().size(), 2U);
    EXPECT_EQ(boxes.shown()[1].text, message_texts::of(0x40014));
    EXPECT_EQ(boxes.shown()[1].style, 0x50010U);
    EXPECT_THAT(sent(), ElementsAre(points_request()));
    EXPECT_FALSE(is_running());
}

TEST_F(Restore, error_in_the_stop_message_too_still_ends_the_turn) {
    {
        message_box_script boxes(module_.handle(), {IDOK, IDOK});
        boxes.while_shown = [](const auto&) { throw std::bad_alloc(); };
        EXPECT_EQ(invoke(menu_.Get(), 0), S_OK);
        EXPECT_EQ(boxes.shown().size(), 2U);
    }
    EXPECT_EQ(consent_.references(), 0U);
    expect_another_restore_runs();
}

TEST_F(Restore, error_in_the_prompt_ends_the_turn) {
    consent_.while_asked = [] { throw std::bad_alloc(); };
    {
        message_box_script boxes(module_.handle(), {});
        EXPECT_EQ(invoke(menu_.Get(), 0), S_OK);
    }
    consent_.while_asked = nullptr;
    expect_another_restore_runs();
}

}  // namespace
}  // namespace ov::test
