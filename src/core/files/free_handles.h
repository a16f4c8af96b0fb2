#pragma once

namespace varda::inline core {

/// Makes sure that some more files can be opened, before something is begun that cannot do without: a file
/// dialog would end the whole program.
/// @throws RuntimeError 67 where they cannot; the description says what helps
void requireFreeHandles();

} // namespace varda::core
