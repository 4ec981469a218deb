// The hand-over to a received program update in a real run.
#include "comms/programupdater.h"

#include "support/testfiles.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

#ifndef Q_OS_WIN
// The updater is written as the server sent it, without the execute permission: it still starts.
TEST(DetachedUpdater, StartsAReceivedUpdaterThatArrivedAsPlainData) {
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const QString updater = dir.filePath(QStringLiteral("UPDATE.EXE"));
    const QString started = dir.filePath(QStringLiteral("started"));
    WriteBytes(updater, "#!/bin/sh\ntouch started\n");
    ASSERT_FALSE(QFile::permissions(updater) & QFile::ExeOwner);

    DetachedUpdater detached;
    EXPECT_TRUE(detached.start(updater));
    EXPECT_TRUE(QTest::qWaitFor([&started] { return QFile::exists(started); }, 5000));
}
#endif
