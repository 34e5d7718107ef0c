#include "companions/orvdialog/chronels/chronel_order.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace ov::dialog {
namespace {

enum column { saved, size, kind, file_name };

constexpr const char* records = R"([{"fileName":"b10","cloneFileName":"0","type":"y","time":5,"size":30},)"
                                R"({"fileName":"a","cloneFileName":"1","type":"x","size":20},)"
                                R"({"fileName":"b9","cloneFileName":"2","type":"y","time":9,"size":10},)"
                                R"({"fileName":"B9","cloneFileName":"3","type":"x","time":5}])";

class ChronelOrder : public testing::Test {
  protected:
    [[nodiscard]] std::vector<std::size_t> places() const {
        std::vector<std::size_t> found;
        for (std::size_t row = 0; row < order.rows(); ++row) {
            found.push_back(order.place_of(row));
        }
        return found;
    }

    const dialog_texts texts{L"C:\\no such library.dll"};
    const chronel_list list = *chronel_list::read(records);
    chronel_order order{list, texts};
};

TEST_F(ChronelOrder, at_first_is_newest_first_and_unknown_times_last) {
    EXPECT_EQ(order.column(), saved);
    EXPECT_TRUE(order.is_descending());
    EXPECT_THAT(places(), testing::ElementsAre(2, 0, 3, 1));
}

TEST_F(ChronelOrder, oldest_first_is_the_other_way_round) {
    order.sort(saved, false);
    EXPECT_THAT(places(), testing::ElementsAre(1, 0, 3, 2));
}

TEST_F(ChronelOrder, sizes_are_compared_as_numbers) {
    order.sort(size, true);
    EXPECT_THAT(places(), testing::ElementsAre(0, 1, 2, 3));
}

TEST_F(ChronelOrder, equal_ones_keep_the_order_before) {
    order.sort(kind, false);
    EXPECT_THAT(places(), testing::ElementsAre(3, 1, 2, 0));
}

TEST_F(ChronelOrder, names_are_compared_as_people_do) {
    order.sort(file_name, false);
    EXPECT_THAT(places(), testing::ElementsAre(1, 2, 3, 0));
}

TEST_F(ChronelOrder, row_is_found_by_place) {
    EXPECT_EQ(order.row_of(2), 0U);
    EXPECT_EQ(order.row_of(1), 3U);
}

}  // namespace
}  // namespace ov::dialog
