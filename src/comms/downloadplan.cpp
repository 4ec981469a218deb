// What a download session fetches and in which order: one request per item, a wait for its
// file, the unpacking by the service program and a line of the report.

#include "app/appstate.h"
#include "app/hiddenstrings.h"
#include "app/messages.h"
#include "app/prompts.h"
#include "app/serviceprogram.h"
#include "comms/protocol.h"
#include "comms/session.h"
#include "comms/sessiontext.h"
#include "comms/sessionview.h"
#include "data/moddata.h"
#include "dbase/dberror.h"
#include "pricelists/listmarks.h"

namespace {

constexpr int IndexBox = 3;
constexpr int PartdexBox = 4;
constexpr int LedgermakerBox = 5;

// List modes: the bits of box 0, box 1 and box 2.
constexpr int ToUpdateBit = 1;
constexpr int SelectedBit = 2;
constexpr int ContainingBit = 4;

QString fieldText(const Recordset& rs, const QString& name) {
    return rs.value(name).toString();
}

bool fieldTrue(const Recordset& rs, const QString& name) {
    return rs.value(name).toBool();
}

// The group-code rule applied before a received list is unpacked: the list has a group code
// (the same in PRIXLIST and in the view the service program reads), or it needs none.
bool groupCodeAllows(const Recordset& list, const Recordset& codes) {
    if (fieldTrue(list, QStringLiteral("PASOBLIGER")))
        return true;
    const QString code = fieldText(list, QStringLiteral("CODEGRO")).trimmed();
    return !code.isEmpty() && code == fieldText(codes, QStringLiteral("CODEGRO")).trimmed();
}

bool serviceRunFailed(const QString& op, int position = 0) {
    return RunServiceProgram(op, qint16(position)) == -1;
}

} // namespace

// The two companion packages, fetched the same way.
struct DownloadSession::Package {
    QString fieldWhenOther; // program-code field of NVAPPEL when Instal is not 1
    QString fieldWhenOne;
    int requestWord; // hidden entry
    QString title;
    QString serviceOp;
    int failureMessage;
    int successMessage;
    int box;
};

void DownloadSession::Download(const QString& kind) {
    try {
        if (runDownload(kind))
            commonEnding();
    } catch (const DbError& error) {
        MsgBox(QStringLiteral("errDownload: ") + QString::number(error.number()) +
               SessionText::LineBreak + error.description() + SessionText::LineBreak +
               App().ContactLine);
        TransferFailed = true;
        CurrentRequest.clear();
        setProgress(0);
    } catch (const std::exception& error) {
        MsgBox(QStringLiteral("errDownload: 0") + SessionText::LineBreak +
               QString::fromUtf8(error.what()) + SessionText::LineBreak + App().ContactLine);
        TransferFailed = true;
        CurrentRequest.clear();
        setProgress(0);
    }
}

// False when the item ended early and the common ending is skipped.
bool DownloadSession::runDownload(const QString& kind) {
    const QString what = kind.left(3);
    if (what == u"UPD") {
        askProgramUpdate();
    } else if (what == u"VER") {
        askVersions();
    } else if (what == u"REP") {
        fetchIndex();
    } else if (what == u"INF") {
        return fetchPackage({QStringLiteral("P_7"), QStringLiteral("P_2"), 15,
                             QStringLiteral("Partdex"), QStringLiteral("6"), 46, 47, PartdexBox});
    } else if (what == u"AUT") {
        return fetchPackage({QStringLiteral("P_8"), QStringLiteral("P_3"), 5, LoadText(48),
                             QStringLiteral("7"), 49, 50, LedgermakerBox});
    } else if (what == u"LST") {
        fetchLists(kind.right(1).toInt());
    }
    return true;
}

void DownloadSession::askProgramUpdate() {
    CurrentRequest = QStringLiteral("UPDATE");
    send(Protocol::AskProgramUpdate);
    WaitForTransfer();
}

void DownloadSession::askVersions() {
    VersionTable[2][0].clear();
    CurrentRequest = QString::fromLatin1(Protocol::Versions);
    sendText(CurrentRequest + VersionTable[2][1]);
    waitUntil([this] { return !VersionTable[2][0].isEmpty() || TransferFailed; });
    setProgress(0);
}

void DownloadSession::fetchIndex() {
    CurrentRequest = QString::fromLatin1(Protocol::IndexArchive);
    showTitle(LoadText(43));
    send(Protocol::AskIndexArchive);
    WaitForTransfer();
    setProgress(0);
    const bool ok = !TransferFailed && !serviceRunFailed(QStringLiteral("8"));
    report(LoadText(ok ? 45 : 44));
    view_.itemDone(LoadText(43), ok);
    if (ok)
        view_.uncheckBox(IndexBox);
}

bool DownloadSession::fetchPackage(const Package& package) {
    if (StopRequested)
        return false;
    {
        Recordset nvappel;
        nvappel.open(QStringLiteral("NVAPPEL"), connPrg);
        nvappel.moveFirst();
        const QString field =
            App().Settings.Instal == 1 ? package.fieldWhenOne : package.fieldWhenOther;
        RequestSuffix = fieldText(nvappel, field).trimmed();
    }
    if (RequestSuffix.isEmpty())
        return false;
    CurrentRequest = HiddenString(package.requestWord);
    showTitle(package.title);
    sendText(CurrentRequest + RequestSuffix);
    WaitForTransfer();
    setProgress(0);
    const bool ok = !TransferFailed && !serviceRunFailed(package.serviceOp);
    report(LoadText(ok ? package.successMessage : package.failureMessage));
    if (ok) {
        if (package.box == PartdexBox)
            view_.setChoiceBold(PartdexBox, false);
        // As the window's load left it, so that the version follows after one blank.
        view_.setChoiceCaption(PartdexBox, QStringLiteral("Partdex"));
        view_.setChoiceCaption(LedgermakerBox, LoadText(48));
        SetupEnv();
    }
    view_.itemDone(package.title, ok);
    view_.uncheckBox(package.box);
    return true;
}

void DownloadSession::fetchLists(int mode) {
    const DownloadChoice choice = view_.downloadChoice();
    bool withCatalogues = false;
    if (choice.checkedCatCount != 0)
        withCatalogues = MsgBox(LoadText(130) + QString::number(choice.checkedCatCount) +
                                    SessionText::LineBreak + LoadText(131),
                                Buttons::YesNo, Icon::Information) == Answer::Yes;
    Recordset& lists = rsPrixList;
    lists.moveLast();
    lists.moveFirst();
    for (int row = 0; row < choice.listCount && !StopRequested; ++row) {
        if (listSelected(mode, row, choice))
            fetchList();
        TransferFailed = false;
        lists.moveNext();
    }
    if (withCatalogues)
        fetchCatalogues(choice);
    for (int box = 0; box < 3; ++box)
        view_.uncheckBox(box);
}

bool DownloadSession::listSelected(int mode, int row, const DownloadChoice& choice) {
    const Recordset& lists = rsPrixList;
    ListMarkTable* marks = choice.listMarks;
    const bool marked = marks && row <= marks->upperBound();
    const bool inUse = fieldTrue(lists, QStringLiteral("UTILISER"));
    bool selected = false;
    if (mode & ToUpdateBit)
        selected = selected || (marked && (*marks)(1, row) == u"1");
    if (mode & SelectedBit) {
        selected = selected || (marked && !(*marks)(0, row).isEmpty() && inUse);
        if (marked && App().Settings.Selection != 0)
            (*marks)(0, row).clear();
    }
    if (mode & ContainingBit) {
        const QString text = choice.expListText.trimmed();
        selected = selected || (!text.isEmpty() && inUse &&
                                fieldText(lists, QStringLiteral("desc")).contains(text));
    }
    return selected;
}

void DownloadSession::fetchList() {
    const Recordset& lists = rsPrixList;
    const QString desc = fieldText(lists, QStringLiteral("desc"));
    CurrentRequest = QString::fromLatin1(Protocol::PriceList);
    RequestSuffix = fieldText(lists, QStringLiteral("FICHIER")).trimmed();
    showTitle(desc);
    sendText(CurrentRequest + RequestSuffix);
    WaitForTransfer();
    setProgress(0);
    rsPrixCodes.find(QStringLiteral("FICHIER = '") + RequestSuffix + u'\'', 0,
                     SearchDirection::Forward, MoveStart::First);
    const bool found = !rsPrixCodes.eof();
    bool ok = false;
    if (!TransferFailed && found && groupCodeAllows(lists, rsPrixCodes))
        ok = !serviceRunFailed(QStringLiteral("5"), rsPrixCodes.absolutePosition());
    reportItem(desc, ok);
}

void DownloadSession::fetchCatalogues(const DownloadChoice& choice) {
    Recordset& catalogues = rsCataList;
    if (catalogues.recordCount() == 0)
        return;
    for (catalogues.moveFirst(); !catalogues.eof() && !StopRequested; catalogues.moveNext()) {
        const QString code = fieldText(catalogues, QStringLiteral("FICHIER")).trimmed();
        if (!fieldTrue(catalogues, QStringLiteral("UTILISER")) || !choice.catalogueChecked ||
            !choice.catalogueChecked(code))
            continue;
        CatalogueFile = code;
        if (!fetchCatalogue())
            break;
    }
}

// False when the catalogue loop ends here.
bool DownloadSession::fetchCatalogue() {
    CurrentRequest = QStringLiteral("CAT");
    TransferFailed = false;
    showTitle(fieldText(rsCataList, QStringLiteral("desc")));
    sendText(QString::fromLatin1(Protocol::AskCatalogue) + CatalogueFile);
    WaitForTransfer();
    if (!TransferFailed && !StopRequested) {
        CurrentRequest = QStringLiteral("CATA");
        sendText(QString::fromLatin1(Protocol::AskCatalogueSecond) + CatalogueFile);
        WaitForTransfer();
    }
    setProgress(0);
    if (StopRequested)
        return false;
    rsCataFiles.find(QStringLiteral("FICHIER = '") + CatalogueFile + u'\'', 0,
                     SearchDirection::Forward, MoveStart::First);
    if (TransferFailed) {
        report(QStringLiteral("> Catalogue ") + CatalogueFile + u' ' + LoadText(51));
        view_.itemDone(CatalogueFile, false);
        return false;
    }
    const int position = rsCataFiles.eof() ? 0 : rsCataFiles.absolutePosition();
    reportItem(transferTitle_, !serviceRunFailed(QStringLiteral("9"), position));
    return true;
}

void DownloadSession::commonEnding() {
    if (!App().UpdateMode) {
        rsPrixList.requery();
        rsPrixCodes.requery();
        rsCataList.requery();
    }
    TransferFailed = false;
    CurrentRequest.clear();
}

void DownloadSession::report(const QString& line) {
    ReportText += SessionText::ReportTime(clock_()) + line + SessionText::LineBreak;
}

void DownloadSession::reportItem(const QString& item, bool succeeded) {
    report(QStringLiteral("> ") + item + u' ' + LoadText(succeeded ? 52 : 51));
    view_.itemDone(item, succeeded);
}

void DownloadSession::showTitle(const QString& text) {
    transferTitle_ = text;
    view_.showTransferTitle(text);
}
