#pragma once

#include <QIODevice>

// A device that passes what is written on to another and fails once more than a number of
// bytes would have gone through, as a disk does when it fills up: the tests prove with it that
// a write error reaches the caller and loses nothing.
class FailDevice final : public QIODevice {
public:
    FailDevice(QIODevice& target, qint64 failAfter) : target_(target), failAfter_(failAfter) {
        QIODevice::open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    }

protected:
    qint64 readData(char*, qint64) override { return -1; }
    qint64 writeData(const char* data, qint64 size) override {
        if (written_ + size > failAfter_) {
            setErrorString(QStringLiteral("No space left on device"));
            return -1;
        }
        const qint64 n = target_.write(data, size);
        if (n < 0)
            setErrorString(target_.errorString());
        else
            written_ += n;
        return n;
    }

private:
    QIODevice& target_;
    qint64 failAfter_;
    qint64 written_ = 0;
};
