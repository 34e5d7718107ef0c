#pragma once

#include <gtest/gtest.h>

#include "module/state/module_state.h"
#include "testkit/process/shipped_module.h"
#include "testkit/imports/message_texts.h"
#include "testkit/process/module_attach.h"

namespace ov::test {

/// Tests that see message numbers for texts. The resource library built beside the program is loaded once.
class texts_fixture : public testing::Test {
  protected:
    static void SetUpTestSuite() { module_state::resource_strings.load(program_directory() + L"orvres.dll"); }

  private:
    message_texts texts_{GetModuleHandleW(nullptr)};
};

}  // namespace ov::test
