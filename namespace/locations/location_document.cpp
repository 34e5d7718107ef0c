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

std::array<const location_list*, 7> location_document::lists() const noexcept {
    return {&hard_drive, &mgmt_custom, &one_drive, &google, &box_syn, &drop_box, &one_drive_business};
}

bool location_document::is_complete() const noexcept {
    const auto all = lists();
    return std::all_of(all.begin(), all.end(), [](const auto* list) { return list->is_array; });
}

std::size_t location_document::entry_count() const noexcept {
    std::size_t count = 0;
    for (const auto* list : lists()) {
        count += list->names.size();
    }
    return count;
}

location_document read_location_document(std::string_view text) noexcept {
    if (text.empty()) {
        return unreadable_document();
    }
    try {
        location_document document;
        location_reader reader(document);
        if (!json::sax_parse(text.begin(), text.end(), &reader)) {
            return unreadable_document();
        }
        if (!document.hard_drive.is_array || document.hard_drive.is_broken) {
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
