#pragma once

#include <QtGlobal>

namespace varda::test {

/// Whether the windows of the tests have their trace open from the beginning: with this in the environment
/// every test says whether it holds then, too.
inline bool isTraceWanted() { return qEnvironmentVariableIsSet("VARDA_TESTS_OPEN_THE_TRACE"); }

} // namespace varda::test
