#include "dbase/connection.h"

#include "dbase/dberror.h"
#include "dbase/query.h"
#include "dbase/statements.h"

#include <QDir>
#include <QRegularExpression>

namespace {

// "Provider=...;Data Source=C:\NVNV\;Extended Properties=dBase IV;..." or a directory.
QString directoryOf(const QString& connectionString) {
    static const QRegularExpression dataSource(QStringLiteral("(?:^|;)\\s*Data Source\\s*=([^;]*)"),
                                               QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch m = dataSource.match(connectionString);
    return (m.hasMatch() ? m.captured(1) : connectionString).trimmed();
}

} // namespace

Connection::Connection(TableFile::OutputWrapper output)
    : state_(std::make_shared<ConnectionState>()) {
    state_->output = std::move(output);
}

Connection::~Connection() {
    state_->open = false;
}

void Connection::setCursorLocation(CursorLocation location) {
    state_->location = location;
}

CursorLocation Connection::cursorLocation() const {
    return state_->location;
}

void Connection::open(const QString& connectionString) {
    if (state_->open)
        throw DbError(DbErrors::Open,
                      QStringLiteral("Operation is not allowed when the object is open."));
    const QString dir = QDir::fromNativeSeparators(directoryOf(connectionString));
    if (dir.isEmpty() || !QFileInfo(dir).isDir())
        throw DbError(DbErrors::Fail, QStringLiteral("'%1' is not a valid path. Make sure that "
                                                     "the path name is spelled correctly.")
                                          .arg(QDir::toNativeSeparators(dir)));
    // A fresh state: recordsets of an earlier opening keep seeing theirs closed.
    auto fresh = std::make_shared<ConnectionState>();
    fresh->directory = QDir(dir).absolutePath() + QLatin1Char('/');
    fresh->open = true;
    fresh->location = state_->location;
    fresh->output = state_->output;
    state_ = std::move(fresh);
}

void Connection::close() {
    state_->checkOpen();
    state_->open = false;
}

bool Connection::isOpen() const {
    return state_->open;
}

QString Connection::directory() const {
    return state_->open ? state_->directory : QString();
}

qint64 Connection::execute(const QString& sql) {
    state_->checkOpen();
    Statement statement = Sql::parseStatement(sql);
    return runWritingStatement(statement, *state_);
}

QString Connection::tablePath(const QString& table) const {
    state_->checkOpen();
    return state_->findTable(table);
}
