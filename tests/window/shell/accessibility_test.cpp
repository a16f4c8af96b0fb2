#include "support/window_test.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAccessible>
#include <QAction>
#include <QButtonGroup>
#include <QComboBox>
#include <QDialog>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QSet>
#include <QShortcut>
#include <QTabBar>
#include <QTabWidget>
#include <QTableView>
#include <QTableWidget>

#include <map>

namespace varda::test {
namespace {

constexpr int modeCount = 6;

std::string nameOf(const QWidget* control) {
    return control->objectName().isEmpty() ? control->metaObject()->className()
                                           : control->objectName().toStdString();
}

/// Whether a user operates this widget by itself: Qt's own parts of a bigger control do not count.
bool isControl(const QWidget* widget) {
    const QWidget* const parent = widget->parentWidget();
    const bool isPart = qobject_cast<const QComboBox*>(parent) != nullptr ||
                        qobject_cast<const QTabBar*>(parent) != nullptr ||
                        qobject_cast<const QHeaderView*>(widget) != nullptr ||
                        qobject_cast<const QTableView*>(parent) != nullptr || widget->isWindow() ||
                        widget->window() != parent->window();
    return !isPart && (qobject_cast<const QAbstractButton*>(widget) != nullptr ||
                       qobject_cast<const QComboBox*>(widget) != nullptr ||
                       qobject_cast<const QLineEdit*>(widget) != nullptr ||
                       qobject_cast<const QAbstractItemView*>(widget) != nullptr ||
                       qobject_cast<const QPlainTextEdit*>(widget) != nullptr ||
                       qobject_cast<const QTabBar*>(widget) != nullptr ||
                       qobject_cast<const QGroupBox*>(widget) != nullptr);
}

QList<QWidget*> controlsOf(const QWidget& window) {
    QList<QWidget*> controls;
    for (QWidget* const widget : window.findChildren<QWidget*>()) {
        if (widget->window() == &window && isControl(widget)) {
            controls.append(widget);
        }
    }
    return controls;
}

/// What a screen reader calls a control; a list is called by its label, for its own name is the text in it.
std::string spokenName(QWidget* control) {
    QAccessibleInterface* const accessible = QAccessible::queryAccessibleInterface(control);
    if (accessible == nullptr || qobject_cast<QComboBox*>(control) == nullptr) {
        return accessible != nullptr ? accessible->text(QAccessible::Name).toStdString() : std::string();
    }
    for (const auto& [label, relation] : accessible->relations(QAccessible::Label)) {
        if (std::string name = label->text(QAccessible::Name).toStdString(); !name.empty()) {
            return name;
        }
    }
    return {};
}

/// The controls that Tab reaches, in their order, from the focus on until it comes round.
QList<QWidget*> tabStops() {
    constexpr int limit = 300;
    QList<QWidget*> stops;
    for (int pressed = 0; pressed < limit; ++pressed) {
        QWidget* const focused = QApplication::focusWidget();
        if (focused == nullptr || stops.contains(focused)) {
            break;
        }
        stops.append(focused);
        QTest::keyClick(focused, Qt::Key_Tab);
    }
    return stops;
}

/// Whether an option of the same group is a tab stop, so that the arrow keys lead here.
bool isReachedByArrows(const QWidget* control, const QList<QWidget*>& stops) {
    const auto* const option = qobject_cast<const QRadioButton*>(control);
    return option != nullptr && std::ranges::any_of(stops, [option](const QWidget* stop) {
               const auto* const other = qobject_cast<const QRadioButton*>(stop);
               return other != nullptr && other->group() != nullptr && other->group() == option->group();
           });
}

class AccessibilityTest : public WindowTest {
protected:
    QWidget& window() { return driver.window(); }

    void chooseMode(int mode) { driver.click(("optMode_" + std::to_string(mode)).c_str()); }

    void expectNames(const QWidget& dialog, int atLeast) {
        const QList<QWidget*> controls = controlsOf(dialog);
        EXPECT_GE(controls.size(), atLeast);
        for (QWidget* const control : controls) {
            EXPECT_FALSE(spokenName(control).empty()) << nameOf(control);
        }
    }

    void expectAllReached(int mode) {
        driver.find("cbPort")->setFocus();
        const QList<QWidget*> stops = tabStops();
        for (QWidget* const control : controlsOf(window())) {
            const bool isOperable = control->isVisible() && control->isEnabled() &&
                                    qobject_cast<const QGroupBox*>(control) == nullptr;
            if (isOperable) {
                EXPECT_TRUE(stops.contains(control) || isReachedByArrows(control, stops))
                    << nameOf(control) << " in mode " << mode;
            }
        }
    }
};

TEST_F(AccessibilityTest, EveryControlHasANameForScreenReaders) {
    constexpr int fewestControls = 140;
    expectNames(window(), fewestControls);
}

TEST_F(AccessibilityTest, EveryControlOfTheDialogsHasAName) {
    driver.click("cmdAbout");
    expectNames(*driver.find("frmAbout"), 1);
    emit driver.find<QLabel>("homePageLink")->linkActivated({});
    expectNames(*driver.find("frmWebBrowser"), 1);
}

TEST_F(AccessibilityTest, EveryControlOfTheWordDialogHasAName) {
    driver.click("optMode_1");
    driver.click("optWrite_1");
    driver.choose("cbWRegister", "W");
    driver.choose("cbWRegAddress", "0000");
    driver.choose("cbWLength", "1");
    auto* const grid = driver.find<QTableWidget>("gridWriteData");
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, grid->visualItemRect(grid->item(0, 0)).center());
    expectNames(*driver.find("frmWriteWord"), 3);
}

TEST_F(AccessibilityTest, EveryLabelBelongsToAControlOrSaysSomethingByItself) {
    const QSet<QString> texts = {QStringLiteral("mixedReadCaption"), QStringLiteral("mixedWriteCaption"),
                                 QStringLiteral("monitorState"), QStringLiteral("openPort")};
    int buddies = 0;
    for (const QLabel* const label : window().findChildren<QLabel*>()) {
        buddies += label->buddy() != nullptr ? 1 : 0;
        const bool isText = label->text() == QLatin1String(".") || texts.contains(label->objectName());
        EXPECT_TRUE(label->buddy() != nullptr || isText || label->text().isEmpty())
            << nameOf(label) << ": " << label->text().toStdString();
    }
    EXPECT_GT(buddies, 40);
}

TEST_F(AccessibilityTest, NoCaptionHidesAShortcut) {
    for (const QAbstractButton* const button : window().findChildren<QAbstractButton*>()) {
        EXPECT_FALSE(button->text().contains(QLatin1Char('&'))) << nameOf(button);
        EXPECT_TRUE(button->shortcut().isEmpty()) << nameOf(button);
    }
    for (const QLabel* const label : window().findChildren<QLabel*>()) {
        EXPECT_FALSE(label->text().contains(QLatin1Char('&'))) << nameOf(label);
    }
}

TEST_F(AccessibilityTest, NoShortcutIsGivenTwice) {
    std::map<std::string, int> given;
    for (const QShortcut* const shortcut : window().findChildren<QShortcut*>()) {
        ++given[shortcut->key().toString().toStdString()];
    }
    for (const QAction* const action : window().findChildren<QAction*>()) {
        for (const QKeySequence& keys : action->shortcuts()) {
            ++given[keys.toString().toStdString()];
        }
    }
    EXPECT_EQ(given.size(), 11U); // F1, F5, F9, F10, Ctrl+1 .. Ctrl+6, and Return on the table of requests
    for (const auto& [keys, times] : given) {
        EXPECT_EQ(times, 1) << keys;
    }
}

TEST_F(AccessibilityTest, TabReachesEveryEnabledControlInEveryMode) {
    for (int mode = 0; mode < modeCount; ++mode) {
        chooseMode(mode);
        expectAllReached(mode);
    }
}

TEST_F(AccessibilityTest, TabReachesEveryEnabledControlWhileThePortIsOpen) {
    openLine();
    for (int mode = 0; mode < modeCount; ++mode) {
        chooseMode(mode);
        driver.find("cmdPortOpen")->setFocus();
        expectAllReached(mode);
    }
}

TEST_F(AccessibilityTest, ArrowKeysChooseTheMode) {
    driver.find("optMode_0")->setFocus();
    for (int mode = 1; mode < modeCount; ++mode) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
        EXPECT_EQ(nameOf(QApplication::focusWidget()), "optMode_" + std::to_string(mode));
        EXPECT_EQ(driver.find<QTabWidget>("tabMode")->currentIndex(), mode);
    }
}

TEST_F(AccessibilityTest, ArrowKeysChooseWithinEveryGroupOfOptions) {
    int groups = 0;
    for (int mode = 0; mode < modeCount; ++mode) {
        chooseMode(mode);
        for (const QButtonGroup* const group : window().findChildren<QButtonGroup*>()) {
            QAbstractButton* const option = group->checkedButton();
            if (option == nullptr || !option->isVisible() || !option->isEnabled() ||
                group->objectName() == QLatin1String("modeOptions")) {
                continue;
            }
            option->setFocus();
            QTest::keyClick(option, Qt::Key_Right);
            EXPECT_NE(group->checkedButton(), option) << nameOf(option);
            EXPECT_TRUE(group->checkedButton()->hasFocus()) << nameOf(option);
            QTest::keyClick(group->checkedButton(),
                            Qt::Key_Left); // another access may switch off a later group
            ++groups;
        }
    }
    EXPECT_EQ(groups, 5); // the access of four pages, and the value of a bit
}

} // namespace
} // namespace varda::test
