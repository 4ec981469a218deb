#pragma once

#include <QByteArray>
#include <QString>

// The program's hidden string table: file names and protocol words that are not kept as plain
// text in the program. It is compiled in as two scrambled resources, the data (custom 101) and
// the index (custom 102).
class HiddenTable {
public:
    // Checks the index against the data; throws std::runtime_error when they do not fit together.
    HiddenTable(QByteArray data, QByteArray index);

    // The table compiled into the program.
    static const HiddenTable& program();

    // Text of entry n; throws std::out_of_range for an entry outside the table.
    QString entry(int n) const;
    static int entryCount();

private:
    QByteArray data_;
    QByteArray index_;
};

// Text of entry n of the program's table (HiddenTable::program().entry(n)).
QString HiddenString(int n);
