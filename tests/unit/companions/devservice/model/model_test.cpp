#include <cstdlib>

#include "tests/unit/companions/devservice/model/model_world.h"

namespace ov::devservice {
namespace {

// ORV_MODEL_SEEDS asks for more: the long form of this program has three hundred kills.
constexpr int default_seeds = 10;
constexpr int steps_of_a_seed = 40;
constexpr int kills_of_a_seed = 5;  // at least, on average

int seeds() {
    const char* wanted = std::getenv("ORV_MODEL_SEEDS");
    return wanted == nullptr ? default_seeds : static_cast<int>(std::strtol(wanted, nullptr, 10));
}

class Model : public model_world, public ::testing::WithParamInterface<int> {
  protected:
    static void TearDownTestSuite() {
        std::printf("%d kills\n", kills);
        EXPECT_GE(kills, kills_of_a_seed * seeds());
    }

    void step() {
        switch (draw(14)) {
            case 0:
            case 1:
            case 2:
                return write_some_file();
            case 3:
                return rename_some_file();
            case 4:
                return delete_some_file();
            case 5:
                return damage_some_object();
            case 6:
                return protect_some_folder_twice();
            case 7:
                return unprotect_some_folder_twice();
            case 8:
                return restore_some_chronel_twice();
            case 9:
            case 10:
                return take_restore_point_twice();
            default:
                return roll_back_twice();
        }
    }
};

TEST_P(Model, no_byte_is_lost_and_every_state_is_whole) {
    random.seed(static_cast<unsigned>(GetParam()));
    for (int count = 0; count < 5; ++count) {
        write_some_file();
    }
    protect_some_folder_twice();
    for (int count = 0; count < steps_of_a_seed && !HasFatalFailure(); ++count) {
        SCOPED_TRACE("step " + std::to_string(count));
        step();
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, Model, ::testing::Range(1, 1 + seeds()));

// Not a test by itself: the process that the others start, in which the service does one thing.
TEST(Victim, DISABLED_does_one_thing) {
    play_the_victim();
}

}  // namespace
}  // namespace ov::devservice
