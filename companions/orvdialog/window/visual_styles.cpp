#include "companions/orvdialog/window/visual_styles.h"

#include "companions/orvdialog/window/library_instance.h"

namespace ov::dialog {

namespace {

HANDLE make_context() noexcept {
    ACTCTXW context{};
    context.cbSize = sizeof context;
    context.dwFlags = ACTCTX_FLAG_HMODULE_VALID | ACTCTX_FLAG_RESOURCE_NAME_VALID;
    context.hModule = library_instance();
    context.lpResourceName = MAKEINTRESOURCEW(2);  // ISOLATIONAWARE_MANIFEST_RESOURCE_ID
    return CreateActCtxW(&context);
}

}  // namespace

visual_styles::visual_styles() noexcept
    : context_(make_context()),
      active_(context_ != INVALID_HANDLE_VALUE && ActivateActCtx(context_, &cookie_) != FALSE) {}

visual_styles::~visual_styles() {
    if (active_) {
        DeactivateActCtx(0, cookie_);
    }
    if (context_ != INVALID_HANDLE_VALUE) {
        ReleaseActCtx(context_);
    }
}

}  // namespace ov::dialog
