#pragma once

// The words of the update server's protocol, shared by the download session and the demo
// server. Every message is plain single-byte text sent in one write, without a terminator:
// a server message that is not file data starts with a five-character token, and an
// announcement carries the file's size in decimal from its sixth character on.

#include <QByteArray>
#include <array>

namespace Protocol {

inline constexpr int TokenLength = 5;

// Server messages, in the order the client compares them with an arrival.
inline constexpr char Ready[] = "OKOKO";
inline constexpr char StartAnnounce[] = "BATI3"; // same text as the start request word
inline constexpr char Versions[] = "VERSI";
inline constexpr char IndexArchive[] = "NVINF";
inline constexpr char PriceList[] = "LISTE";
inline constexpr char CatalogueFile[] = "CATAX";
inline constexpr char Partdex[] = "PARTD";
inline constexpr char Ledgermaker[] = "LEDGM";
inline constexpr char ProgramUpdate[] = "UPDAT";
inline constexpr char Error[] = "ERROR";

inline constexpr std::array<const char*, 10> ServerTokens = {
    Ready, StartAnnounce, Versions, IndexArchive, PriceList,
    CatalogueFile, Partdex, Ledgermaker, ProgramUpdate, Error};

// Client requests. Every request word is five characters: "CAT" and "CATA" are padded with
// blanks.
inline constexpr char AskProgramUpdate[] = "UPDA2";
inline constexpr char AskIndexArchive[] = "NVINFNVCOM";
inline constexpr char AskList[] = "LISTE";
inline constexpr char AskCatalogue[] = "CAT  ";
inline constexpr char AskCatalogueSecond[] = "CATA ";
inline constexpr char Acknowledge[] = "ENVOI";
inline constexpr char ClientError[] = "ERROR:";

// The first five bytes of a message (fewer when the message is shorter).
inline QByteArray tokenOf(const QByteArray& message) {
    return message.left(TokenLength);
}

// An announcement: the token followed by the size in decimal.
inline QByteArray announcement(const char* token, qint64 size) {
    return QByteArray(token).append(QByteArray::number(size));
}

// The size an announcement carries: leading blanks skipped, digits read up to the first
// character that is not part of a number; nothing readable gives 0.
qint64 AnnouncedSize(const QByteArray& message);

} // namespace Protocol
