#pragma once

namespace varda::window {

struct CommandLine;
class FrmVarda;

/// Does to a window that has just been shown what the command line wishes, as its user would by hand:
/// settings, Test and Open Port, the files, the mode.
void carryOut(const CommandLine& wishes, FrmVarda& window);

} // namespace varda::window
