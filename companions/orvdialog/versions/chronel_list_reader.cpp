#include "companions/orvdialog/versions/chronel_list_reader.h"

namespace ov::dialog {

bool chronel_list_reader::enter() noexcept {
    ++level_;
    return level_ <= deepest_nesting;
}

/// A value that nobody counts with takes the place of one before it of the same name.
bool chronel_list_reader::other_value() noexcept {
    note(std::nullopt);
    return true;
}

bool chronel_list_reader::number_unsigned(std::uint64_t value) noexcept {
    note(value);
    return true;
}

void chronel_list_reader::note(std::optional<std::uint64_t> number) noexcept {
    chronels_follow_ = false;
    if (!in_record()) {
        return;
    }
    if (member_ == member::time) {
        time_ = number;
    } else if (member_ == member::created_on) {
        created_on_ = number;
    } else if (member_ == member::size) {
        size_bytes_ = number;
    }
}

bool chronel_list_reader::key(const std::string& name) noexcept {
    chronels_follow_ = level_ == 1 && list_level_ == 0 && name == "chronels";
    if (!in_record()) {
        return true;
    }
    member_ = member::other;
    if (name == "fileName") {
        has_file_name_ = true;
    } else if (name == "cloneFileName") {
        has_clone_file_name_ = true;
    } else if (name == "type") {
        has_type_ = true;
    } else if (name == "time") {
        member_ = member::time;
    } else if (name == "createdOn") {
        member_ = member::created_on;
    } else if (name == "size") {
        member_ = member::size;
    }
    return true;
}

bool chronel_list_reader::start_object(std::size_t) noexcept {
    note(std::nullopt);
    if (list_level_ != 0 && level_ == list_level_) {
        in_record_ = true;
        begin_ = reached_ - 1;
        has_file_name_ = has_clone_file_name_ = has_type_ = false;
        time_ = created_on_ = size_bytes_ = std::nullopt;
        member_ = member::other;
    }
    return enter();
}

bool chronel_list_reader::end_object() {
    if (in_record()) {
        in_record_ = false;
        if (has_file_name_ && has_clone_file_name_ && has_type_) {
            list_.entries_.push_back({static_cast<std::uint32_t>(begin_),
                                      static_cast<std::uint32_t>(reached_ - begin_),
                                      time_ ? time_ : created_on_, size_bytes_});
        }
    }
    --level_;
    return true;
}

bool chronel_list_reader::start_array(std::size_t) noexcept {
    const bool is_list = level_ == 0 || chronels_follow_;
    note(std::nullopt);
    if (is_list) {
        list_level_ = level_ + 1;
        has_array_ = true;
    }
    return enter();
}

bool chronel_list_reader::end_array() noexcept {
    if (level_ == list_level_) {
        list_level_ = 0;
    }
    --level_;
    return true;
}

}  // namespace ov::dialog
