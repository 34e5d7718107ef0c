#include "module/state/module_state.h"

namespace {

/// A test program that links the product's libraries stands in for the module: it records what the loader
/// would have told DllMain.
struct attach {
    attach() { ov::module_state::record_process_attach(GetModuleHandleW(nullptr)); }
};
[[maybe_unused]] const attach at_start;

}  // namespace
