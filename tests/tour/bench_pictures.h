#pragma once

#include "core/base/bytes.h"
#include "support/window_driver.h"
#include "tour/pictures.h"

#include <functional>

/// The stops of the tour at the bench: something to see on its tabs.
class BenchPictures {
public:
    BenchPictures(varda::test::WindowDriver& driver, Pictures& pictures)
        : driver_(driver), pictures_(pictures) {}

    // Each returns whether all was there, and the pictures were saved.

    /// Opens the bench, does faults for the time of two pictures, and ends them.
    bool faults();
    /// What became of the lines of a scenario.
    bool expectations();
    /// Answers a request that no pair does. @param ask sends it from the far end, and brings the answer
    bool controller(const std::function<varda::Bytes(const varda::Bytes& request)>& ask);
    /// What is wrong with the prepared pairs; closes the bench.
    bool pairs();

private:
    QWidget* bench();
    template <typename Control>
    Control* find(const char* name) {
        return bench()->findChild<Control*>(QString::fromLatin1(name));
    }
    void showTab(int tab);

    varda::test::WindowDriver& driver_;
    Pictures& pictures_;
};
