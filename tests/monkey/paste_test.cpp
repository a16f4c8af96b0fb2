#include "support/driven_window.h"
#include "window/bench/bench_window.h"
#include "window/insight/insight_window.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QGuiApplication>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QTest>

#include <gtest/gtest.h>

#include <utility>

namespace varda::monkey {
/// A million characters in one field: whatever it makes of them, the window goes on.
class LongPaste : public testing::TestWithParam<const char*> {
protected:
    LongPaste() {
        window.click("openTrace");
        window.click("openBench");
        window.paste("cbPort", "COM1");
        window.click("cmdCommTest");
        window.click("cmdPortOpen");
        const QString text = QString::fromLatin1(GetParam());
        QGuiApplication::clipboard()->setText(text.repeated(1'000'000 / static_cast<int>(text.size())));
    }

    /// Pastes into every field of that kind that is to be seen. @return how many there are
    template <typename Field>
    int pasteEverywhere(const QWidget* top) {
        int count = 0;
        for (auto* const field : top->findChildren<Field*>()) {
            if (field->isVisible() && field->isEnabled()) {
                field->setFocus();
                QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
                QTest::keyClick(field, Qt::Key_V, Qt::ControlModifier);
                QTest::keyClick(field, Qt::Key_Return);
                closeBoxes();
                ++count;
            }
        }
        window.advance(1000);
        QCoreApplication::processEvents();
        return count;
    }
    int pasteEverywhere(const QWidget* top) {
        return pasteEverywhere<QLineEdit>(top) + pasteEverywhere<QPlainTextEdit>(top);
    }
    static void closeBoxes() {
        while (QWidget* const box = QApplication::activeModalWidget()) {
            box->close();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
    }
    /// A request is sent and answered as ever, on a page whose fields are filled anew.
    void expectWork() {
        closeBoxes();
        window.click("optMode_0");
        window.click("optRead_1");
        for (const auto& [field, text] : {std::pair{"txtRDA", "5"}, {"txtRSA", "0"}, {"txtRPeriod", "500"}}) {
            if (window.window().findChild<QWidget*>(QLatin1String(field)) != nullptr) {
                window.type(field, text);
            }
        }
        window.choose("cbRegister", 2);
        window.choose("cbRegAddress", 0);
        window.choose("cbRLength", 0);
        window.farEnd().takeWritten();
        window.click("cmdRDSend");
        EXPECT_EQ(window.farEnd().takeWritten().size(), 1U);
    }

    test::DrivenWindow window;
};

TEST_P(LongPaste, LeavesThePagesWorking) {
    int fields = 0;
    for (int page = 0; page < 6; ++page) {
        window.click("optMode_" + std::to_string(page));
        fields += pasteEverywhere(&window.window());
    }
    EXPECT_GT(fields, 40);
    expectWork();
}

TEST_P(LongPaste, LeavesTheTraceAndTheBenchWorking) {
    int fields = 0;
    for (QWidget* const top : {static_cast<QWidget*>(window.window().insight().window()),
                               static_cast<QWidget*>(window.window().bench().window())}) {
        auto* const tabs = top->findChild<QTabWidget*>();
        for (int tab = 0; tab < tabs->count(); ++tab) {
            tabs->setCurrentIndex(tab);
            fields += pasteEverywhere(top);
        }
    }
    EXPECT_GT(fields, 5);
    expectWork();
}

INSTANTIATE_TEST_SUITE_P(Texts, LongPaste, testing::Values("9", "W 0100 >= 10\n"));

} // namespace varda::monkey
