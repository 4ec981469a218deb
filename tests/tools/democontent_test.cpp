// The demo update server's content, served and installed end to end: every download changes
// what the window shows, and a newer program version is offered.
#include "democontent.h"
#include "demodata.h"
#include "serverconversation.h"
#include "serviceinstall.h"
#include "updateserver.h"

#include "app/version.h"

#include <QTemporaryDir>
#include <QVersionNumber>

using DemoContentTest = ServiceInstallTest;

TEST_F(DemoContentTest, EveryDownloadOfTheDemoChangesWhatTheWindowShows) {
    QTemporaryDir content;
    writeDemoContent(content.path(), install.drive(), today);
    UpdateServer server(ServerContent(content.path()), ServerFaults{});
    ASSERT_TRUE(server.start(0));
    ServerConversation session(server.port());
    ASSERT_EQ(session.next(), "OKOKO");
    // One file of the session, received into path; false when the server refused it.
    const auto download = [&session](const QByteArray& request, const QString& path,
                                     const QByteArray& acknowledgement = {}) {
        const QByteArray announcement =
            session.ask(request, acknowledgement.isEmpty() ? "ENVOI" + request : acknowledgement);
        const qint64 size = announcement.mid(5).toLongLong();
        QFile file(path);
        return !announcement.startsWith("ERROR") && file.open(QIODevice::WriteOnly) &&
               file.write(session.receive(size)) == size;
    };
    const auto programCode = [this](const char* field) {
        return TableRows(prg(), QStringLiteral("SELECT %1 FROM NVAPPEL").arg(field)).value(0);
    };

    EXPECT_TRUE(download("BATI3", prg() + "NVBATI.DAT"));

    const QList<QByteArray> offered = session.ask("VERSI2004.3.2").mid(5).split(';');
    ASSERT_EQ(offered.size(), 3);
    EXPECT_EQ(offered[0], DemoPartdexOffered.toLatin1());
    EXPECT_EQ(offered[1], DemoLedgermakerOffered.toLatin1());
    const ProgramVersion own = CurrentVersion();
    EXPECT_GT(QVersionNumber::fromString(QString::fromLatin1(offered[2])),
              QVersionNumber(own.major, own.minor, own.revision));
    EXPECT_TRUE(download("UPDA2", install.programDir() + "/UPDATE.EXE", "ENVOIUPDAT"));

    const ItemRow list = toUpdate("PRIXLIST");
    ASSERT_TRUE(download("LISTE" + list.fichier.toLatin1(), prg() + "NVLISTE.ARJ"));
    EXPECT_EQ(run({"5", "1", QString::number(list.position)}), 0);

    const ItemRow catalogue = toUpdate("CATALIST");
    const QByteArray code = catalogue.fichier.toLatin1();
    ASSERT_TRUE(download("CAT  " + code, prg() + "NVCAT.ARJ"));
    EXPECT_EQ(run({"9", "1", QString::number(catalogue.position)}),
              1); // its second file is missing
    EXPECT_EQ(rows("CATALIST")[catalogue.position - 1].dateStk, catalogue.dateStk);
    ASSERT_TRUE(download("CATA " + code, prg() + "NVCATA.ARJ"));
    EXPECT_EQ(run({"9", "1", QString::number(catalogue.position)}), 0);
    EXPECT_EQ(rows("CATALIST")[catalogue.position - 1].dateStk, catalogue.dateEff);
    EXPECT_TRUE(QFile::exists(data() + catalogue.fichier + ".IDX"));
    EXPECT_TRUE(QFile::exists(data() + catalogue.fichier + ".CAT"));

    const qsizetype newsletters = subjects().size();
    ASSERT_TRUE(download("NVINFNVCOM", data() + "NVINFO.ARJ", "ENVOINVINF"));
    EXPECT_EQ(run({"8", "1"}), 0);
    EXPECT_EQ(subjects().size(), newsletters + 3);
    EXPECT_TRUE(subjects().contains("Nouvelles bougies d'allumage"));

    // A package for each program code, whichever installation kind asks.
    for (const auto& [folder, field] : {std::pair{"partdex/", "P_2"},
                                        {"partdex/", "P_7"},
                                        {"ledgermaker/", "P_3"},
                                        {"ledgermaker/", "P_8"}})
        EXPECT_TRUE(QFile::exists(content.filePath(folder + programCode(field) + ".ARJ"))) << field;
    const QByteArray partdex = programCode("P_2").toLatin1();
    const QByteArray ledgermaker = programCode("P_3").toLatin1();
    ASSERT_TRUE(download("PARTD" + partdex, data() + "PARTVERS.ARJ"));
    EXPECT_EQ(run({"6", "1"}), 0);
    EXPECT_TRUE(QFile::exists(prg() + partdex + ".TXT"));
    ASSERT_TRUE(download("LEDGM" + ledgermaker, data() + "LEDGVERS.ARJ"));
    EXPECT_EQ(run({"7", "1"}), 0);
    EXPECT_EQ(versions(), QStringList({DemoPartdexOffered, DemoLedgermakerOffered}));
}
