#pragma once

#include <QString>
#include <exception>
#include <string>

// A failure of the engine or of file code: a number as the data provider gave it (for example
// 0x80004005 for a table another program holds) and a description for the user.
class DbError : public std::exception {
public:
    DbError(qint64 number, QString description)
        : number_(number), description_(std::move(description)),
          what_(description_.toStdString()) {}

    qint64 number() const { return number_; }
    const QString& description() const { return description_; }
    const char* what() const noexcept override { return what_.c_str(); }

private:
    qint64 number_;
    QString description_;
    std::string what_;
};
