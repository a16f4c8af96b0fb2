#include "window/shell/port_list.h"

#include "device/made_up_computer.h"
#include "support/window_test.h"

#include <QAbstractItemView>
#include <QCompleter>

namespace varda::test {
namespace {

using Texts = std::vector<std::string>;

class PortListTest : public WindowTest, protected MadeUpComputer {
protected:
    PortListTest() {
        ports->lookBy([this] { return device::portNames(root.string()); });
        plugIn("ttyUSB0", "1-2", "A10K");
        addStableName("usb-Maker-A10K", "ttyUSB0");
    }

    /// What the open list shows behind the twenty ports.
    Texts offers() {
        Texts texts;
        for (int row = 20; row < ports->count(); ++row) {
            texts.push_back(ports->itemData(row, Qt::DisplayRole).toString().toStdString());
        }
        return texts;
    }

    void open() {
        ports->setFocus();
        ports->showPopup();
    }

    void close() {
        ports->hidePopup();
        QCoreApplication::processEvents();
    }

    void choose(int row) {
        open();
        ports->view()->setCurrentIndex(ports->model()->index(row, 0));
        QTest::keyClick(ports->view(), Qt::Key_Return);
        QCoreApplication::processEvents();
    }

    std::string marked() { return ports->view()->currentIndex().data(Qt::EditRole).toString().toStdString(); }

    const Texts all = {"/dev/ttyUSB0 - USB Serial, Maker (serial number A10K)",
                       "/dev/serial/by-id/usb-Maker-A10K (now /dev/ttyUSB0)",
                       "VIRTUAL (the embedded controller)"};
    PortList* const ports = driver.find<PortList>("cbPort");
};

TEST_F(PortListTest, OffersTheRealPortsBehindTheTwentyWhileItIsOpen) {
    open();
    EXPECT_EQ(ports->itemText(0).toStdString(), "COM1");
    EXPECT_EQ(ports->itemText(19).toStdString(), "COM20");
    EXPECT_EQ(offers(), all);
    EXPECT_EQ(text("cbPort"), "COM1");
    close();
    EXPECT_EQ(ports->count(), 20);
    EXPECT_EQ(text("cbPort"), "COM1");
}

TEST_F(PortListTest, TakesTheNameOfTheChosenPortAlone) {
    choose(20);
    EXPECT_EQ(text("cbPort"), "/dev/ttyUSB0");
    EXPECT_EQ(ports->count(), 20);
    EXPECT_EQ(ports->currentIndex(), -1) << "none of the twenty";
    choose(21);
    EXPECT_EQ(text("cbPort"), "/dev/serial/by-id/usb-Maker-A10K");
    choose(22);
    EXPECT_EQ(text("cbPort"), "VIRTUAL");
    choose(6);
    EXPECT_EQ(text("cbPort"), "COM7");
    EXPECT_EQ(ports->currentIndex(), 6);
}

TEST_F(PortListTest, IsWideEnoughForWhatTheDevicesTell) {
    open();
    const QAbstractItemView* const view = ports->view();
    for (const std::string& offer : all) {
        EXPECT_GT(view->viewport()->width(),
                  view->fontMetrics().horizontalAdvance(QString::fromStdString(offer)));
    }
    EXPECT_GT(view->width(), ports->width());
    close();
}

TEST_F(PortListTest, LooksAgainWhileItIsOpen) {
    open();
    plugIn("ttyACM0", "1-3", "");
    EXPECT_TRUE(runUntil([this] { return offers().size() == 4; }));
    EXPECT_EQ(offers()[0], "/dev/ttyACM0 - USB Serial, Maker");
    unplug("ttyACM0", "1-3");
    EXPECT_TRUE(runUntil([this] { return offers() == all; }));
    EXPECT_TRUE(ports->view()->isVisible());
    EXPECT_EQ(text("cbPort"), "COM1");
    close();
    EXPECT_EQ(ports->count(), 20);
}

TEST_F(PortListTest, TheMarkStaysOnItsPortWhileOthersComeAndGo) {
    open();
    ports->view()->setCurrentIndex(ports->model()->index(20, 0));
    ASSERT_EQ(marked(), "/dev/ttyUSB0");
    plugIn("ttyACM0", "1-3", "");
    ASSERT_TRUE(runUntil([this] { return offers().size() == 4; }));
    EXPECT_EQ(marked(), "/dev/ttyUSB0");
    QTest::keyClick(ports->view(), Qt::Key_Return);
    QCoreApplication::processEvents();
    EXPECT_EQ(text("cbPort"), "/dev/ttyUSB0");
}

TEST_F(PortListTest, NothingIsMarkedOnceTheMarkedPortIsGone) {
    open();
    ports->view()->setCurrentIndex(ports->model()->index(20, 0));
    unplug("ttyUSB0", "1-2");
    ASSERT_TRUE(runUntil([this] { return offers().size() == 1; }));
    EXPECT_EQ(marked(), "");
    QTest::keyClick(ports->view(), Qt::Key_Return);
    QCoreApplication::processEvents();
    EXPECT_EQ(text("cbPort"), "COM1");
}

TEST_F(PortListTest, KeepsTypedTextWhereNothingIsChosen) {
    paste("cbPort", "/dev/pts/5");
    open();
    close();
    EXPECT_EQ(text("cbPort"), "/dev/pts/5");
}

TEST_F(PortListTest, OffersThePortsWhileTyping) {
    auto* const completer = ports->lineEdit()->completer();
    ASSERT_NE(completer, nullptr);
    driver.find("cbBaudRate")->setFocus();
    ports->setFocus(); // the ports are looked for when the list gets the focus
    completer->setCompletionPrefix(QStringLiteral("usb0"));
    ASSERT_EQ(completer->completionCount(), 1);
    EXPECT_EQ(completer->currentCompletion().toStdString(), "/dev/ttyUSB0");
    completer->setCompletionPrefix(QStringLiteral("virt"));
    EXPECT_EQ(completer->currentCompletion().toStdString(), "VIRTUAL");
}

TEST_F(PortListTest, AClickBesideTheOffersGoesToWhatItIsMeantFor) {
    driver.find("cbBaudRate")->setFocus();
    ports->setFocus();
    paste("cbPort", "");
    QTest::keyClicks(ports->lineEdit(), QStringLiteral("ttyUSB0"));
    QWidget* const offered = ports->lineEdit()->completer()->popup();
    ASSERT_TRUE(offered->isVisible()) << "a part of a name does not show what is offered";
    QWidget* const test = driver.find("cmdCommTest");
    const QPoint place = test->mapTo(&driver.window(), test->rect().center());
    QTest::mouseClick(driver.window().windowHandle(), Qt::LeftButton, {}, place); // as the system brings it
    EXPECT_FALSE(offered->isVisible());
    EXPECT_NE(driver.boxText(), "") << "the port was not tested";
    EXPECT_EQ(text("cbPort"), "ttyUSB0");
}

TEST_F(PortListTest, AClickOnAnOfferChoosesIt) {
    driver.find("cbBaudRate")->setFocus();
    ports->setFocus();
    paste("cbPort", "");
    QTest::keyClicks(ports->lineEdit(), QStringLiteral("virt"));
    auto* const offered = ports->lineEdit()->completer()->popup();
    ASSERT_TRUE(offered->isVisible());
    const QPoint first = offered->visualRect(offered->model()->index(0, 0)).center();
    QTest::mouseClick(offered->viewport(), Qt::LeftButton, {}, first);
    EXPECT_EQ(text("cbPort"), "VIRTUAL");
    EXPECT_FALSE(offered->isVisible());
}

} // namespace
} // namespace varda::test
