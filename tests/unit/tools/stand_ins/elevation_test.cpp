#include "tools/stand_ins/elevation.h"

#include <gtest/gtest.h>
#include <shobjidl.h>
#include <wrl/client.h>

#include "tests/unit/tools/stand_ins/recording_handler.h"

namespace ov::stand_ins {
namespace {

using Microsoft::WRL::ComPtr;

constexpr const wchar_t* file_operation =
    L"Elevation:Administrator!new:{3AD05575-8857-4850-9277-11B85BDB8E09}";

int consents = 0;

class Elevation : public testing::Test {
  protected:
    Elevation() {
        consents = 0;
        options.cbStruct = sizeof options;
        set_elevation_answer(consent::given);
        set_elevation_listener([](consent) { ++consents; });
    }
    ~Elevation() override {
        set_elevation_answer(consent::given);
        set_elevation_listener(nullptr);
    }

    test_apartment apartment;
    BIND_OPTS3 options{};
    ComPtr<IFileOperation> object;
};

TEST_F(Elevation, consent_given_gives_the_object_and_says_so) {
    EXPECT_EQ(get_object(file_operation, &options, IID_PPV_ARGS(object.GetAddressOf())), S_OK);
    EXPECT_NE(object, nullptr);
    EXPECT_EQ(consents, 1);
}

TEST_F(Elevation, consent_declined_gives_what_the_systems_prompt_gives) {
    set_elevation_answer(consent::declined);
    EXPECT_EQ(get_object(file_operation, &options, IID_PPV_ARGS(object.GetAddressOf())),
              HRESULT_FROM_WIN32(ERROR_CANCELLED));
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(consents, 1);
}

TEST_F(Elevation, other_names_go_to_the_system_unasked) {
    EXPECT_TRUE(FAILED(get_object(L"nonsense", &options, IID_PPV_ARGS(object.GetAddressOf()))));
    EXPECT_EQ(consents, 0);
}

TEST_F(Elevation, malformed_class_id_is_a_syntax_error) {
    EXPECT_EQ(
        get_object(L"Elevation:Administrator!new:nothing", &options, IID_PPV_ARGS(object.GetAddressOf())),
        MK_E_SYNTAX);
    EXPECT_EQ(get_object(nullptr, &options, IID_PPV_ARGS(object.GetAddressOf())), E_INVALIDARG);
}

}  // namespace
}  // namespace ov::stand_ins
