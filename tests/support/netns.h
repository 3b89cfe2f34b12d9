#pragma once
// Whether the test process runs in a private network namespace of its own
// (set up by the test runner's main before any test).

namespace test_support {

bool private_network();

}  // namespace test_support
