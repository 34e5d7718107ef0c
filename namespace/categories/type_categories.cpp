#include "namespace/categories/type_categories.h"

#include <algorithm>
#include <array>

#include "module/state/module_state.h"
#include "ovufc/i18n/message_ids.h"

namespace ov::name_space {

namespace {

namespace message_ids = i18n::message_ids;

struct category_row {
    std::uint32_t id;
    std::uint32_t name;
};

constexpr std::array<category_row, 4> rows{{
    {type_categories::folders, message_ids::category_folders},
    {type_categories::cloud, message_ids::category_cloud},
    {type_categories::restore, message_ids::category_restore},
    {type_categories::addons, message_ids::category_addons},
}};

const category_row* find(std::uint32_t id) noexcept {
    const auto* row = std::find_if(rows.begin(), rows.end(), [=](const auto& r) { return r.id == id; });
    return row != rows.end() ? row : nullptr;
}

}  // namespace

bool is_type_category(std::uint32_t id) noexcept {
    return find(id) != nullptr;
}

std::wstring type_category_name(std::uint32_t id) {
    const category_row* row = find(id);
    return row != nullptr ? module_state::resource_strings.lookup(row->name) : std::wstring();
}

}  // namespace ov::name_space
