#include <QProcess>

#include <gtest/gtest.h>

namespace varda::test {
namespace {

/// How the program itself answers, its output led to this test.
struct Answer {
    int exitCode;
    QString output;
    QString errors;
};

Answer answerTo(const QStringList& arguments) {
    QProcess process;
    process.start(QStringLiteral(VARDA_PROGRAM), arguments);
    EXPECT_TRUE(process.waitForFinished(60'000));
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

TEST(PrintOnWindows, HelpAndVersionGoWhereTheOutputIsLed) {
    const Answer help = answerTo({QStringLiteral("--help")});
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_TRUE(help.output.contains(QLatin1String("--port"))) << help.output.toStdString();
    EXPECT_EQ(answerTo({QStringLiteral("--version")}).output, QStringLiteral("varda " VARDA_VERSION "\n"));
}

TEST(PrintOnWindows, WhatIsNotUnderstoodGoesWhereErrorsAreLed) {
    const Answer answer = answerTo({QStringLiteral("--no-such-option")});
    EXPECT_EQ(answer.exitCode, 2);
    EXPECT_TRUE(answer.errors.contains(QLatin1String("--no-such-option"))) << answer.errors.toStdString();
    EXPECT_EQ(answer.output, QString());
}

TEST(PrintOnWindows, NamesOutsideTheCodePageComeWhole) {
    const QString name = QString::fromUtf8("no such \xE6\xB8\xAC\xE5\xAE\x9A \xD0\x96.scn");
    EXPECT_TRUE(answerTo({name}).errors.contains(name));
}

} // namespace
} // namespace varda::test
