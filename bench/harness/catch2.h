#pragma once

/// The harness: Catch2, of which the measuring is used. Include this header, never the library's own.
// There is no signal handling for this target, and no colour in a file.
#define CATCH_CONFIG_ENABLE_BENCHMARKING
#define CATCH_CONFIG_NO_POSIX_SIGNALS
#define CATCH_CONFIG_NO_WINDOWS_SEH
#define CATCH_CONFIG_COLOUR_NONE
#include <catch2/catch.hpp>
