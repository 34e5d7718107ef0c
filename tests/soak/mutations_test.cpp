// Broken item ids, documents, replies and date texts, from fixed seeds, on eight threads at once; each buffer
// ends where a page begins that nobody may touch.

#include <gtest/gtest.h>
#include <shlobj.h>

#include <cstring>
#include <cwchar>
#include <random>
#include <string>
#include <vector>

#include "namespace/folder/orv_name_space.h"
#include "namespace/items/item_id.h"
#include "namespace/items/item_types.h"
#include "namespace/locations/location_document.h"
#include "ovufc/com/adopt.h"
#include "ovufc/exception.h"
#include "ovufc/noncopyable.h"
#include "ovufc/time/datetime.h"
#include "service/reply.h"
#include "service/reply_readers.h"
#include "testkit/process/module_attach.h"
#include "tests/fuzz/mutator.h"
#include "tests/soak/effort.h"
#include "tests/soak/threads.h"

namespace {

using namespace ov::name_space;
using ov::test::effort;
using ov::test::mutator;
using ov::test::on_threads;

constexpr unsigned threads = 8;

// Room for 64 KiB that ends at a page which nobody may touch: a reader that goes beyond ends the program.
class page_end : private ov::noncopyable {
  public:
    page_end() : base_(static_cast<char*>(VirtualAlloc(nullptr, room + page, MEM_RESERVE, PAGE_NOACCESS))) {
        VirtualAlloc(base_, room, MEM_COMMIT, PAGE_READWRITE);
    }
    ~page_end() { VirtualFree(base_, 0, MEM_RELEASE); }

    char* place(const void* bytes, std::size_t size) noexcept {
        return static_cast<char*>(std::memcpy(base_ + room - size, bytes, size));
    }

    static constexpr std::size_t room = std::size_t{64} * 1024;

  private:
    static constexpr std::size_t page = 4096;
    char* base_;
};

// An entry as a list holds it: exactly `cb` bytes and the terminator; the fields are what they should be, or
// nearly.
std::vector<std::byte> broken_entry(std::mt19937& random) {
    const auto one_of = [&](std::initializer_list<unsigned> values) {
        return values.begin()[random() % values.size()];
    };
    const unsigned cb =
        one_of({2, 4, 10, 11, 12, 13, 14, 15, 16, 40, 41, 500, static_cast<unsigned>(2 + random() % 600)});
    const unsigned fitting = cb >= 14 ? (cb - 14) / 2 : 0;
    const item_id_layout::header head{
        .cb = static_cast<std::uint16_t>(cb),
        .signature = static_cast<std::uint16_t>(random() % 8 == 0 ? random() : item_id_layout::own_signature),
        .type = static_cast<std::uint16_t>(
            one_of({0x1010, 0x5050, 0x6060, 0x7070, 0x3030, 0x2020, 0xFFFF, random() & 0xFFFF})),
        .index = static_cast<std::uint16_t>(random()),
        .length = static_cast<std::uint16_t>(
            one_of({fitting, fitting, fitting, 0, fitting + 1, fitting + 2, 0x7FFF, 0xFFFF}))};
    std::vector<std::byte> entry(std::max<std::size_t>(cb, sizeof head) + 2);
    for (std::byte& byte : entry) {
        byte = static_cast<std::byte>(random() % 4 == 0 ? 0 : random());
    }
    std::memcpy(entry.data(), &head, sizeof head);
    entry.resize(cb + 2);
    std::memset(entry.data() + cb, 0, 2);
    return entry;
}

// 1 when some answer contradicts what the entry says.
unsigned ask_about(orvNameSpace& folder, PCUITEMID_CHILD entry) {
    const bool own = is_own_item_id(entry);
    const std::uint16_t type = item_type_of(entry);
    const std::wstring name = item_name_of(entry);
    SFGAOF attributes = 0xFFFFFFFF;
    VARIANT value{};
    STRRET text{};
    bool right = own || (type == 0xFFFF && name.empty());
    right &= folder.GetAttributesOf(1, &entry, &attributes) == S_OK;
    right &= attributes == (type == 0x1010 || type == 0x5050 ? 0xF0800008U : 0U);
    const SHCOLUMNID type_key{{0x6A4F2C81, 0x0D3B, 0x4E97, {0xB2, 0xA6, 0x19, 0xC8, 0xE5, 0xF7, 0xD0, 0x34}},
                              2};
    right &=
        folder.GetDetailsEx(entry, &type_key, &value) == S_OK && value.vt == VT_UI2 && value.uiVal == type;
    const HRESULT named = folder.GetDisplayNameOf(entry, SHGDN_FORPARSING, &text);
    right &= name.empty() ? FAILED(named) : SUCCEEDED(named);
    if (SUCCEEDED(named)) {
        right &= std::wcscmp(text.pOleStr, name.c_str()) == 0;
        CoTaskMemFree(text.pOleStr);
    }
    return right ? 0 : 1;
}

TEST(Mutations, item_ids_are_answered_by_what_they_hold) {
    const auto folder = ov::com::adopt(ov::com::make_object<orvNameSpace>());
    const unsigned rounds = effort(5'000, 1'000'000) / threads;
    EXPECT_EQ(on_threads(threads, 0,
                         [&](unsigned number) {
                             std::mt19937 random(number + 1);
                             page_end end;
                             unsigned wrong = 0;
                             for (unsigned round = 0; round < rounds; ++round) {
                                 const auto entry = broken_entry(random);
                                 wrong +=
                                     ask_about(*folder.Get(), reinterpret_cast<PCUITEMID_CHILD>(
                                                                  end.place(entry.data(), entry.size())));
                             }
                             return wrong;
                         }),
              0U);
}

const std::vector<std::string> words{
    "null", "-2",  "1e999", "\"",   "\\",       "\\u0000",        "\\ud800",     "{",    "}",
    "[",    "]",   ",",     ":",    "\"data\"", "\"hardDrive\":", "\"google\":", "\xFF", "\xEF\xBB\xBF",
    "2021", "GMT", "PM",    "Thur", ".5",       "+02:00",         "Z",           "T"};

// Runs `read` over broken forms of `texts` on all threads; the sum of what it returns.
template <class Read>
unsigned read_broken(const std::vector<std::string>& texts, Read read) {
    const unsigned rounds = effort(2'000, 100'000) / threads;
    return on_threads(threads, 0, [&](unsigned number) {
        mutator broken(number + 1, texts, words);
        page_end end;
        unsigned wrong = 0;
        for (unsigned round = 0; round < rounds; ++round) {
            const std::string text = broken.next().substr(0, page_end::room);
            wrong += read(std::string_view(end.place(text.data(), text.size()), text.size())) ? 0 : 1;
        }
        return wrong;
    });
}

TEST(Mutations, documents_are_read_as_far_as_they_go) {
    EXPECT_EQ(
        read_broken(
            {R"({"hardDrive":{"folders":["C:\\a","C:\\Users\\[^\\\\]*\\Music\\"]},"mgmtCustom":["m"],"oneDrive":[1],)"
             R"("google":["g"],"boxSyn":[],"dropBox":[],"oneDriveBusiness":[]})"},
            [](std::string_view text) {
                const auto document = read_location_document(text);
                return document.user_folder_mask <= 255 && !document.ran_out_of_memory;
            }),
        0U);
}

TEST(Mutations, replies_are_read_as_far_as_they_go) {
    EXPECT_EQ(read_broken({R"({"statusCode":0,"data":{"protectedFolder":true,"uiLevel":"restricted"}})",
                           R"({"statusCode":-2,"data":{"lastTimestamp":132592587670000000}})"},
                          [](std::string_view text) {
                              const auto answer = ov::service::reply::parse(text.data(), text.size());
                              bool is_protected = false;
                              bool restricted = false;
                              const bool read =
                                  ov::service::read_folder_status(answer, is_protected, restricted);
                              (void)ov::service::read_last_timestamp(answer);
                              return !read || answer.status() == 0;
                          }),
              0U);
}

TEST(Mutations, date_texts_are_refused_or_read_the_same_again) {
    EXPECT_EQ(read_broken({"2021-03-04T05:06:07.5+02:00", "2021-03-04 05:06:07Z",
                           "Thu, 04 Mar 2021 05:06:07 GMT", "3/4/2021 5:06:07 PM"},
                          [](std::string_view text) {
                              const std::wstring wide(text.begin(), text.end());
                              ov::time::datetime_rfc1123 date;
                              try {
                                  date.datetime::parse(wide);
                              } catch (const ov::exception&) {
                                  try {
                                      date.parse(wide);
                                  } catch (const ov::exception&) {
                                      return date.value == 0;
                                  }
                              }
                              const std::wstring written = date.datetime::format(false, true);
                              ov::time::datetime_rfc1123 again;
                              if (!written.empty()) {
                                  again.datetime::parse(written);
                              }
                              return again.value / 10'000 == date.value / 10'000;
                          }),
              0U);
}

}  // namespace
