#include "companions/devservice/files/path.h"
#include "tests/unit/companions/devservice/vault_fixture.h"

namespace ov::devservice {
namespace {

class RestoreCalls : public vault_fixture {};

TEST_F(RestoreCalls, points_are_listed_newest_first) {
    EXPECT_EQ(call(service_call::get_restore_points, json::object()).at("data").at("restorePoints"),
              json::array());
    protect_user_folder();
    const json first = take_point();
    const json second = take_point();
    const json points = call(service_call::get_restore_points, json::object()).at("data").at("restorePoints");
    ASSERT_EQ(points.size(), 2u);
    EXPECT_EQ(points[0], second);
    EXPECT_EQ(points[1], first);
    EXPECT_TRUE(points[0].at("createdOn").is_number_integer());
    EXPECT_GT(points[0].at("createdOn"), 130'000'000'000'000'000) << "a file time of this century";
}

TEST_F(RestoreCalls, list_of_many_points_fits_what_clients_read) {
    protect_user_folder();
    json newest;
    for (int count = 0; count < 40; ++count) {
        newest = take_point();
    }
    const json reply = call(service_call::get_restore_points, json::object());
    EXPECT_EQ(status_of_reply(reply), 0);
    EXPECT_LE(reply.dump().size(), 2048u);
    EXPECT_EQ(reply.at("data").at("restorePoints").at(0), newest);
}

TEST_F(RestoreCalls, first_copy_is_no_restore_point) {
    protect_user_folder();
    EXPECT_TRUE(
        call(service_call::get_restore_points, json::object()).at("data").at("restorePoints").empty());
}

TEST_F(RestoreCalls, folders_of_a_point_are_those_it_would_restore) {
    protect_user_folder();
    json parameters = take_point();
    parameters["tempFolder"] = temp_utf8;
    EXPECT_EQ(json::parse(handed_over(call(service_call::get_restore_folders, parameters))),
              (json{{"restoreFolders", {user_utf8}}}));
    static_cast<void>(call(service_call::unprotect_folder, {{"folderName", user_utf8}}));
    EXPECT_EQ(json::parse(handed_over(call(service_call::get_restore_folders, parameters))),
              (json{{"restoreFolders", json::array()}}));
}

TEST_F(RestoreCalls, point_is_known_by_both_its_numbers) {
    protect_user_folder();
    json parameters = take_point();
    parameters["tempFolder"] = temp_utf8;
    json other = parameters;
    other["createdOn"] = parameters["createdOn"].get<std::int64_t>() + 1;
    EXPECT_EQ(status_of_reply(call(service_call::get_restore_folders, other)), 4);
    EXPECT_EQ(status_of_reply(call(service_call::restore_from_point, other)), 4);
    other = parameters;
    other["sequenceNumber"] = 1;  // the first copy's
    EXPECT_EQ(status_of_reply(call(service_call::restore_from_point, other)), 4);
    other["sequenceNumber"] = "1";
    EXPECT_EQ(status_of_reply(call(service_call::restore_from_point, other)), 1);
}

TEST_F(RestoreCalls, last_timestamp_is_that_of_the_newest_copy) {
    EXPECT_EQ(status_of_reply(call(service_call::get_last_timestamp, json::object())), 0);
    protect_user_folder();
    const json point = take_point();
    const json reply = call(service_call::get_last_timestamp, json::object());
    EXPECT_EQ(status_of_reply(reply), -2);
    EXPECT_EQ(reply.at("data").at("lastTimestamp"), point.at("createdOn"));
}

}  // namespace
}  // namespace ov::devservice
