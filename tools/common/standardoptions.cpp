#include "standardoptions.h"

#include "app/version.h"

#include <cstdio>

std::optional<int> AnswerStandardOptions(const QStringList& arguments, const char* toolName,
                                         const char* helpText) {
    if (arguments.contains(QStringLiteral("--help"))) {
        std::fputs(helpText, stdout);
        return 0;
    }
    if (arguments.contains(QStringLiteral("--version"))) {
        const ProgramVersion v = CurrentVersion();
        std::printf("%s %d.%d.%d\n", toolName, v.major, v.minor, v.revision);
        return 0;
    }
    return std::nullopt;
}

void PrintLine(FILE* stream, const QString& line) {
    const QByteArray bytes = line.toUtf8();
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stream);
    std::fputc('\n', stream);
    std::fflush(stream);
}
