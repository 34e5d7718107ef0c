#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "ovufc/json_bounded.h"
#include "service/reply_readers.h"
#include "service/text.h"
#include "testkit/process/throw_count.h"
#include "tests/fuzz/mutator.h"

/// Broken replies and files against every reader. Each reader must end, throw nothing, leave alone what it
/// did not read, and come to the same answer as the same reading written with the library's throwing
/// accessors.
namespace {

using namespace ov::service;  // the readers under test
using ov::json;
using ov::test::mutator;
using ov::test::throws_so_far;

constexpr int rounds = 10000;

const std::vector<std::string> words = {"null",
                                        "true",
                                        "0",
                                        "-2",
                                        "0.9",
                                        "-1e-3",
                                        "12345678901234567890",
                                        "1e300",
                                        "1e999",
                                        "\"",
                                        "\\",
                                        "\\u0000",
                                        "\\ud800",
                                        "{",
                                        "}",
                                        "[",
                                        "]",
                                        ",",
                                        ":",
                                        "{}",
                                        "[]",
                                        "\"data\"",
                                        "\"statusCode\"",
                                        "\"objPath\"",
                                        "\"restricted\"",
                                        std::string(1, '\0'),
                                        "\xFF",
                                        "\xEF\xBB\xBF",
                                        "\xC3\xA9",
                                        std::string(300, '['),
                                        "\"data\":",
                                        "\"statusCode\":0,"};

const std::vector<std::string> replies = {
    R"({"statusCode":0,"data":{"protectedFolder":true,"uiLevel":"restricted"}})",
    R"({"statusCode":0,"data":{"protectedFolder":false}})",
    R"({"data":{"objPath":"C:\\Users\\u\\AppData\\Local\\Temp\\orv1.tmp"},"statusCode":0})",
    R"({"statusCode":0,"data":{"restorePoints":[{"createdOn":132539328000000000,"sequenceNumber":3},{"createdOn":1}]}})",
    R"({"statusCode":-2,"data":{"lastTimestamp":132539328000000000}})",
    R"({"statusCode":5,"data":null})",
};

const std::vector<std::string> files = {
    R"({"restoreFolders":["C:\\Users\\u\\Documents","D:\\data","\u00e9"],"more":{"a":[1,2,{"b":null}]}})",
    R"({"restoreFolders":[]})",
};

/// What the library makes of the reply; throws as it does. Deeper texts than ours are left out by the caller.
json parsed(const std::string& text) {
    return json::parse(text.substr(0, text.find('\0')));
}

/// Whether the library converts it to a signed 64-bit integer: it does not say what becomes of larger
/// fractions.
bool is_convertible(const json& value) {
    return value.is_number_integer() ||
           (value.is_number_float() && value.get<double>() < 0x1p63 && value.get<double>() >= -0x1p63);
}

bool is_status(const json& reply, std::int64_t wanted) {
    const json& status = reply.at("statusCode");
    return is_convertible(status) && status.get<std::int64_t>() == wanted;
}

/// The value of `read`, or `failure` when it throws.
template <class Value>
Value or_else(Value failure, const std::function<Value()>& read) {
    try {
        return read();
    } catch (const json::exception&) {
        return failure;
    }
}

class ReplyFuzz : public testing::Test {
  protected:
    /// Each text that both sides should read alike: the library has no bound for nesting, ours has.
    template <class Check>
    static void for_each_text(std::uint64_t seed, const std::vector<std::string>& good, Check&& check) {
        mutator texts(seed, good, words);
        int compared = 0;
        for (int round = 0; round != rounds && !HasFailure(); ++round) {
            const std::string text = texts.next();
            SCOPED_TRACE(text);
            check(text);
            compared += 1;
        }
        EXPECT_EQ(compared, rounds);
    }

    template <class Read>
    static auto without_throwing(Read&& read) {
        const auto before = throws_so_far();
        auto value = read();
        EXPECT_EQ(throws_so_far(), before);
        return value;
    }
};

bool nests_deeply(const std::string& text) {
    return text.find(std::string(200, '[')) != std::string::npos;
}

TEST_F(ReplyFuzz, outcome_is_the_librarys_reading) {
    for_each_text(1, replies, [](const std::string& text) {
        const bool ok =
            without_throwing([&] { return read_outcome(reply::parse(text.data(), text.size())) == S_OK; });
        if (!nests_deeply(text)) {
            EXPECT_EQ(ok, or_else<bool>(false, [&] {
                          const json document = parsed(text);
                          static_cast<void>(document.at("data"));
                          return is_status(document, 0);
                      }));
        }
    });
}

TEST_F(ReplyFuzz, folder_status_is_the_librarys_reading) {
    for_each_text(2, replies, [](const std::string& text) {
        bool is_protected = false;
        bool restricted = false;
        const bool read = without_throwing([&] {
            return read_folder_status(reply::parse(text.data(), text.size()), is_protected, restricted);
        });
        EXPECT_TRUE(read || !restricted);
        if (!nests_deeply(text)) {
            EXPECT_EQ(is_protected, or_else<bool>(false, [&] {
                          const json document = parsed(text);
                          const json& data = document.at("data");
                          return is_status(document, 0) && data.at("protectedFolder").get<bool>();
                      }));
        }
    });
}

TEST_F(ReplyFuzz, file_path_is_the_librarys_reading) {
    for_each_text(3, replies, [](const std::string& text) {
        const std::optional<std::wstring> path =
            without_throwing([&] { return read_file_path(reply::parse(text.data(), text.size())); });
        if (!nests_deeply(text)) {
            using found_path = std::optional<std::wstring>;
            EXPECT_EQ(
                path, or_else<found_path>(std::nullopt, [&] {
                    const json document = parsed(text);
                    return is_status(document, 0)
                               ? found_path(from_utf8(document.at("data").at("objPath").get<std::string>()))
                               : std::nullopt;
                }));
        }
    });
}

TEST_F(ReplyFuzz, numbers_are_read_whole_or_not_at_all) {
    for_each_text(4, replies, [](const std::string& text) {
        std::int64_t createdOn = 11;
        std::int64_t sequenceNumber = 22;
        const bool found = without_throwing([&] {
            return read_restore_point(reply::parse(text.data(), text.size()), createdOn, sequenceNumber);
        });
        EXPECT_TRUE(found || (createdOn == 11 && sequenceNumber == 22));
        const auto timestamp =
            without_throwing([&] { return read_last_timestamp(reply::parse(text.data(), text.size())); });
        EXPECT_FALSE(found && timestamp);
        if (!nests_deeply(text)) {
            EXPECT_EQ(timestamp.has_value(), or_else<bool>(false, [&] {
                          const json document = parsed(text);
                          const json& value = document.at("data").at("lastTimestamp");
                          return is_status(document, -2) && is_convertible(value);
                      }));
        }
    });
}

TEST_F(ReplyFuzz, refusal_is_the_librarys_reading) {
    for_each_text(5, replies, [](const std::string& text) {
        const bool refused =
            without_throwing([&] { return read_restore_refused(reply::parse(text.data(), text.size())); });
        if (!nests_deeply(text)) {
            EXPECT_EQ(refused, or_else<bool>(false, [&] {
                          const json document = parsed(text);
                          return document.at("statusCode").is_number() && !is_status(document, 0);
                      }));
        }
    });
}

TEST_F(ReplyFuzz, restore_folders_are_the_librarys_reading) {
    for_each_text(6, files, [](const std::string& text) {
        const auto folders = without_throwing([&] { return read_restore_folders(text); });
        if (!nests_deeply(text)) {
            using folder_list = std::vector<std::wstring>;
            EXPECT_EQ(folders, or_else<folder_list>({}, [&] {
                          folder_list expected;
                          const json document = json::parse(text);
                          const json& listed = document.at("restoreFolders");
                          for (const auto& path : listed.get_ref<const json::array_t&>()) {
                              expected.push_back(from_utf8(path.get_ref<const std::string&>()));
                          }
                          return expected;
                      }));
        }
    });
}

}  // namespace
