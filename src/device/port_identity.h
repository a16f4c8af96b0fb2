#pragma once

#include <string>

namespace varda::device {

/// What the device behind a port's name is known by, also when it has been away and is back under another
/// node: what it tells of itself, or for a pseudo-terminal the link that leads there, which whoever makes it
/// makes anew. A pseudo-terminal has nothing else: its node may next belong to anybody, a window with a shell
/// for example.
/// @param name as deviceNode() takes it @param root where the system's folders are looked for, for tests
/// @return empty where nothing is known, or where several devices tell the same
std::string identityOfPort(const std::string& name, const std::string& root = {});

/// The name that opens the device of this identity now: `lastName` where that still leads there. Empty while
/// it is not there.
std::string nameOfDevice(const std::string& identity, const std::string& lastName,
                         const std::string& root = {});

} // namespace varda::device
