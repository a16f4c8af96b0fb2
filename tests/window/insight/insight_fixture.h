#pragma once

#include "core/base/bytes.h"
#include "core/insight/trace_words.h"
#include "core/protocol/independent_check.h"
#include "support/driven_window.h"
#include "support/event_loop.h"
#include "window/insight/insight_window.h"

#include <QAbstractButton>
#include <QAbstractItemModel>
#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QTabWidget>
#include <QTableView>
#include <QTest>

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace varda::test {

// A user's hands on the window of the trace, whatever drives the main window.

/// The control of that name. @throws std::runtime_error where there is none of that class
template <typename Control = QWidget>
Control* findIn(InsightWindow* trace, const char* name) {
    auto* const control = trace != nullptr ? trace->findChild<Control*>(QString::fromLatin1(name)) : nullptr;
    if (control == nullptr) {
        throw std::runtime_error(std::string("no such control of the trace: ") + name);
    }
    return control;
}

inline std::string cellText(const QAbstractItemView* view, int row, int column) {
    return view->model()->index(row, column).data().toString().toStdString();
}

inline std::string cellText(const QAbstractItemView* view, int row, TraceColumn column) {
    return cellText(view, row, static_cast<int>(column));
}

/// The main window and its trace on a clock and a line in the test's hands.
class InsightTest : public testing::Test {
protected:
    /// @param isOpen whether the trace is open from the beginning
    explicit InsightTest(bool isOpen = true) {
        if (isOpen) {
            openTrace();
        }
    }

    void openTrace() {
        if (trace() == nullptr || !trace()->isVisible()) {
            window.click("openTrace");
        }
        QApplication::setActiveWindow(trace());
    }
    /// A key of the trace's own, whichever window the desktop has made the active one meanwhile.
    void strike(QWidget* control, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QApplication::setActiveWindow(trace());
        QTest::keyClick(control, key, modifiers);
    }
    void closeTrace() { trace()->close(); }
    InsightWindow* trace() { return window.window().insight().window(); }

    template <typename Control = QWidget>
    Control* find(const char* name) {
        return findIn<Control>(trace(), name);
    }
    void showTab(int index) { find<QTabWidget>("insightTabs")->setCurrentIndex(index); }

    void openPort() {
        window.paste("cbPort", "COM1");
        window.click("cmdCommTest");
        window.click("cmdPortOpen");
    }
    void closePort() { window.click("cmdPortOpen"); }

    /// Chooses one word of the kind W on the read page.
    void chooseWord(int number, int count = 1) {
        window.click("optRead_1");
        window.choose("cbRegister", 6); // W
        window.choose("cbRegAddress", number);
        window.choose("cbRLength", count - 1);
    }
    void send() { window.click("cmdRDSend"); }
    /// Sends what is chosen, and has it answered.
    void exchange(const Bytes& answer) {
        send();
        window.advance(30);
        window.farEnd().deliver(answer);
        window.advance(300);
    }
    /// Lets the trace show what there is.
    void settle() { window.advance(300); }

    int rows() { return find<QTableView>("traceTable")->model()->rowCount(); }
    std::string cell(int row, TraceColumn column) {
        return cellText(find<QTableView>("traceTable"), row, column);
    }
    /// A column of all lines.
    std::vector<std::string> column(TraceColumn column) {
        std::vector<std::string> texts;
        for (int row = 0; row < rows(); ++row) {
            texts.push_back(cell(row, column));
        }
        return texts;
    }
    void choose(int row) {
        auto* const table = find<QTableView>("traceTable");
        const QModelIndex index = table->model()->index(row, 0);
        table->scrollTo(index);
        QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, table->visualRect(index).center());
    }
    void type(const char* field, const char* text) {
        find<QLineEdit>(field)->clear();
        QTest::keyClicks(find<QLineEdit>(field), QLatin1String(text));
    }
    void press(const char* button) { find<QAbstractButton>(button)->click(); }
    void run(const char* action) { find<QAction>(action)->trigger(); }
    std::string label(const char* name) { return find<QLabel>(name)->text().toStdString(); }
    static std::string clipboard() { return QGuiApplication::clipboard()->text().toStdString(); }

    /// Answers the file dialog of the trace.
    void chooseFile(const std::string& path) {
        auto* const dialog = find<QFileDialog>("QFileDialog");
        dialog->setOption(QFileDialog::DontConfirmOverwrite);
        dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(QString::fromStdString(path));
        QMetaObject::invokeMethod(dialog, "accept");
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    /// The message box on the trace; null where there is none.
    const QMessageBox* shownBox() {
        for (const QMessageBox* const box : trace()->findChildren<QMessageBox*>()) {
            if (box->isVisible()) {
                return box;
            }
        }
        return nullptr;
    }
    /// Its text; empty where there is none.
    std::string boxText() { return shownBox() != nullptr ? shownBox()->text().toStdString() : std::string(); }
    /// What stands below the text.
    std::string boxAdvice() {
        return shownBox() != nullptr ? shownBox()->informativeText().toStdString() : std::string();
    }

    const Bytes wordOne = checked({0xFF, 0xFF, 0xA3, 0x02, 0x34, 0x12});

    DrivenWindow window;
};

} // namespace varda::test
