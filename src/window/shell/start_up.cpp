#include "window/shell/start_up.h"

#include "window/shell/command_line.h"
#include "window/shell/frmVarda.h"
#include "window/system/file_name.h"

#include <QAbstractButton>

#include <initializer_list>
#include <utility>

namespace varda::window {
namespace {

/// Does nothing where the button is off, as Open Port is after a test that failed.
void click(const FrmVarda& window, const QString& name) {
    if (auto* const button = window.findChild<QAbstractButton*>(name)) {
        button->click();
    }
}

void choosePort(const CommandLine& wishes, FrmVarda& window) {
    const std::initializer_list<std::pair<const char*, const std::optional<std::string>&>> lists = {
        {"cbPort", wishes.port},
        {"cbBaudRate", wishes.baudRate},
        {"cbDataBit", wishes.dataBits},
        {"cbStopBit", wishes.stopBits},
        {"cbParityBit", wishes.parity}};
    for (const auto& [list, text] : lists) {
        if (text) {
            window.form().setText(list, *text);
        }
    }
    if (wishes.open) {
        click(window, QStringLiteral("cmdCommTest"));
        click(window, QStringLiteral("cmdPortOpen"));
    }
}

void loadFiles(const CommandLine& wishes, const FileLoader& loader) {
    QStringList paths;
    for (const std::string& file : wishes.files) {
        paths.append(shownName(file));
    }
    if (wishes.scenario) {
        loader.loadScenario(shownName(*wishes.scenario));
    }
    loader.load(paths);
    if (wishes.packets) {
        loader.loadPackets(shownName(*wishes.packets));
    }
}

} // namespace

void carryOut(const CommandLine& wishes, FrmVarda& window) {
    choosePort(wishes, window);
    loadFiles(wishes, window.fileLoader());
    if (wishes.mode) { // behind Open Port: entering a mode with an open port switches its Send on
        click(window, QStringLiteral("optMode_%1").arg(*wishes.mode));
    }
}

} // namespace varda::window
