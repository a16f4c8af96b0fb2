#include "support/window_test.h"
#include "window/shell/manual.h"

#include <QFile>
#include <QShortcut>

namespace varda::test {
namespace {

class HelpPagesTest : public WindowTest {};

TEST_F(HelpPagesTest, HeldKeyStartsOneViewer) {
    for (const QShortcut* const shortcut : driver.window().findChildren<QShortcut*>()) {
        EXPECT_TRUE(!shortcut->autoRepeat() || shortcut->parent() != &driver.window())
            << shortcut->key().toString().toStdString();
    }
}

TEST_F(HelpPagesTest, NumbersOfThePagesAreThoseOfTheManual) {
    QFile project(QStringLiteral(VARDA_SOURCE_FOLDER "/docs/help/varda.hhp"));
    ASSERT_TRUE(project.open(QIODevice::ReadOnly));
    const std::string text = project.readAll().toStdString();
    for (const ManualPage& page :
         {manual_page::start, manual_page::read, manual_page::write, manual_page::mixedRead,
          manual_page::mixedWrite, manual_page::simulation, manual_page::monitoring, manual_page::scenario,
          manual_page::files, manual_page::troubleshooting, manual_page::trace, manual_page::ports,
          manual_page::bench}) {
        const std::string number = ' ' + std::to_string(page.number) + '\n';
        const std::size_t end = text.find(number);
        ASSERT_NE(end, std::string::npos) << page.name;
        const std::size_t begin = text.rfind(' ', end - 1) + 1;
        const std::string alias = text.substr(begin, end - begin) + '=' + std::string(page.name) + '\n';
        EXPECT_NE(text.find('\n' + alias), std::string::npos) << alias;
    }
}

} // namespace
} // namespace varda::test
