#include "window/bench/bench_fixture.h"

#include <algorithm>
#include <vector>

namespace varda::test {
namespace {

class BenchWindowTest : public BenchTest {
protected:
    BenchWindowTest() : BenchTest(Faults) {}
};

TEST(BenchButton, OpensAndClosesTheBenchAsF10Does) {
    DrivenWindow window;
    auto* const button = window.find<QAbstractButton>("openBench");
    EXPECT_EQ(button->text(), QStringLiteral("Bench"));
    EXPECT_FALSE(button->accessibleName().isEmpty());
    EXPECT_TRUE(button->toolTip().contains(QLatin1String("F10")));
    EXPECT_EQ(window.window().bench().window(), nullptr) << "not there until it is opened";
    button->click();
    auto* const bench = window.window().bench().window();
    EXPECT_TRUE(bench->isVisible());
    button->click();
    EXPECT_FALSE(bench->isVisible());
    QApplication::setActiveWindow(&window.window());
    QTest::keyClick(&window.window(), Qt::Key_F10);
    EXPECT_TRUE(bench->isVisible());
    EXPECT_TRUE(button->isChecked());
    QApplication::setActiveWindow(bench);
    QTest::keyClick(bench, Qt::Key_F10);
    EXPECT_FALSE(bench->isVisible());
    EXPECT_FALSE(button->isChecked());
}

TEST_F(BenchWindowTest, StandsBesideTheMainWindowWhichGoesOn) {
    EXPECT_TRUE(bench()->isWindow());
    EXPECT_FALSE(bench()->isModal());
    EXPECT_EQ(bench()->parentWidget(), nullptr);
    EXPECT_FALSE(bench()->testAttribute(Qt::WA_QuitOnClose)) << "the program ends with the main window";
    window.window().close();
    EXPECT_FALSE(bench()->isVisible());
}

/// Whole groups of controls are switched by the beginnings of their names.
TEST_F(BenchWindowTest, NoControlIsNamedAsOneOfTheField) {
    QStringList names = {QStringLiteral("openBench")};
    for (const QWidget* const control : bench()->findChildren<QWidget*>()) {
        names.append(control->objectName());
    }
    for (const QString& name : names) {
        for (const char* const prefix :
             {"cb", "txt", "chk", "opt", "cmd", "lst", "grid", "lbl", "tmr", "frm", "fra", "mnu", "dlg"}) {
            EXPECT_FALSE(name.startsWith(QLatin1String(prefix))) << name.toStdString();
        }
    }
}

TEST_F(BenchWindowTest, EveryTableAndFieldHasANameForScreenReaders) {
    for (const QTableView* const table : bench()->findChildren<QTableView*>()) {
        EXPECT_FALSE(table->accessibleName().isEmpty()) << table->objectName().toStdString();
    }
    for (const char* const name : {"benchTabs", "memoryKinds"}) {
        EXPECT_FALSE(find(name)->accessibleName().isEmpty()) << name;
    }
}

/// The application has a larger font, as other desktops have.
class LargerFont {
public:
    explicit LargerFont(double times) {
        QFont font = before_;
        font.setPointSizeF(font.pointSizeF() * times);
        QApplication::setFont(font);
    }
    LargerFont(const LargerFont&) = delete;
    LargerFont& operator=(const LargerFont&) = delete;
    ~LargerFont() { QApplication::setFont(before_); }

private:
    QFont before_ = QApplication::font();
};

class BenchScreenTest : public testing::WithParamInterface<double>,
                        private LargerFont,
                        public BenchWindowTest {
protected:
    BenchScreenTest() : LargerFont(GetParam()) {}

    /// Every button of the shown tab is where it can be pressed, with its whole caption, and upon no other.
    void expectButtonsWhole() {
        std::vector<QRect> places;
        for (const QAbstractButton* const button : bench()->findChildren<QAbstractButton*>()) {
            if (!button->isVisible() || button->text().isEmpty()) {
                continue;
            }
            const QRect place(button->mapTo(bench(), QPoint(0, 0)), button->size());
            const std::string name = button->objectName().toStdString();
            EXPECT_TRUE(bench()->rect().contains(place)) << name;
            EXPECT_GE(button->width(), button->fontMetrics().horizontalAdvance(button->text())) << name;
            for (const QRect& other : places) {
                EXPECT_FALSE(place.intersects(other)) << name;
            }
            places.push_back(place);
        }
    }
};

/// 1024 x 768, and that with all drawn larger by half.
TEST_P(BenchScreenTest, FitsASmallScreenWithNothingCutOff) {
    enter("faultText", "late=50..200,drop@3rd");
    press("faultsOn");
    auto* const tabs = find<QTabWidget>("benchTabs");
    for (const QSize size : {QSize(1016, 704), QSize(674, 448)}) {
        for (int tab = 0; tab < tabs->count(); ++tab) {
            tabs->setCurrentIndex(tab);
            bench()->resize(size);
            QCoreApplication::processEvents();
            EXPECT_EQ(bench()->size(), size) << tab;
            expectButtonsWhole();
        }
    }
}
INSTANTIATE_TEST_SUITE_P(Fonts, BenchScreenTest, testing::Values(1.0, 1.5, 1.75));

/// The main window is as large as without it, and takes no focus from the prescribed controls.
TEST(BenchButton, ChangesNothingOfTheMainWindow) {
    DrivenWindow window;
    EXPECT_EQ(window.window().size(), QSize(1024, 768));
    EXPECT_FALSE(window.find("faultBanner")->isVisible());
    EXPECT_TRUE(window.find("cbPort")->hasFocus());
    QWidget* last = window.find("cbPort");
    for (QWidget* next = last->nextInFocusChain(); next != window.find("cbPort");
         next = next->nextInFocusChain()) {
        if (next->objectName() == QLatin1String("openBench")) {
            EXPECT_EQ(last->objectName(), QStringLiteral("openTrace"));
        }
        last = next;
    }
}

} // namespace
} // namespace varda::test
