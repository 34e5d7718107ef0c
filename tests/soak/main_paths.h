#pragma once

#include <windows.h>

#include <cstdint>

#include "testkit/imports/import_patch.h"
#include "tests/module/menus/entry_menus/consent.h"
#include "tests/module/menus/file_menu/tracked_file_fixture.h"
#include "tests/soak/outcome.h"

namespace ov::test {

/// What people do with the product, each as one function from the class object to the last release; the user
/// says yes to everything. Each can be walked any number of times, and tells what it came to: "none" when
/// there was no object, the results of its steps otherwise, and "held" at the end when a selection or prompt
/// was kept.
class main_paths : public tracked_file_fixture {
  protected:
    main_paths();

    outcome right_click_on_a_folder();
    outcome dialog_of_a_tracked_file();
    outcome restore();
    outcome addons();
    outcome folder();

  private:
    import_patch<decltype(MessageBoxW)> boxes_;
    consent prompt_{module_.handle()};
    std::uint32_t generation_ = 0;
};

}  // namespace ov::test
