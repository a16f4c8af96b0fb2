#pragma once

#include "core/protocol/single_requests.h"
#include "support/window_test.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QComboBox>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QTest>

namespace varda::test {

class ReadPageTest : public WindowTest {
protected:
    void chooseBits(const char* kind, const char* number, const char* bit, const char* count) {
        driver.choose("cbRegister", kind);
        driver.choose("cbRegAddress", number);
        driver.choose("cbRegBit", bit);
        driver.choose("cbRLength", count);
    }

    void chooseWords(const char* kind, const char* number, const char* count) {
        driver.click("optRead_1");
        driver.choose("cbRegister", kind);
        driver.choose("cbRegAddress", number);
        driver.choose("cbRLength", count);
    }

    /// Changes a field's text without its handlers, so that a later event can be seen to run them.
    void setSilently(const char* field, const char* text) {
        auto* const edit = driver.find<QLineEdit>(field);
        const QSignalBlocker silent(edit);
        edit->setText(QString::fromLatin1(text));
    }

    void setListSilently(const char* list, const char* text) {
        auto* const box = driver.find<QComboBox>(list);
        const QSignalBlocker silent(box);
        box->setEditText(QString::fromLatin1(text));
    }

    std::uint8_t imageByte(std::size_t index) { return driver.window().images().read.byte(index); }
    std::string imageText(std::size_t index) { return driver.window().images().read.text(index); }
};

} // namespace varda::test
