#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "namespace/locations/location_document.h"
#include "ovufc/json.h"

namespace ov::name_space {

/// Fills a `location_document` while the JSON library walks the text: what a tree of the whole document would
/// cost in memory and time is never spent. Its members are what `json::sax_parse` calls; a false ends the
/// walk, and what was filled until then is worthless. Throws std::bad_alloc only.
///
/// The document must outlive the reader. One walk, one thread.
class location_reader {
  public:
    /// For a text of `text_bytes`.
    location_reader(location_document& document, std::size_t text_bytes);

    bool null() { return other_value(); }
    bool boolean(bool) { return other_value(); }
    bool number_integer(json::number_integer_t) { return other_value(); }
    bool number_unsigned(json::number_unsigned_t) { return other_value(); }
    bool number_float(json::number_float_t, const std::string&) { return other_value(); }
    bool binary(json::binary_t&) { return other_value(); }
    bool string(std::string& value);

    bool start_object(std::size_t);
    bool key(std::string& name);
    bool end_object() { return leave(); }
    bool start_array(std::size_t);
    bool end_array() { return leave(); }

    bool parse_error(std::size_t, const std::string&, const json::exception&) { return false; }

  private:
    // Where the members of the root object and of "hardDrive" stand.
    static constexpr std::size_t root_depth = 1;
    static constexpr std::size_t hard_drive_depth = 2;

    /// The list of a member of the root; "hardDrive" has its own deeper down.
    [[nodiscard]] location_list* list_named(std::string_view name) noexcept;
    bool other_value() noexcept;
    bool enter() noexcept;
    bool leave() noexcept;
    void forget_hard_drive() noexcept;
    void add(const std::string& value);

    // Where the walk stands. A key says nothing by itself: the same one deeper down, in an array or in
    // another object is not meant
    // (LocationDocument.hard_drive_of_a_wrong_type_or_missing_gives_all_user_folders).
    location_document& document_;
    // Where the next name goes. No name takes more room than its text with the quotation marks.
    wchar_t* room_;
    // How many arrays and objects are open; without a bound a text of brackets alone would go on for ever
    // (nesting_without_end_is_refused). A key at depth 1 is the root object's: arrays have no keys.
    std::size_t depth_ = 0;
    // The key just read is "hardDrive" of the root: whether its value is an object is not known yet.
    bool hard_drive_is_next_ = false;
    // Inside that object, as opposed to any other member of the root with "folders" in it
    // (folders_of_an_object_after_the_hard_drive_are_not_its_own).
    bool in_hard_drive_ = false;
    // The list that the key just read names, until its value has come; null for every other key.
    location_list* next_list_ = nullptr;
    // The list whose entries are being read: until its array ends, or an entry is not a string
    // (entry_that_is_no_string_breaks_its_array_there). So nothing inside such an entry is taken for one.
    location_list* list_ = nullptr;
};

}  // namespace ov::name_space
