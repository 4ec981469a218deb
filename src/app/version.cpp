#include "app/version.h"

#include "app/messages.h"

ProgramVersion CurrentVersion() {
    return {MERCANTEL_VERSION_MAJOR, MERCANTEL_VERSION_MINOR, MERCANTEL_VERSION_REVISION};
}

QString VersionedTitle() {
    const ProgramVersion v = CurrentVersion();
    return LoadText(0) + QStringLiteral(" Version Beta ") + QString::number(v.major) + u'.' +
           QString::number(v.minor) + u'.' + QString::number(v.revision);
}

QString CompanyName() {
    return QStringLiteral("Norvale Systems");
}
