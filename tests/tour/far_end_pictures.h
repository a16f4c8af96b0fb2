#pragma once

#include "core/base/bytes.h"
#include "support/pseudo_terminal.h"
#include "support/window_driver.h"
#include "tour/pictures.h"

#include <QString>

#include <string>

class BenchPictures;

/// The stops of the tour at which it is at the far end of a line itself.
class FarEndPictures {
public:
    FarEndPictures(varda::test::WindowDriver& driver, Pictures& pictures)
        : driver_(driver), pictures_(pictures) {}

    // Each returns whether all was right, and the pictures were saved.

    /// Opens the line, and asks a simulated controller as its master. @param bench shows what it has of that
    bool simulate(BenchPictures& bench);
    /// Listens to two bursts and keeps a log of them.
    bool monitor();
    /// The line goes away while it is open.
    bool unplug();

private:
    varda::Bytes ask(const varda::Bytes& request, std::size_t size);
    QString hear(const char* burst);
    bool showWhole(int row);
    bool picture(const char* name) { return pictures_.save(driver_.window(), name); }

    varda::test::WindowDriver& driver_;
    Pictures& pictures_;
    varda::test::PseudoTerminal line_;
    std::string openLine_;
};
