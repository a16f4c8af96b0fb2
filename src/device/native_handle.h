#pragma once

namespace varda::device {

/// The system's own handle of an open device.
#ifdef _WIN32
using NativeHandle = void*;
#else
using NativeHandle = int;
#endif

} // namespace varda::device
