#include "namespace/locations/location_document.h"

#include <algorithm>
#include <exception>

#include "namespace/locations/location_reader.h"
#include "namespace/locations/user_folders.h"

namespace ov::name_space {

namespace {

location_document unreadable_document() noexcept {
    location_document document;
    document.user_folder_mask = user_folder_bits::all;
    return document;
}

}  // namespace

bool location_document::is_complete() const noexcept {
    return std::all_of(lists.begin(), lists.end(), [](const location_list& list) { return list.is_array; });
}

std::size_t location_document::entry_count() const noexcept {
    std::size_t count = 0;
    for (const location_list& list : lists) {
        count += list.names.size();
    }
    return count;
}

location_document read_location_document(std::string_view text) noexcept {
    if (text.empty()) {
        return unreadable_document();
    }
    try {
        location_document document;
        location_reader reader(document, text.size());
        if (!json::sax_parse(text.begin(), text.end(), &reader)) {
            return unreadable_document();
        }
        if (!document.local().is_array || document.local().is_broken) {
            document.user_folder_mask = user_folder_bits::all;
        }
        return document;
    } catch (const std::exception&) {
        location_document document = unreadable_document();
        document.ran_out_of_memory = true;
        return document;
    }
}

}  // namespace ov::name_space
