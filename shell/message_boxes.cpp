#include "shell/message_boxes.h"

#include "module/state/module_state.h"
#include "ovufc/i18n/message_ids.h"

namespace ov::shell {

static_assert(static_cast<UINT>(box_style::question) == 0x50121);
static_assert(static_cast<UINT>(box_style::refusal) == 0x50030);
static_assert(static_cast<UINT>(box_style::failure) == 0x50010);
static_assert(static_cast<UINT>(box_style::result) == 0x50040);

int show_box(const std::wstring& text, box_style style) {
    const std::wstring caption = module_state::resource_strings.lookup(i18n::message_ids::product_title);
    return MessageBoxW(nullptr, text.c_str(), caption.c_str(), static_cast<UINT>(style));
}

bool confirmed(const std::wstring& text) {
    return show_box(text, box_style::question) == IDOK;
}

void show_failure() {
    show_box(module_state::resource_strings.lookup(i18n::message_ids::failure), box_style::failure);
}

}  // namespace ov::shell
