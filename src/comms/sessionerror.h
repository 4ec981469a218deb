#pragma once

#include <QString>
#include <exception>

// A run-time error inside a session handler, with the number and description the program
// reports it by.
class SessionError : public std::exception {
public:
    static constexpr int BadFileNameOrNumber = 52;
    static constexpr int FileNotFound = 53;

    SessionError(int number, QString description)
        : number_(number), description_(std::move(description)) {}

    int number() const { return number_; }
    const QString& description() const { return description_; }
    const char* what() const noexcept override { return "session error"; }

private:
    int number_;
    QString description_;
};
