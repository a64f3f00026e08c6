// The windows' tests: an application on the offscreen platform, with settings of its own.
#include "platform/platform.h"
#include "platform/qt/platformqt.h"

#include <QApplication>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>

int main(int count, char** arguments) {
    QTemporaryDir settings; // only its owner may enter it, as Qt asks for
    qputenv("XDG_RUNTIME_DIR", settings.path().toUtf8());
    qputenv("XDG_CONFIG_HOME", settings.path().toUtf8());
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&count, arguments);
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    QApplication application(count, arguments);
    orv::platform::prepare();
    // What a program started under this environment finds as its region.
    if (count == 2 && std::strcmp(arguments[1], "--region") == 0) {
        const orv::platform::regionmarks marks = orv::platform::userregion();
        std::printf("%s%s", marks.decimal.c_str(), marks.group.c_str());
        return 0;
    }
    return RUN_ALL_TESTS();
}
