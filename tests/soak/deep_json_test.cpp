// Texts that nest far deeper than any stack, on threads whose stacks are small: refused, and nothing else.

#include <gtest/gtest.h>

#include <string>

#include "namespace/locations/location_document.h"
#include "ovufc/json_bounded.h"
#include "service/calls.h"
#include "service/reply.h"
#include "service/reply_readers.h"
#include "testkit/process/module_attach.h"
#include "tests/soak/threads.h"

namespace {

using ov::test::on_threads;

struct deep_text {
    SIZE_T stack_bytes;
    std::size_t levels;
};

class DeepJson : public testing::TestWithParam<deep_text> {
  protected:
    [[nodiscard]] static std::string repeated(const char* piece, std::size_t times) {
        std::string text;
        for (; times != 0; --times) {
            text += piece;
        }
        return text;
    }

    // Where the nesting stands in each kind of text: arrays, objects, and arrays that are never closed.
    const std::vector<std::string> nested{
        repeated("[", GetParam().levels) + repeated("]", GetParam().levels),
        repeated(R"({"a":)", GetParam().levels) + "0" + repeated("}", GetParam().levels),
        repeated("[", GetParam().levels),
    };

    // How many of the texts were taken for something, on one thread of the given stack.
    template <class Reader>
    [[nodiscard]] unsigned taken(Reader reads) {
        return on_threads(1, GetParam().stack_bytes, [&](unsigned) {
            unsigned count = 0;
            for (const std::string& text : nested) {
                count += reads(text) ? 1 : 0;
            }
            return count;
        });
    }
};

TEST_P(DeepJson, reply_is_refused) {
    EXPECT_EQ(taken([](const std::string& text) {
                  const std::string whole = R"({"statusCode":0,"data":)" + text + "}";
                  const auto answer = ov::service::reply::parse(whole.data(), whole.size());
                  return SUCCEEDED(ov::service::read_outcome(answer)) ||
                         ov::service::read_file_path(answer).has_value();
              }),
              0U);
}

TEST_P(DeepJson, folder_list_is_refused) {
    EXPECT_EQ(taken([](const std::string& text) {
                  return !ov::service::read_restore_folders(R"({"restoreFolders":)" + text + "}").empty();
              }),
              0U);
}

TEST_P(DeepJson, locations_document_is_refused) {
    EXPECT_EQ(taken([](const std::string& text) {
                  const auto document = ov::name_space::read_location_document(
                      R"({"hardDrive":{"folders":["D:\\x"]},"google":)" + text + "}");
                  return document.user_folder_mask != 255 || document.local().is_array;
              }),
              0U);
}

TEST_P(DeepJson, chronel_identifier_raises_the_parse_error) {
    EXPECT_EQ(taken([](const std::string& text) {
                  try {
                      ov::service::restore_file_chronel(L"C:\\x", R"({"fileName":)" + text + "}");
                      return true;
                  } catch (const ov::json::parse_error&) {
                      return false;
                  }
              }),
              0U);
}

constexpr SIZE_T kib = 1024;
INSTANTIATE_TEST_SUITE_P(Stacks, DeepJson,
                         testing::Values(deep_text{64 * kib, 8'000}, deep_text{64 * kib, 100'000},
                                         deep_text{64 * kib, 1'000'000}, deep_text{256 * kib, 8'000},
                                         deep_text{256 * kib, 100'000}),
                         [](const auto& info) {
                             return std::to_string(info.param.stack_bytes / kib) + "KiB_" +
                                    std::to_string(info.param.levels) + "levels";
                         });

}  // namespace
