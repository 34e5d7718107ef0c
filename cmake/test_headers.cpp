// Precompiles what the test programs have in common: see orv_tests.cmake.
