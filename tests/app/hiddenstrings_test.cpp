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
    const QRegularExpression line(QStringLiteral("^(\\d+)\\s+\"(.*)\"$"));
    QTextStream in(&file);
    while (!in.atEnd()) {
        const auto match = line.match(in.readLine());
        if (match.hasMatch())
            entries[match.captured(1).toInt()] = match.captured(2);
    }
    return entries;
}

// A table made the way the build makes it, for texts the list does not hold.
HiddenTable tableOf(const std::vector<QByteArray>& texts) {
    const HiddenScheme::Bytes key = {3, 141, 59, 26, 53, 58, 97, 93};
    QByteArray data;
    QByteArray index;
    auto putOffset = [&index](qsizetype offset) {
        index.append(char(offset & 0xff));
        index.append(char(offset >> 8));
    };
    for (int n = 0; n < HiddenScheme::EntryCount; ++n) {
        putOffset(data.size());
        const QByteArray text = n < int(texts.size()) ? texts[n] : QByteArray();
        const auto stored =
            HiddenScheme::scramble(HiddenScheme::Bytes(text.begin(), text.end()), n, key);
        data.append(reinterpret_cast<const char*>(stored.data()), qsizetype(stored.size()));
    }
    putOffset(data.size());
    data.append(reinterpret_cast<const char*>(key.data()), qsizetype(key.size()));
    putOffset(data.size());
    return HiddenTable(data, index);
}

} // namespace

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
}

TEST(HiddenStrings, AnEntryOutsideTheTableIsAnErrorForTheCaller) {
    EXPECT_THROW(HiddenString(-1), std::out_of_range);
    EXPECT_THROW(HiddenString(HiddenTable::entryCount()), std::out_of_range);
    EXPECT_THROW(HiddenString(32767), std::out_of_range);
}

TEST(HiddenStrings, EveryByteValueSurvivesTheScrambling) {
    QByteArray all;
    for (int c = 0; c < 256; ++c)
        all.append(char(c));
    const HiddenTable table =
        tableOf({all, QByteArray("SAME"), QByteArray("SAME"), QByteArray(), QByteArray("x")});
    EXPECT_EQ(QStringList({table.entry(0), table.entry(1), table.entry(2), table.entry(3),
                           table.entry(4), table.entry(27)}),
              QStringList({QString::fromLatin1(all), "SAME", "SAME", "", "x", ""}));

    const HiddenScheme::Bytes key = {1, 2, 3};
    const HiddenScheme::Bytes same = {'S', 'A', 'M', 'E'};
    EXPECT_NE(HiddenScheme::scramble(same, 1, key), HiddenScheme::scramble(same, 2, key))
        << "equal texts of two entries must not be stored alike";
}

TEST(HiddenStrings, AnIndexThatDoesNotFitItsDataIsRefused) {
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
