#include "testfiles.h"

#include "dbase/connection.h"
#include "dbase/recordset.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <gtest/gtest.h>

QByteArray ReadBytes(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
}

void WriteBytes(const QString& path, const QByteArray& bytes) {
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate)) << path.toStdString();
    ASSERT_EQ(file.write(bytes), bytes.size()) << path.toStdString();
}

ProgramRun RunProgram(const QString& program, const QStringList& arguments, int timeoutMs) {
    QProcess process;
    process.start(program, arguments);
    const bool ended = process.waitForFinished(timeoutMs);
    EXPECT_TRUE(ended) << program.toStdString();
    const bool normal = ended && process.exitStatus() == QProcess::NormalExit;
    return {normal ? process.exitCode() : -1, process.readAllStandardOutput(),
            process.readAllStandardError()};
}

QStringList LoggedLines(const QString& logPath) {
    QStringList lines;
    QFile log(logPath);
    if (!log.open(QIODevice::ReadOnly | QIODevice::Text))
        return lines;
    for (const QByteArray& line : log.readAll().split('\n'))
        if (!line.isEmpty())
            lines << QString::fromUtf8(line.mid(line.indexOf('\t') + 1));
    return lines;
}

QStringList TableRows(const QString& dir, const QString& source) {
    Connection connection;
    connection.open(dir);
    Recordset rs;
    rs.open(source, connection, CursorType::Static, LockType::ReadOnly);
    QStringList rows;
    for (; !rs.eof(); rs.moveNext()) {
        QStringList cells;
        for (int i = 0; i < rs.fieldCount(); ++i)
            cells << rs.value(i).toString();
        rows << cells.join(u'|');
    }
    return rows;
}
