#pragma once

#include "support/pseudo_terminal.h"
#include "support/temporary_folder.h"
#include "window/shell/command_line.h"
#include "window/shell/program.h"

#include <QApplication>
#include <QCheckBox>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QTimer>

#include <chrono>
#include <functional>
#include <stdexcept>
#include <string>

namespace varda::test {

inline constexpr auto longEnough = std::chrono::seconds(60); // for an instrumented program on a busy machine

/// The program's own run in this process, where its window can be operated: it monitors a line into a log.
class OwnRun {
public:
    /// Has a burst come in, and the run ended as soon as it is listed, by what is done to the main window.
    /// @return what the program ends with, 1 where it does not end
    int untilEndedBy(const std::function<void(const QWidget& window)>& end) {
        window::CommandLine wishes;
        wishes.port = line_.path();
        wishes.open = true;
        wishes.mode = 5;
        QObject guard;
        QTimer::singleShot(0, &guard, [this, &end] { operate(end); });
        QTimer::singleShot(longEnough, &guard, [] { QApplication::exit(1); });
        return window::runProgram(wishes);
    }

    const PseudoTerminal& line() const { return line_; }
    const std::string& log() const { return log_; }

private:
    void operate(const std::function<void(const QWidget&)>& end) {
        auto* const monitor = find<QListView>("lstMonitor");
        find<QCheckBox>("chkMonLog")->setChecked(true);
        find<QLineEdit>("txtMonLogFile")->setText(QString::fromStdString(log_));
        find<QPushButton>("cmdMonStart")->click();
        line_.write({1, 2, 3});
        QObject::connect(&look_, &QTimer::timeout, &look_, [this, monitor, end] {
            if (monitor->model()->rowCount() > 0) {
                look_.stop();
                end(*monitor->window());
            }
        });
        look_.start(std::chrono::milliseconds(2));
    }

    template <typename Control>
    static Control* find(const char* name) {
        for (QWidget* const window : QApplication::topLevelWidgets()) {
            if (auto* const control = window->findChild<Control*>(QString::fromLatin1(name))) {
                return control;
            }
        }
        throw std::runtime_error(name);
    }

    const PseudoTerminal line_;
    const TemporaryFolder folder_;
    const std::string log_ = folder_.file("line.log");
    QTimer look_;
};

} // namespace varda::test
