// Runs the GoogleTest cases inside a QApplication, so that widget tests and event waits work.
// Listing the tests (CTest's discovery) needs no application, and so no display. A box that no
// test scripted fails the test at once instead of waiting for a click that never comes.
#include "scriptedprompter.h"

#include <QApplication>
#include <cstring>
#include <gmock/gmock.h>
#include <memory>

int main(int argc, char** argv) {
    bool listing = false;
    for (int i = 1; i < argc; ++i)
        listing = listing || std::strcmp(argv[i], "--gtest_list_tests") == 0;
    std::unique_ptr<QApplication> app;
    if (!listing) {
        app = std::make_unique<QApplication>(argc, argv);
        QApplication::setApplicationName(QStringLiteral("Mercantel"));
    }
    ::testing::InitGoogleMock(&argc, argv);
    ScriptedPrompter nothingExpected;
    return RUN_ALL_TESTS();
}
