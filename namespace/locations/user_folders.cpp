#include "namespace/locations/user_folders.h"

#include <knownfolders.h>

#include <algorithm>

#include "ovufc/protocol/protected_locations.h"

namespace ov::name_space {

namespace {

constexpr std::string_view profile_prefix = protocol::locations::profile_rule;
static_assert(profile_prefix.size() == 16);

namespace bits = user_folder_bits;

constexpr std::array<user_folder, 8> table{{
    {bits::documents, R"(C:\Users\[^\\]*\Documents\)", &FOLDERID_Documents},
    {bits::desktop, R"(C:\Users\[^\\]*\Desktop\)", &FOLDERID_Desktop},
    {bits::pictures, R"(C:\Users\[^\\]*\Pictures\)", &FOLDERID_Pictures},
    {bits::objects_3d, R"(C:\Users\[^\\]*\3D Objects\)", &FOLDERID_Objects3D},
    {bits::contacts, R"(C:\Users\[^\\]*\Contacts\)", &FOLDERID_Contacts},
    {bits::music, R"(C:\Users\[^\\]*\Music\)", &FOLDERID_Music},
    {bits::saved_games, R"(C:\Users\[^\\]*\Saved Games\)", &FOLDERID_SavedGames},
    {bits::videos, R"(C:\Users\[^\\]*\Videos\)", &FOLDERID_Videos},
}};

constexpr char folded(char c) noexcept {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool equal_without_case(std::string_view a, std::string_view b) noexcept {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return folded(x) == folded(y); });
}

}  // namespace

const std::array<user_folder, 8>& user_folders() noexcept {
    return table;
}

std::uint32_t user_folder_bit_of_rule(std::string_view entry) noexcept {
    const auto* row = std::find_if(table.begin(), table.end(),
                                   [=](const auto& r) { return equal_without_case(entry, r.rule); });
    return row != table.end() ? row->bit : 0;
}

bool is_profile_rule(std::string_view entry) noexcept {
    return equal_without_case(entry.substr(0, profile_prefix.size()), profile_prefix);
}

}  // namespace ov::name_space
