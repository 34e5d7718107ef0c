// Every reader of a reply, given any bytes as the reply.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "service/reply.h"
#include "service/reply_readers.h"

namespace {

void expect(bool holds) {
    if (!holds) {
        std::abort();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace ov::service;
    const auto* const bytes = reinterpret_cast<const char*>(data);
    const reply answer = reply::parse(bytes, size);

    const bool succeeded = answer.status() == 0 && answer.data() != nullptr;
    expect((read_outcome(answer) == S_OK) == succeeded);

    bool is_protected = false;
    bool restricted = false;
    const bool whole = read_folder_status(answer, is_protected, restricted);
    expect(succeeded || (!whole && !is_protected && !restricted));

    const auto path = read_file_path(answer);
    expect(!path || (succeeded && path->size() <= size && path->find(L'\0') == std::wstring::npos));

    std::int64_t created_on = -1;
    std::int64_t sequence_number = -1;
    const bool has_point = read_restore_point(answer, created_on, sequence_number);
    expect(has_point ? succeeded : created_on == -1 && sequence_number == -1);

    expect(!read_restore_refused(answer) || answer.status().has_value());
    expect(!read_last_timestamp(answer) || answer.data() != nullptr);

    for (const std::wstring& folder : read_restore_folders(std::string(bytes, size))) {
        expect(folder.size() <= size && folder.find(L'\0') == std::wstring::npos);
    }
    return 0;
}
