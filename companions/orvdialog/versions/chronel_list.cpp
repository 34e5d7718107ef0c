#include "companions/orvdialog/versions/chronel_list.h"

#include <windows.h>

#include <algorithm>
#include <iterator>

#include "companions/orvdialog/versions/chronel_list_reader.h"
#include "ovufc/json.h"
#include "ovufc/win/utf8.h"

namespace ov::dialog {

namespace {

/// A text's characters, counted as the parser takes them.
class counting_iterator {
  public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = const char&;

    counting_iterator(const char* at, std::size_t& count) : at_(at), count_(&count) {}
    const char& operator*() const noexcept { return *at_; }
    counting_iterator& operator++() noexcept {
        ++at_;
        ++*count_;
        return *this;
    }
    counting_iterator operator++(int) noexcept {
        counting_iterator former = *this;
        ++*this;
        return former;
    }
    bool operator==(const counting_iterator& other) const noexcept { return at_ == other.at_; }
    bool operator!=(const counting_iterator& other) const noexcept { return at_ != other.at_; }

  private:
    const char* at_;
    std::size_t* count_;
};

std::wstring to_wide(std::string_view text) {
    return win::from_utf8(text).value_or(std::wstring());
}

std::wstring in_words(const json& record, const char* name) {
    const auto member = record.find(name);
    if (member == record.end()) {
        return {};
    }
    return to_wide(member->is_string() ? member->get_ref<const std::string&>() : member->dump());
}

}  // namespace

std::optional<chronel_list> chronel_list::read(std::string_view text) {
    chronel_list list;
    list.text_ = text;
    std::size_t reached = 0;
    chronel_list_reader reader(list, reached);
    const char* const begin = text.data();
    const bool is_json = json::sax_parse(counting_iterator(begin, reached),
                                         counting_iterator(begin + text.size(), reached), &reader);
    if (!is_json || !reader.has_array()) {
        return std::nullopt;
    }
    return list;
}

chronel chronel_list::at(std::size_t place) const {
    const entry& wanted = entries_[place];
    const json record = json::parse(text_.substr(wanted.begin, wanted.length), nullptr, false);
    if (!record.is_object()) {
        return {};
    }
    return {record.dump(), in_words(record, "fileName"), in_words(record, "type")};
}

}  // namespace ov::dialog
