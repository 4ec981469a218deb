#include "app/hiddenscheme.h"
#include "app/hiddenstrings.h"

#include <QFile>
#include <QRegularExpression>
#include <QTextStream>
#include <gtest/gtest.h>
#include <map>
#include <stdexcept>

namespace {

// The plain list the build scrambled into the program.
std::map<int, QString> plainList() {
    QFile file(QStringLiteral(MERCANTEL_SOURCE_DIR "/resources/hiddenstrings.txt"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    std::map<int, QString> entries;
    const QRegularExpression line("^(\\d+)\\s+\"(.*)\"$");
    QTextStream in(&file);
    while (!in.atEnd()) {
        const auto match = line.match(in.readLine());
        if (match.hasMatch())
            entries[match.captured(1).toInt()] = match.captured(2);
    }
    return entries;
}

} // namespace

// Every entry comes back as listed, none is stored in clear, and equal texts of two entries are
// not stored alike.
TEST(HiddenStrings, TheProgramsTableGivesBackThePlainList) {
    const auto entries = plainList();
    ASSERT_TRUE(entries.count(0));
    for (int n = 0; n < HiddenTable::entryCount(); ++n) {
        const auto it = entries.find(n);
        EXPECT_EQ(HiddenString(n), it == entries.end() ? QString() : it->second) << n;
    }
    QFile data(QStringLiteral(":/custom/101"));
    ASSERT_TRUE(data.open(QIODevice::ReadOnly));
    EXPECT_FALSE(data.readAll().contains(HiddenString(0).toLatin1())) << "stored in clear";

    const HiddenScheme::Bytes key = {1, 2, 3};
    const HiddenScheme::Bytes same = {'S', 'A', 'M', 'E'};
    EXPECT_NE(HiddenScheme::scramble(same, 1, key), HiddenScheme::scramble(same, 2, key));
}

// An entry outside the table, or an index that does not fit its data, is an error for the caller.
TEST(HiddenStrings, AWrongEntryOrIndexIsRefused) {
    EXPECT_THROW(HiddenString(-1), std::out_of_range);
    EXPECT_THROW(HiddenString(HiddenTable::entryCount()), std::out_of_range);

    const QByteArray data(40, 'x');
    QByteArray index(int(HiddenScheme::IndexSize), '\0');
    EXPECT_THROW(HiddenTable(data, index.left(40)), std::runtime_error);
    EXPECT_THROW(HiddenTable(data, index), std::runtime_error) << "no key";
    index[2 * 28] = 30;
    index[2 * 29] = 40;
    EXPECT_NO_THROW(HiddenTable(data, index));
    index[2 * 29] = 41;
    EXPECT_THROW(HiddenTable(data, index), std::runtime_error) << "key past the data";
    index[2 * 29] = 40;
    index[2 * 3] = 20;
    EXPECT_THROW(HiddenTable(data, index), std::runtime_error) << "offsets going backwards";
}
