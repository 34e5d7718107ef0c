// The reader of documents against the JSON library's tree of the same text.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "namespace/locations/location_document.h"
#include "namespace/locations/user_folders.h"
#include "ovufc/json_bounded.h"
#include "ovufc/json_members.h"
#include "ovufc/owned_json.h"
#include "service/text.h"

namespace {

using namespace ov::name_space;
using ov::json;

void expect(bool holds) {
    if (!holds) {
        std::abort();
    }
}

const json* array_of(const json& document, const location_array& row) {
    const json* found = ov::find_member(document, row.key);
    if (found != nullptr && row.key == ov::protocol::locations::hard_drive) {
        found = ov::find_member(*found, ov::protocol::locations::folders);
    }
    return found != nullptr && found->is_array() ? found : nullptr;
}

void compare_list(const location_list& read, const json* listed, bool is_local) {
    expect(read.is_array == (listed != nullptr));
    std::size_t count = 0;
    bool is_broken = false;
    for (const json& entry : listed == nullptr ? json::array() : *listed) {
        is_broken = !entry.is_string();
        if (is_broken) {
            break;
        }
        const auto& text = entry.get_ref<const std::string&>();
        if (is_local && is_profile_rule(text)) {
            continue;
        }
        expect(count < read.names.size() && read.names[count] == ov::service::from_utf8(text));
        ++count;
    }
    expect(count == read.names.size() && read.is_broken == is_broken);
}

std::uint32_t mask_of(const location_list& local, const json* listed) {
    if (!local.is_array || local.is_broken) {
        return user_folder_bits::all;
    }
    std::uint32_t mask = 0;
    for (const json& entry : *listed) {
        mask |= user_folder_bit_of_rule(entry.get_ref<const std::string&>());
    }
    return mask;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const location_document document = read_location_document(text);
    expect(!document.ran_out_of_memory);

    const ov::owned_json tree = ov::parse_bounded(text);
    if (tree.value.is_discarded()) {
        expect(!document.is_complete() && document.user_folder_mask == user_folder_bits::all);
        return 0;
    }
    for (std::size_t row = 0; row < location_arrays.size(); ++row) {
        compare_list(document.lists[row], array_of(tree.value, location_arrays[row]), row == 0);
    }
    expect(document.user_folder_mask ==
           mask_of(document.local(), array_of(tree.value, location_arrays.front())));
    return 0;
}
