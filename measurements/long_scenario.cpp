// How long the window takes to load a long scenario and to show it, and for each edit of it.

#include "support/offscreen.h"
#include "support/temporary_folder.h"
#include "support/window_driver.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QListWidget>

#include <exception>
#include <functional>
#include <iostream>

namespace {

using varda::test::TemporaryFolder;
using varda::test::WindowDriver;

/// Until the window has shown what was done.
double milliseconds(const std::function<void()>& action) {
    QElapsedTimer timer;
    timer.start();
    action();
    QCoreApplication::processEvents();
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

std::string scenario(int lines, std::size_t length) {
    std::string line;
    while (line.size() < length) {
        line += "FF ";
    }
    std::string content = "[Information]\r\nTotal=" + std::to_string(lines) + "\r\n[Scenario]\r\n";
    for (int index = 0; index < lines; ++index) {
        content += "Scenario" + std::to_string(index) + "=" + line + "\r\n";
    }
    return content;
}

void measure(int lines, std::size_t length) {
    const TemporaryFolder folder;
    varda::test::writeBytes(folder.file("long.scn"), scenario(lines, length));
    WindowDriver driver;
    auto* const schedule = driver.find<QListWidget>("lstSchedule");
    driver.click("cmdLoadScenario");
    std::cout << lines << " lines of " << length << " characters:  load "
              << milliseconds([&] { driver.chooseFile(folder.file("long.scn")); });
    for (int edit = 0; edit < 3; ++edit) {
        std::cout << ", Add " << milliseconds([&] { driver.click("cmdAddScenario"); });
        std::cout << ", move " << milliseconds([&] { schedule->setCurrentRow(lines / 2); });
        std::cout << ", Del " << milliseconds([&] { driver.click("cmdDelScenario"); });
    }
    std::cout << " ms (" << schedule->count() << ")\n";
}

} // namespace

int main(int argc, char** argv) try {
    varda::test::preferOffscreen();
    const QApplication application(argc, argv);
    varda::window::prepareApplication();
    measure(1'000, 27);
    measure(100'000, 27);
    measure(4'000, 16'000);
    return 0;
} catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
