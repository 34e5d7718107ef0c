#pragma once

#include <rapidjson/encodedstream.h>
#include <rapidjson/memorystream.h>
#include <rapidjson/rapidjson.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "companions/orvdialog/chronels/chronel_list.h"

namespace ov::dialog {

/// Hears of each piece of a list text as the JSON parser comes to it, and notes the records. For `read` of
/// chronel_list.
///
/// RapidJSON reads here, since a list is the one text so long that its reading can be felt: 100,000 versions
/// take it half the time that the library of all other texts needs. It takes a lone half of a surrogate pair,
/// which the other refuses: such a record reads as empty.
class chronel_list_reader {
  public:
    explicit chronel_list_reader(chronel_list& list) : list_(list) {}

    /// Whether the text is a list; its records are then in the list. Throws std::bad_alloc only.
    [[nodiscard]] bool read(std::string_view text);

    // For the parser, whose names they bear (Handler of its reader): false ends the parsing.
    bool Null() noexcept { return other_value(); }
    bool Bool(bool) noexcept { return other_value(); }
    bool Int(int) noexcept { return other_value(); }
    bool Uint(unsigned value) noexcept { return Uint64(value); }
    bool Int64(std::int64_t) noexcept { return other_value(); }
    bool Uint64(std::uint64_t value) noexcept;
    bool Double(double) noexcept { return other_value(); }
    bool RawNumber(const char*, rapidjson::SizeType, bool) noexcept { return other_value(); }
    bool String(const char*, rapidjson::SizeType, bool) noexcept { return other_value(); }
    bool Key(const char* name, rapidjson::SizeType length, bool) noexcept;
    bool StartObject() noexcept;
    bool EndObject(rapidjson::SizeType);
    bool StartArray() noexcept;
    bool EndArray(rapidjson::SizeType) noexcept;

  private:
    using stream = rapidjson::EncodedInputStream<rapidjson::UTF8<>, rapidjson::MemoryStream>;
    enum class member { other, file_name, clone_file_name, type, time, created_on, size };

    [[nodiscard]] bool in_list() const noexcept { return list_level_ != 0 && level_ >= list_level_; }
    [[nodiscard]] bool in_record() const noexcept {
        return in_list() && in_record_ && level_ == list_level_ + 1;
    }
    bool enter() noexcept;
    bool other_value() noexcept;
    void note(std::optional<std::uint64_t> number) noexcept;

    chronel_list& list_;
    const stream* text_ = nullptr;  // tells how far the parser has come
    std::size_t level_ = 0;         // how many arrays and objects are open
    std::size_t list_level_ = 0;    // the level inside the array of records; 0: not in it
    bool has_array_ = false;
    bool in_record_ = false;
    bool chronels_follow_ = false;
    member member_ = member::other;

    // The record that is being read.
    std::size_t begin_ = 0;
    bool has_file_name_ = false;
    bool has_clone_file_name_ = false;
    bool has_type_ = false;
    std::optional<std::uint64_t> time_;
    std::optional<std::uint64_t> created_on_;
    std::optional<std::uint64_t> size_bytes_;
};

}  // namespace ov::dialog
