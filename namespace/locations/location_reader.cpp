#include "namespace/locations/location_reader.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "namespace/locations/user_folders.h"
#include "ovufc/json_bounded.h"
#include "service/text.h"

namespace ov::name_space {

namespace {

namespace locations = protocol::locations;

}  // namespace

location_reader::location_reader(location_document& document, std::size_t text_bytes) : document_(document) {
    auto block = std::make_shared_for_overwrite<wchar_t[]>(text_bytes);
    room_ = block.get();
    document_.characters = std::move(block);
}

location_list* location_reader::list_named(std::string_view name) noexcept {
    const auto* row = std::find_if(location_arrays.begin() + 1, location_arrays.end(),
                                   [=](const location_array& r) { return r.key == name; });
    return row != location_arrays.end() ? &document_.lists[row - location_arrays.begin()] : nullptr;
}

bool location_reader::key(std::string& name) {
    next_list_ = nullptr;
    hard_drive_is_next_ = false;
    if (depth_ == root_depth) {
        hard_drive_is_next_ = name == locations::hard_drive;
        next_list_ = list_named(name);
        if (hard_drive_is_next_) {
            forget_hard_drive();
        }
    } else if (in_hard_drive_ && depth_ == hard_drive_depth && name == locations::folders) {
        forget_hard_drive();
        next_list_ = &document_.local();
    }
    if (next_list_ != nullptr) {
        // Of a key given twice the last counts.
        *next_list_ = {};
    }
    return true;
}

bool location_reader::start_object(std::size_t) {
    if (hard_drive_is_next_) {
        in_hard_drive_ = true;
    }
    return enter();
}

bool location_reader::start_array(std::size_t) {
    location_list* const starting = next_list_;
    if (!enter()) {
        return false;
    }
    if (starting != nullptr) {
        starting->is_array = true;
        list_ = starting;
    }
    return true;
}

bool location_reader::string(std::string& value) {
    if (list_ == nullptr) {
        return other_value();
    }
    add(value);
    return true;
}

// A value that is not a string; as an entry of a list it breaks the list, which takes no more entries then.
bool location_reader::other_value() noexcept {
    if (list_ != nullptr) {
        list_->is_broken = true;
        list_ = nullptr;
    }
    next_list_ = nullptr;
    hard_drive_is_next_ = false;
    return true;
}

bool location_reader::enter() noexcept {
    other_value();
    if (depth_ == json_depth_limit) {
        return false;
    }
    ++depth_;
    return true;
}

bool location_reader::leave() noexcept {
    list_ = nullptr;  // an open list has no array or object open inside it, so it is the list that ends
    --depth_;
    if (depth_ == root_depth) {
        in_hard_drive_ = false;
    }
    return true;
}

void location_reader::forget_hard_drive() noexcept {
    document_.local() = {};
    document_.user_folder_mask = 0;
}

void location_reader::add(const std::string& value) {
    // A rule for a folder below the profiles is no item: the folders that we know of are shown by their
    // paths, the others not at all.
    if (list_ == &document_.local() && is_profile_rule(value)) {
        document_.user_folder_mask |= user_folder_bit_of_rule(value);
        return;
    }
    list_->names.push_back(service::from_utf8(value, room_));
    room_ += list_->names.back().size();
}

}  // namespace ov::name_space
