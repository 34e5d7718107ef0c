#include "companions/orvdialog/chronels/chronel_order.h"

#include <windows.h>
#include <shlwapi.h>

#include <algorithm>
#include <map>
#include <numeric>

namespace ov::dialog {

namespace {

/// As Explorer sorts names: in the user's language, numbers by their value.
struct comes_before {
    bool operator()(const std::wstring& left, const std::wstring& right) const noexcept {
        return StrCmpLogicalW(left.c_str(), right.c_str()) < 0;
    }
};

}  // namespace

chronel_order::chronel_order(const chronel_list& list, const dialog_texts& texts)
    : list_(list), texts_(texts), places_(list.size()) {
    std::iota(places_.begin(), places_.end(), 0U);
    sort(saved_column, true);
}

void chronel_order::sort(int column, bool descending) {
    const std::vector<std::uint64_t> keys = keys_of(chronel_columns[column]);
    std::ranges::stable_sort(places_, [&](std::uint32_t left, std::uint32_t right) {
        return descending ? keys[left] > keys[right] : keys[left] < keys[right];
    });
    column_ = column;
    descending_ = descending;
}

std::size_t chronel_order::row_of(std::size_t place) const noexcept {
    return static_cast<std::size_t>(std::ranges::find(places_, place) - places_.begin());
}

std::vector<std::uint64_t> chronel_order::keys_of(const chronel_column& column) const {
    if (column.number == nullptr) {
        return ranks_of(column);
    }
    std::vector<std::uint64_t> keys(list_.size());
    for (std::size_t place = 0; place < keys.size(); ++place) {
        keys[place] = column.number(list_, place);
    }
    return keys;
}

/// Texts are compared once for each different one: of a hundred thousand versions few differ.
std::vector<std::uint64_t> chronel_order::ranks_of(const chronel_column& column) const {
    std::map<std::wstring, std::vector<std::uint32_t>, comes_before> places_by_text;
    for (std::size_t place = 0; place < list_.size(); ++place) {
        places_by_text[column.cell(list_, place, texts_)].push_back(static_cast<std::uint32_t>(place));
    }
    std::vector<std::uint64_t> ranks(list_.size());
    std::uint64_t rank = 0;
    for (const auto& [text, places] : places_by_text) {
        for (const std::uint32_t place : places) {
            ranks[place] = rank;
        }
        ++rank;
    }
    return ranks;
}

}  // namespace ov::dialog
