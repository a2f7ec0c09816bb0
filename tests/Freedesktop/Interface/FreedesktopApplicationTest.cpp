#include "Freedesktop/Interface/FreedesktopApplication.h"

#include "Freedesktop/Interface/SessionSupport.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QProcessEnvironment>
#include <QRegularExpression>

#include <gmock/gmock.h>

#include <csignal>

namespace marrowick {
namespace {

using testing::HasSubstr;
using testing::Not;

QString const busName = QStringLiteral("org.marrowick.Marrowick");

bool isNameOwned()
{
    return QDBusConnection::sessionBus().interface()->isServiceRegistered(busName);
}

QDBusMessage callToApplication(QString const& method)
{
    return QDBusMessage::createMethodCall(
        busName, QStringLiteral("/org/marrowick/Marrowick"), QStringLiteral("org.freedesktop.Application"), method);
}

class Program : public TestProcess {
public:
    explicit Program(QStringList const& arguments = {})
        : TestProcess(QStringLiteral(APPLICATION_PROGRAM), arguments)
    {
    }

    bool waitForOutput(std::string const& text)
    {
        return waitFor([&] { return output().find(text) != std::string::npos; });
    }

    void send(int signal) { ::kill(static_cast<pid_t>(process().processId()), signal); }

    int exitStatus() { return process().exitStatus() == QProcess::NormalExit ? process().exitCode() : -1; }
};

class FreedesktopApplicationTest : public testing::Test {
protected:
    ~FreedesktopApplicationTest() override
    {
        EXPECT_TRUE(waitFor([] { return !isNameOwned(); }));
        for (char const* variable : { "DISPLAY", "DBUS_SESSION_BUS_ADDRESS" })
            qputenv(variable, environment_.value(QLatin1String(variable)).toUtf8());
        qunsetenv("DESKTOP_STARTUP_ID");
    }

private:
    QProcessEnvironment environment_ = QProcessEnvironment::systemEnvironment();
};

TEST_F(FreedesktopApplicationTest, FirstStartOwnsTheNameBeforeItLaunches)
{
    Program program;
    ASSERT_TRUE(program.waitForOutput("launched"));
    EXPECT_TRUE(isNameOwned());
}

TEST_F(FreedesktopApplicationTest, SecondStartAsksTheFirstToReopenAndEnds)
{
    Program first;
    ASSERT_TRUE(first.waitForOutput("handler set"));
    Program second;
    ASSERT_TRUE(second.waitForEnd());
    EXPECT_EQ(second.exitStatus(), 0);
    EXPECT_THAT(second.output(), HasSubstr("not the first"));
    EXPECT_THAT(second.output(), Not(HasSubstr("launched")));
    EXPECT_TRUE(first.waitForOutput("reopened by event 2 with flags 0"));
}

TEST_F(FreedesktopApplicationTest, ModifiersHeldAtASecondStartDoNotCount)
{
    Program first;
    ASSERT_TRUE(first.waitForOutput("handler set"));
    HeldKey const shift(QStringLiteral("Shift_L"));
    Program second;
    ASSERT_TRUE(second.waitForEnd());
    EXPECT_TRUE(first.waitForOutput("reopened by event 2 with flags 0"));
}

TEST_F(FreedesktopApplicationTest, ReopeningAskedForBeforeTheHandlerIsSetIsKept)
{
    Program first({ QStringLiteral("late-handler") });
    ASSERT_TRUE(first.waitForOutput("launched"));
    Program second;
    ASSERT_TRUE(second.waitForEnd());
    ASSERT_TRUE(first.waitForOutput("handler set"));
    EXPECT_TRUE(first.waitForOutput("reopened by event 2"));
}

TEST_F(FreedesktopApplicationTest, TheNameIsFreeAgainAfterACrash)
{
    Program first;
    ASSERT_TRUE(first.waitForOutput("launched"));
    first.kill();
    Program second;
    EXPECT_TRUE(second.waitForOutput("launched"));
}

TEST_F(FreedesktopApplicationTest, AnInstanceThatHangsIsWaitedForOnlyForAWhile)
{
    Program first;
    ASSERT_TRUE(first.waitForOutput("handler set"));
    first.send(SIGSTOP);
    Program second;
    ASSERT_TRUE(second.waitForEnd());
    EXPECT_EQ(second.exitStatus(), 0);
    EXPECT_THAT(second.output(), HasSubstr("Marrowick: the program runs already but does not answer"));
    first.send(SIGCONT);
    EXPECT_TRUE(first.waitForOutput("reopened"));
}

TEST_F(FreedesktopApplicationTest, EveryMethodOfTheStandardInterfaceAnswers)
{
    Program first;
    ASSERT_TRUE(first.waitForOutput("handler set"));
    auto open = callToApplication(QStringLiteral("Open"));
    open << QStringList { QStringLiteral("file:///etc/hosts") } << QVariantMap();
    auto action = callToApplication(QStringLiteral("ActivateAction"));
    action << QStringLiteral("unknown") << QVariantList() << QVariantMap();
    for (auto const& message : { open, action }) {
        auto const answer = QDBusConnection::sessionBus().call(message);
        EXPECT_EQ(answer.type(), QDBusMessage::ReplyMessage) << answer.errorMessage().toStdString();
    }
    EXPECT_TRUE(first.waitForOutput("reopened by event 2"));
}

TEST_F(FreedesktopApplicationTest, SignalsQuitWithStatusZero)
{
    for (int const signal : { SIGTERM, SIGINT, SIGHUP }) {
        Program program;
        ASSERT_TRUE(program.waitForOutput("handler set"));
        program.send(signal);
        ASSERT_TRUE(program.waitForEnd()) << signal;
        EXPECT_EQ(program.exitStatus(), 0) << signal;
        EXPECT_THAT(program.output(), HasSubstr("ended"));
        EXPECT_FALSE(isNameOwned());
    }
}

TEST_F(FreedesktopApplicationTest, ABrokenPipeDoesNotEndTheProgramAndStartedProgramsInheritNothing)
{
    qputenv("DESKTOP_STARTUP_ID", "from-a-launcher");
    Program program({ QStringLiteral("start-child") });
    ASSERT_TRUE(program.waitForEnd());
    EXPECT_EQ(program.exitStatus(), 0);
    EXPECT_THAT(program.output(), testing::ContainsRegex("SigIgn:\t0000000000000000"));
    EXPECT_THAT(program.output(), testing::ContainsRegex("SigCgt:\t0000000000000000"));
    EXPECT_THAT(program.output(), HasSubstr("variables:\n"));
}

TEST_F(FreedesktopApplicationTest, WithoutASessionBusItRunsAndSaysSoOnce)
{
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus");
    Program program;
    ASSERT_TRUE(program.waitForOutput("handler set"));
    auto const& output = program.output();
    auto const line = output.find("Marrowick: there is no session bus");
    ASSERT_NE(line, std::string::npos) << output;
    EXPECT_EQ(output.find("session bus", output.find('\n', line)), std::string::npos) << output;
    program.send(SIGTERM);
    ASSERT_TRUE(program.waitForEnd());
    EXPECT_EQ(program.exitStatus(), 0);
}

TEST_F(FreedesktopApplicationTest, WithoutADisplayItEndsWithStatusOneAndOneLine)
{
    for (char const* display : { "", ":987" }) {
        qputenv("DISPLAY", display);
        Program program;
        ASSERT_TRUE(program.waitForEnd());
        EXPECT_EQ(program.exitStatus(), 1);
        EXPECT_EQ(program.output(), "Marrowick: there is no display that can be reached\n");
    }
}

TEST_F(FreedesktopApplicationTest, OnlyClientOfAnXServerConnectsAndEndsWithTheServer)
{
    // Without "-noreset" the server starts over whenever its last client has left.
    TestProcess server(QStringLiteral("Xvfb"),
        { QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-nolisten"), QStringLiteral("tcp") });
    QRegularExpression const number(QStringLiteral("^(\\d+)\n"), QRegularExpression::MultilineOption);
    auto const told = [&] { return number.match(QString::fromStdString(server.output())); };
    ASSERT_TRUE(waitFor([&] { return told().hasMatch(); }));
    qputenv("DISPLAY", ":" + told().captured(1).toLatin1());
    Program program;
    ASSERT_TRUE(program.waitForOutput("handler set")) << program.output();
    server.process().terminate();
    ASSERT_TRUE(program.waitForEnd());
    EXPECT_EQ(program.process().exitStatus(), QProcess::NormalExit) << program.output();
    EXPECT_FALSE(isNameOwned());
}

TEST_F(FreedesktopApplicationTest, SignalsEndAnAlertWithItsLastButtonAndThenTheProgram)
{
    for (int const signal : { SIGTERM, SIGINT, SIGHUP }) {
        Program program({ QStringLiteral("alert") });
        ASSERT_TRUE(program.waitForOutput("asked"));
        program.send(signal);
        ASSERT_TRUE(program.waitForEnd()) << signal;
        EXPECT_EQ(program.exitStatus(), 0) << signal;
        // The second question is not shown any more.
        EXPECT_THAT(program.output(), HasSubstr("asked\nanswer 1\nanswer 1\nended"));
    }
}

TEST_F(FreedesktopApplicationTest, ASecondStartWhileAnAlertIsUpIsNotKeptForLater)
{
    Program first({ QStringLiteral("alert") });
    ASSERT_TRUE(first.waitForOutput("asked"));
    Program second;
    ASSERT_TRUE(second.waitForEnd());
    EXPECT_EQ(second.exitStatus(), 0);
    auto const escapeUntil = [&](std::string const& text) {
        return waitFor([&] {
            xdotool(QStringLiteral("key Escape"));
            return first.output().find(text) != std::string::npos;
        });
    };
    EXPECT_TRUE(escapeUntil("answer 1\nasked\nanswer 1"));
    EXPECT_THAT(first.output(), Not(HasSubstr("reopened")));
    Program third;
    ASSERT_TRUE(third.waitForEnd());
    EXPECT_TRUE(first.waitForOutput("reopened by event 2"));
    EXPECT_EQ(first.output().find("reopened"), first.output().rfind("reopened"));
}

TEST_F(FreedesktopApplicationTest, TheEndOfTheDisplayEndsAnAlertAndTheProgram)
{
    TestProcess server(QStringLiteral("Xvfb"),
        { QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-nolisten"), QStringLiteral("tcp") });
    QRegularExpression const number(QStringLiteral("^(\\d+)\n"), QRegularExpression::MultilineOption);
    auto const told = [&] { return number.match(QString::fromStdString(server.output())); };
    ASSERT_TRUE(waitFor([&] { return told().hasMatch(); }));
    qputenv("DISPLAY", ":" + told().captured(1).toLatin1());
    Program program({ QStringLiteral("alert") });
    ASSERT_TRUE(program.waitForOutput("asked")) << program.output();
    server.process().terminate();
    ASSERT_TRUE(program.waitForEnd());
    EXPECT_EQ(program.process().exitStatus(), QProcess::NormalExit) << program.output();
    EXPECT_THAT(program.output(), Not(HasSubstr("answer 0")));
    EXPECT_FALSE(isNameOwned());
}

}
}
