#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "companions/orvdialog/versions/chronel_list.h"
#include "ovufc/json.h"

namespace ov::dialog {

/// Hears of each piece of a list text as the JSON parser comes to it, and notes the records. For `read` of
/// chronel_list; the names and return values are the parser's (json_sax): false ends the parsing.
class chronel_list_reader {
  public:
    /// `reached`: how far into the text the parser has come.
    chronel_list_reader(chronel_list& list, const std::size_t& reached) : list_(list), reached_(reached) {}

    /// Whether the text held an array of records.
    [[nodiscard]] bool has_array() const noexcept { return has_array_; }

    bool null() noexcept { return other_value(); }
    bool boolean(bool) noexcept { return other_value(); }
    bool number_integer(std::int64_t) noexcept { return other_value(); }
    bool number_unsigned(std::uint64_t value) noexcept;
    bool number_float(double, const std::string&) noexcept { return other_value(); }
    bool string(const std::string&) noexcept { return other_value(); }
    bool binary(const json::binary_t&) noexcept { return other_value(); }
    bool key(const std::string& name) noexcept;
    bool start_object(std::size_t) noexcept;
    bool end_object();
    bool start_array(std::size_t) noexcept;
    bool end_array() noexcept;
    bool parse_error(std::size_t, const std::string&, const json::exception&) noexcept { return false; }

  private:
    enum class member { other, file_name, clone_file_name, type, time, created_on, size };

    [[nodiscard]] bool in_list() const noexcept { return list_level_ != 0 && level_ >= list_level_; }
    [[nodiscard]] bool in_record() const noexcept {
        return in_list() && in_record_ && level_ == list_level_ + 1;
    }
    bool enter() noexcept;
    bool other_value() noexcept;
    void note(std::optional<std::uint64_t> number) noexcept;

    chronel_list& list_;
    const std::size_t& reached_;
    std::size_t level_ = 0;       // how many arrays and objects are open
    std::size_t list_level_ = 0;  // the level inside the array of records; 0: not in it
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
