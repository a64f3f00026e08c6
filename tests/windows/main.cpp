// The windows' tests: an application on the offscreen platform, with settings of its own.
#include "platform/qt/platformqt.h"

#include <QApplication>
#include <QTemporaryDir>

#include <gtest/gtest.h>

int main(int count, char** arguments) {
    QTemporaryDir settings; // only its owner may enter it, as Qt asks for
    qputenv("XDG_RUNTIME_DIR", settings.path().toUtf8());
    qputenv("XDG_CONFIG_HOME", settings.path().toUtf8());
    qputenv("TMPDIR", settings.path().toUtf8()); // a death test's process cannot take its files away itself
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&count, arguments);
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    QApplication application(count, arguments);
    orv::platform::prepare();
    return RUN_ALL_TESTS();
}
