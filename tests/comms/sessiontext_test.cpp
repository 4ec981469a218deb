// The texts of a session: the transfer caption, the versions of a "VERSI" answer and their
// comparison value, and the announced sizes.
#include "app/appstate.h"
#include "comms/protocol.h"
#include "comms/sessiontext.h"

#include <gtest/gtest.h>

using namespace SessionText;

TEST(SessionText, TransferCaptionInBothLanguages) {
    ResetAppState();
    App().Settings.Nation = 1000;
    // The percentage is rounded; the rate has no leading zero before its point, as the program
    // always printed it.
    EXPECT_EQ(TransferCaption(10, 37.6f, 0.5), QStringLiteral("10 Octets (%38)\r\n.50 k/s"));
    App().Settings.Nation = 2000;
    EXPECT_EQ(TransferCaption(1000, 100.0f, 1234.5),
              QStringLiteral("1000 Bytes (%100)\r\n1234.50 k/s"));
    ResetAppState();
}

TEST(SessionText, VersionsAndAnnouncedSizes) {
    using Versions = std::array<QString, 3>;
    EXPECT_EQ(SplitVersions("VERSI5.3.0;3.9.1;2004.3.10"),
              (Versions{"5.3.0", "3.9.1", "2004.3.10"}));
    EXPECT_EQ(SplitVersions("VERSI;;a;b"), (Versions{"", "", "a;b"}));
    EXPECT_FALSE(SplitVersions("VERSI5.3.0;3.9.1"));
    // Versions are compared by a value alone: 2004.3.40 passes 2004.4.8.
    EXPECT_EQ(VersionValue(QStringLiteral("2004.3.10")), 731563);
    EXPECT_GT(*VersionValue(QStringLiteral("2004.3.40")),
              *VersionValue(QStringLiteral("2004.4.8")));
    EXPECT_FALSE(VersionValue(QStringLiteral("2004.3")));
    EXPECT_FALSE(VersionValue(QStringLiteral("2004.3.x")));

    EXPECT_EQ(Protocol::AnnouncedSize("LISTE  77abc"), 77);
    EXPECT_EQ(Protocol::AnnouncedSize("LISTE"), 0);
    EXPECT_EQ(Protocol::AnnouncedSize("LISTEabc"), 0);
}
