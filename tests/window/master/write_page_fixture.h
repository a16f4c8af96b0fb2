#pragma once

#include "core/protocol/crc16.h"
#include "support/window_test.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QHeaderView>
#include <QLineEdit>
#include <QTableWidget>
#include <QTest>

#include <span>

namespace varda::test {

class WritePageTest : public WindowTest {
protected:
    WritePageTest() { driver.click("optMode_1"); }

    void chooseBits(const char* kind, const char* number, const char* bit, const char* count) {
        driver.choose("cbWRegister", kind);
        driver.choose("cbWRegAddress", number);
        driver.choose("cbWRegBit", bit);
        driver.choose("cbWLength", count);
    }

    void chooseWords(const char* kind, const char* number, const char* count) {
        driver.click("optWrite_1");
        driver.choose("cbWRegister", kind);
        driver.choose("cbWRegAddress", number);
        driver.choose("cbWLength", count);
    }

    QTableWidget* grid() { return driver.find<QTableWidget>("gridWriteData"); }

    /// Clicks the cell of grid row and column, both counted from 1.
    void clickCell(int row, int column) {
        grid()->scrollToItem(grid()->item(row - 1, column - 1));
        const QRect cell = grid()->visualItemRect(grid()->item(row - 1, column - 1));
        QTest::mouseClick(grid()->viewport(), Qt::LeftButton, {}, cell.center());
    }

    std::string cell(int row, int column) { return grid()->item(row - 1, column - 1)->text().toStdString(); }
    std::uint8_t imageByte(std::size_t index) { return driver.window().images().write.byte(index); }
    std::string imageText(std::size_t index) { return driver.window().images().write.text(index); }

    QDialog* wordDialog() {
        auto* const dialog = driver.window().findChild<QDialog*>(QStringLiteral("frmWriteWord"));
        return dialog != nullptr && dialog->isVisible() ? dialog : nullptr;
    }

    QLineEdit* wordText() { return wordDialog()->findChild<QLineEdit*>(QStringLiteral("txtWordWrite")); }
    QCheckBox* wordHex() { return wordDialog()->findChild<QCheckBox*>(QStringLiteral("chkWWHex")); }

    /// Opens the dialog of a cell, types a value over the present one and presses Enter.
    void enterWord(int row, int column, const char* value, bool hexadecimal) {
        clickCell(row, column);
        ASSERT_NE(wordDialog(), nullptr);
        wordHex()->setChecked(hexadecimal);
        QTest::keyClicks(wordText(), QString::fromLatin1(value));
        QTest::keyClick(wordText(), Qt::Key_Return);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
};

} // namespace varda::test
