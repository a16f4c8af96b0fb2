#pragma once

#include "support/pseudo_terminal.h"
#include "support/window_driver.h"

#include <QCheckBox>

#include <string>

namespace varda::bench {

/// Opens the line and listens on it. @param log the file to log into; none where it is empty
inline void startMonitoring(test::WindowDriver& driver, const test::PseudoTerminal& line,
                            const std::string& log = {}) {
    driver.openPort(line.path());
    driver.click("optMode_5");
    if (!log.empty()) {
        driver.find<QCheckBox>("chkMonLog")->setChecked(true);
        driver.paste("txtMonLogFile", log);
    }
    driver.click("cmdMonStart");
}

} // namespace varda::bench
