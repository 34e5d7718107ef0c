#include "companions/orvdialog/chronels/chronel_list.h"

#include <windows.h>

#include "companions/orvdialog/chronels/chronel_list_reader.h"
#include "ovufc/json.h"
#include "ovufc/win/utf8.h"

namespace ov::dialog {

namespace {

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
    if (!chronel_list_reader(list).read(text)) {
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
