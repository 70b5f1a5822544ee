// Every test program starts here: offscreen windows, and the user's configuration and
// data folders pointed at a temporary folder so that no test touches a real home.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <cstdlib>

#ifdef STEWARD_TEST_WITHOUT_WINDOWS
#include <QGuiApplication>
using TestApplication = QGuiApplication;
#else
#include <QApplication>
using TestApplication = QApplication;
#endif

int main(int argc, char** argv)
{
    QTemporaryDir home;
    const QByteArray root = home.path().toLocal8Bit();
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    setenv("XDG_CONFIG_HOME", (root + "/config").constData(), 1);
    setenv("XDG_DATA_HOME", (root + "/data").constData(), 1);
    setenv("XDG_RUNTIME_DIR", (root + "/runtime").constData(), 1);
    setenv("HOME", (root + "/home").constData(), 1);
    QDir().mkpath(home.path() + QStringLiteral("/runtime"));
    // The runtime folder is the user's alone, as Qt expects of it.
    QFile::setPermissions(home.path() + QStringLiteral("/runtime"),
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    QDir().mkpath(home.path() + QStringLiteral("/home"));

    TestApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
