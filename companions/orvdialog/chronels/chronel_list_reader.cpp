#include "companions/orvdialog/chronels/chronel_list_reader.h"

#include <rapidjson/reader.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>

namespace ov::dialog {

namespace {

/// The parser's own allocator does not look at what it gets.
class throwing_allocator {
  public:
    static void* Malloc(std::size_t size_bytes) { return Realloc(nullptr, 0, size_bytes); }
    static void* Realloc(void* block, std::size_t, std::size_t size_bytes) {
        if (size_bytes == 0) {
            Free(block);
            return nullptr;
        }
        void* const grown = std::realloc(block, size_bytes);
        if (grown == nullptr) {
            throw std::bad_alloc();
        }
        return grown;
    }
    static void Free(void* block) noexcept { std::free(block); }
};

/// Most lists are: to look at all bytes first takes less than to look at each character as it is read.
bool is_ascii(std::string_view text) noexcept {
    std::uint64_t all = 0;
    std::size_t done = 0;
    for (; done + sizeof all <= text.size(); done += sizeof all) {
        std::uint64_t eight = 0;
        std::memcpy(&eight, text.data() + done, sizeof eight);
        all |= eight;
    }
    for (; done < text.size(); ++done) {
        all |= static_cast<unsigned char>(text[done]);
    }
    return (all & 0x8080'8080'8080'8080U) == 0;
}

}  // namespace

// Its recursion ends where `enter` says so.
bool chronel_list_reader::read(std::string_view text) {
    rapidjson::MemoryStream bytes(text.data(), text.size());
    stream decoded(bytes);
    text_ = &decoded;
    constexpr std::size_t usual_record_bytes = 128;
    list_.entries_.reserve(text.size() / usual_record_bytes);
    rapidjson::GenericReader<rapidjson::UTF8<>, rapidjson::UTF8<>, throwing_allocator> parser;
    const bool is_json = is_ascii(text)
                             ? !parser.Parse<rapidjson::kParseNoFlags>(decoded, *this).IsError()
                             : !parser.Parse<rapidjson::kParseValidateEncodingFlag>(decoded, *this).IsError();
    text_ = nullptr;
    // A NUL in the text is its end to the parser.
    return is_json && bytes.Tell() == text.size() && has_array_;
}

bool chronel_list_reader::enter() noexcept {
    ++level_;
    return level_ <= deepest_nesting;
}

/// A value that nobody counts with takes the place of one before it of the same name.
bool chronel_list_reader::other_value() noexcept {
    note(std::nullopt);
    return true;
}

bool chronel_list_reader::Uint64(std::uint64_t value) noexcept {
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

bool chronel_list_reader::Key(const char* text, rapidjson::SizeType length, bool) noexcept {
    const std::string_view name(text, length);
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

bool chronel_list_reader::StartObject() noexcept {
    note(std::nullopt);
    if (list_level_ != 0 && level_ == list_level_) {
        in_record_ = true;
        begin_ = text_->Tell() - 1;
        has_file_name_ = has_clone_file_name_ = has_type_ = false;
        time_ = created_on_ = size_bytes_ = std::nullopt;
        member_ = member::other;
    }
    return enter();
}

bool chronel_list_reader::EndObject(rapidjson::SizeType) {
    if (in_record()) {
        in_record_ = false;
        if (has_file_name_ && has_clone_file_name_ && has_type_) {
            list_.entries_.push_back({static_cast<std::uint32_t>(begin_),
                                      static_cast<std::uint32_t>(text_->Tell() - begin_),
                                      time_ ? time_ : created_on_, size_bytes_});
        }
    }
    --level_;
    return true;
}

bool chronel_list_reader::StartArray() noexcept {
    const bool is_list = level_ == 0 || chronels_follow_;
    note(std::nullopt);
    if (is_list) {
        list_level_ = level_ + 1;
        has_array_ = true;
    }
    return enter();
}

bool chronel_list_reader::EndArray(rapidjson::SizeType) noexcept {
    if (level_ == list_level_) {
        list_level_ = 0;
    }
    --level_;
    return true;
}

}  // namespace ov::dialog
