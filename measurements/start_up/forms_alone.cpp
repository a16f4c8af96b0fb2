#include "ui_frmVarda.h"
#include "ui_mixed_read_page.h"
#include "ui_mixed_write_page.h"
#include "ui_monitor_page.h"
#include "ui_port_corner.h"
#include "ui_read_page.h"
#include "ui_scenario_panel.h"
#include "ui_simulation_page.h"
#include "ui_write_page.h"

#include <QApplication>
#include <QMainWindow>
#include <QTabWidget>

namespace {

namespace ui = varda::window::Ui;

template <typename Form>
QWidget* made(QWidget* parent = nullptr) {
    auto* const widget = new QWidget(parent);
    Form().setupUi(widget);
    return widget;
}

template <typename... Pages>
void fill(QTabWidget& tabs) {
    tabs.clear();
    (tabs.addTab(made<Pages>(), QStringLiteral("A page")), ...);
}

} // namespace

/// What the controls of the program's window take as their forms make them, without a line of the program.
int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QMainWindow window;
    ui::FrmVarda form;
    form.setupUi(&window);
    fill<ui::ReadPage, ui::WritePage, ui::MixedReadPage, ui::MixedWritePage, ui::SimulationPage,
         ui::MonitorPage>(*form.tabMode);
    made<ui::ScenarioPanel>(&window);
    made<ui::PortCorner>(&window);
    window.resize(1000, 700);
    window.show();
    return QApplication::exec();
}
