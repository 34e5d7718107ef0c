#include "companions/orvdialog/chronel_list.h"

#include <windows.h>

#include <algorithm>

#include "ovufc/json.h"

namespace ov::dialog {

namespace {

std::wstring to_wide(std::string_view text) {
    const int size_bytes = static_cast<int>(text.size());
    const int length_chars = MultiByteToWideChar(CP_UTF8, 0, text.data(), size_bytes, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(std::max(length_chars, 0)), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), size_bytes, wide.data(), length_chars);
    return wide;
}

std::wstring in_words(const json& value) {
    return to_wide(value.is_string() ? value.get_ref<const std::string&>() : value.dump());
}

std::optional<std::uint64_t> number(const json& record, const char* name) {
    const auto member = record.find(name);
    if (member == record.end() || !member->is_number_unsigned()) {
        return std::nullopt;
    }
    return member->get<std::uint64_t>();
}

std::optional<chronel> read_record(const json& record) {
    const auto file_name = record.find("fileName");
    const auto type = record.find("type");
    if (file_name == record.end() || type == record.end() || !record.contains("cloneFileName")) {
        return std::nullopt;
    }
    const auto time = number(record, "time");
    return chronel{record.dump(), in_words(*file_name), in_words(*type),
                   time ? time : number(record, "createdOn"), number(record, "size")};
}

/// Takes each record out of the document as soon as it is complete and leaves nothing of the list in the
/// tree: a list of 20 MiB never stands in memory as a whole, and taking a record out, which searches its
/// array from the start, finds it first. Watches the depth, as copying and writing a tree recurse.
class list_reader {
  public:
    bool operator()(int depth, json::parse_event_t event, json& parsed) {
        const auto level = static_cast<std::size_t>(depth);
        switch (event) {
            case json::parse_event_t::array_start:
            case json::parse_event_t::object_start:
                if (level == 0) {
                    record_level_ = event == json::parse_event_t::array_start ? 1 : 2;
                }
                too_deep = too_deep || level >= deepest_nesting;
                return !too_deep;
            case json::parse_event_t::key:
                if (level == 1 && record_level_ == 2) {
                    in_chronels_ = parsed == "chronels";
                    return in_chronels_;
                }
                return true;
            case json::parse_event_t::array_end:
                has_array = has_array || (level + 1 == record_level_ && is_wanted());
                return level != record_level_;
            case json::parse_event_t::object_end:
                if (level == record_level_ && is_wanted()) {
                    take(parsed);
                }
                return level != record_level_;
            default:
                return level != record_level_;
        }
    }

    std::vector<chronel> chronels;
    bool has_array = false;
    bool too_deep = false;

  private:
    [[nodiscard]] bool is_wanted() const { return record_level_ == 1 || in_chronels_; }

    void take(const json& record) {
        if (auto read = read_record(record)) {
            chronels.push_back(std::move(*read));
        }
    }

    std::size_t record_level_ = 0;
    bool in_chronels_ = false;
};

}  // namespace

std::optional<std::vector<chronel>> read_chronel_list(std::string_view text) {
    list_reader reader;
    const json rest = json::parse(text, std::ref(reader), false);
    if (rest.is_discarded() || !reader.has_array || reader.too_deep) {
        return std::nullopt;
    }
    std::ranges::stable_sort(reader.chronels, std::ranges::greater(),
                             [](const chronel& item) { return item.time.value_or(0); });
    return std::move(reader.chronels);
}

}  // namespace ov::dialog
