#include "dbase/dbfformat.h"

#include "dbase/dberror.h"
#include "dbase/textcodec.h"

#include <QtEndian>
#include <charconv>
#include <cmath>
#include <cstring>

namespace {

constexpr int DescriptorSize = 32;
constexpr int PrefixSize = 32;

[[noreturn]] void damaged(const QString& table, const QString& reason) {
    throw DbError(DbErrors::Damaged,
                  QStringLiteral("The table %1 is damaged: %2.").arg(table, reason));
}

[[noreturn]] void mismatch(const FieldDef& field, const QString& reason) {
    throw DbError(DbErrors::TypeMismatch,
                  QStringLiteral("The value for field %1 %2.").arg(field.name, reason));
}

QString hexByte(quint8 b) {
    return QStringLiteral("0x") + QStringLiteral("%1").arg(b, 2, 16, QLatin1Char('0')).toUpper();
}

void checkVersion(quint8 version, const QString& table) {
    switch (version) {
    case 0x03:
    case 0x83:
    case 0x8B:
        return;
    case 0x30:
    case 0x31:
    case 0x32:
    case 0xF5:
    case 0xFB:
        throw DbError(DbErrors::UnsupportedFormat,
                      QStringLiteral("The table %1 is a FoxPro table (version byte %2); only "
                                     "dBASE III and IV tables can be read.")
                          .arg(table, hexByte(version)));
    default:
        throw DbError(DbErrors::UnsupportedFormat,
                      QStringLiteral("The table %1 is not a dBASE III or IV table (version "
                                     "byte %2).")
                          .arg(table, hexByte(version)));
    }
}

// Clipper stores text fields longer than 255 characters with the high byte in the decimals.
int storedLength(char type, quint8 length, quint8 decimals) {
    return type == 'C' ? length + 256 * decimals : length;
}

FieldDef parseDescriptor(const char* d, const QString& table) {
    const char* end = static_cast<const char*>(std::memchr(d, 0, 11));
    const int nameLength = end ? int(end - d) : 11;
    FieldDef f;
    f.name = QString::fromLatin1(d, nameLength).trimmed();
    f.type = d[11];
    const auto length = static_cast<quint8>(d[16]);
    const auto decimals = static_cast<quint8>(d[17]);
    if (f.name.isEmpty())
        damaged(table, QStringLiteral("a field has no name"));
    if (f.type == 0 || !QByteArrayView("CNFDLM").contains(f.type))
        damaged(table, QStringLiteral("field %1 has the unknown type '%2'")
                           .arg(f.name, QString::fromLatin1(&f.type, 1)));
    f.length = storedLength(f.type, length, decimals);
    f.decimals = f.type == 'C' ? 0 : decimals;
    const bool badLength = f.length == 0 || (f.type == 'D' && f.length != 8) ||
                           (f.type == 'L' && f.length != 1) || (f.type == 'M' && f.length != 10);
    if (badLength || (f.type != 'C' && f.decimals != 0 && f.decimals >= f.length))
        damaged(table, QStringLiteral("field %1 has the impossible width %2.%3")
                           .arg(f.name)
                           .arg(f.length)
                           .arg(f.decimals));
    return f;
}

QVariant decodeNumber(const char* data, const FieldDef& f) {
    double value = 0;
    return Dbf::parseNumber(data, f.length, value) ? QVariant(value) : QVariant();
}

QVariant decodeDate(const char* data) {
    QDate date;
    return Dbf::parseDate(data, date) ? QVariant(date) : QVariant();
}

QVariant decodeLogical(char c) {
    switch (c) {
    case 'T':
    case 't':
    case 'Y':
    case 'y':
        return true;
    case 'F':
    case 'f':
    case 'N':
    case 'n':
        return false;
    default:
        return {};
    }
}

bool isEmptyValue(const QVariant& value) {
    if (value.isNull() || !value.isValid())
        return true;
    return value.typeId() == QMetaType::QString && value.toString().trimmed().isEmpty();
}

double numberOf(const QVariant& value, const FieldDef& f) {
    if (value.typeId() == QMetaType::Bool)
        return value.toBool() ? -1 : 0;
    bool ok = false;
    const double n = value.typeId() == QMetaType::QString ? value.toString().trimmed().toDouble(&ok)
                                                          : value.toDouble(&ok);
    if (!ok || !std::isfinite(n))
        mismatch(f, QStringLiteral("is not a number"));
    return n;
}

void encodeNumber(char* data, const FieldDef& f, const QVariant& value) {
    const double n = numberOf(value, f);
    const QByteArray text = QByteArray::number(n, 'f', f.decimals);
    if (text.size() > f.length)
        mismatch(f, QStringLiteral("does not fit in %1 digits").arg(f.length));
    std::memset(data, ' ', size_t(f.length));
    std::memcpy(data + f.length - text.size(), text.constData(), size_t(text.size()));
}

QDate dateOf(const QVariant& value, const FieldDef& f) {
    if (value.typeId() == QMetaType::QDate)
        return value.toDate();
    if (value.typeId() == QMetaType::QDateTime)
        return value.toDateTime().date();
    const QString text = value.toString().trimmed();
    for (const char* format : {"yyyyMMdd", "yyyy-MM-dd", "yyyy.MM.dd", "yyyy/MM/dd", "dd/MM/yyyy",
                               "dd.MM.yyyy", "dd-MM-yyyy"}) {
        const QDate date = QDate::fromString(text, QLatin1String(format));
        if (date.isValid())
            return date;
    }
    mismatch(f, QStringLiteral("is not a date"));
}

void encodeDate(char* data, const FieldDef& f, const QVariant& value) {
    const QDate date = dateOf(value, f);
    if (!date.isValid() || date.year() < 1 || date.year() > 9999)
        mismatch(f, QStringLiteral("is not a date"));
    const QByteArray text = date.toString(QStringLiteral("yyyyMMdd")).toLatin1();
    std::memcpy(data, text.constData(), 8);
}

char logicalOf(const QVariant& value, const FieldDef& f) {
    switch (value.typeId()) {
    case QMetaType::Bool:
        return value.toBool() ? 'T' : 'F';
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
    case QMetaType::Short:
    case QMetaType::UShort:
        return value.toDouble() != 0 ? 'T' : 'F';
    default:
        break;
    }
    const QString text = value.toString().trimmed().toUpper();
    if (QStringList{"T", "TRUE", "Y", "YES", "-1", "1"}.contains(text))
        return 'T';
    if (QStringList{"F", "FALSE", "N", "NO", "0"}.contains(text))
        return 'F';
    mismatch(f, QStringLiteral("is not True or False"));
}

void encodeText(char* data, const FieldDef& f, const QVariant& value, const TextCodec& codec) {
    const QByteArray bytes = codec.encode(value.toString());
    if (bytes.size() > f.length)
        mismatch(f, QStringLiteral("is longer than %1 characters").arg(f.length));
    std::memset(data, ' ', size_t(f.length));
    std::memcpy(data, bytes.constData(), size_t(bytes.size()));
}

} // namespace

int TableHeader::fieldIndex(const QString& name) const {
    for (int i = 0; i < fields.size(); ++i)
        if (fields[i].name.compare(name, Qt::CaseInsensitive) == 0)
            return i;
    return -1;
}

bool TableHeader::hasMemo() const {
    for (const FieldDef& f : fields)
        if (f.type == 'M')
            return true;
    return false;
}

namespace Dbf {

TableHeader parseHeader(QByteArrayView bytes, qint64 fileSize, const QString& table) {
    if (bytes.size() < PrefixSize || fileSize < PrefixSize)
        damaged(table, QStringLiteral("the file is too short to hold a header"));
    const auto* u = reinterpret_cast<const uchar*>(bytes.data());
    TableHeader h;
    h.version = u[0];
    checkVersion(h.version, table);
    h.lastUpdate = QDate(1900 + u[1], u[2], u[3]);
    h.recordCount = qFromLittleEndian<quint32>(u + 4);
    h.headerLength = qFromLittleEndian<quint16>(u + 8);
    h.recordLength = qFromLittleEndian<quint16>(u + 10);
    h.languageDriver = u[29];
    // The header length is authoritative: some writers leave bytes after the terminator.
    if (h.headerLength < PrefixSize + 1 || h.headerLength > fileSize ||
        h.headerLength > bytes.size())
        damaged(table, QStringLiteral("the header length %1 does not fit the file of %2 bytes")
                           .arg(h.headerLength)
                           .arg(fileSize));
    int pos = PrefixSize;
    int offset = 1;
    while (true) {
        if (pos >= h.headerLength)
            damaged(table, QStringLiteral("the field list has no terminator"));
        if (bytes[pos] == Terminator)
            break;
        if (pos + DescriptorSize > h.headerLength)
            damaged(table, QStringLiteral("the field list has no terminator"));
        h.fields.append(parseDescriptor(bytes.data() + pos, table));
        h.offsets.append(offset);
        offset += h.fields.last().length;
        pos += DescriptorSize;
    }
    if (h.fields.isEmpty())
        damaged(table, QStringLiteral("it has no fields"));
    if (offset != h.recordLength)
        damaged(table, QStringLiteral("the record length %1 disagrees with its fields (%2)")
                           .arg(h.recordLength)
                           .arg(offset));
    const qint64 room = (fileSize - h.headerLength) / h.recordLength;
    if (h.recordCount > room)
        damaged(table, QStringLiteral("it counts %1 records but the file holds only %2")
                           .arg(h.recordCount)
                           .arg(room));
    return h;
}

void checkNewField(const FieldDef& f) {
    bool nameOk = !f.name.isEmpty() && f.name.size() <= MaxFieldNameLength;
    for (QChar c : f.name)
        nameOk = nameOk && c.unicode() < 0x80 && (c.isLetterOrNumber() || c == QLatin1Char('_'));
    if (!nameOk)
        throw DbError(DbErrors::Syntax,
                      QStringLiteral("The field name '%1' is not a valid dBASE field name "
                                     "(1 to 10 letters, digits or '_').")
                          .arg(f.name));
    const bool numeric = (f.type == 'N' || f.type == 'F') && f.length >= 1 && f.length <= 20 &&
                         f.decimals < f.length;
    const bool sizeOk = (f.type == 'C' && f.length >= 1 && f.length <= 254) || numeric ||
                        (f.type == 'D' && f.length == 8) || (f.type == 'L' && f.length == 1);
    if (!sizeOk)
        throw DbError(DbErrors::Syntax, QStringLiteral("The field %1 cannot be created with "
                                                       "type %2 and width %3.")
                                            .arg(f.name, QString::fromLatin1(&f.type, 1))
                                            .arg(f.length));
}

TableHeader makeHeader(const QList<FieldDef>& fields, quint8 languageDriver, quint8 version) {
    TableHeader h;
    h.version = version;
    h.languageDriver = languageDriver;
    h.lastUpdate = QDate::currentDate();
    h.fields = fields;
    int offset = 1;
    for (const FieldDef& f : fields) {
        h.offsets.append(offset);
        offset += f.length;
    }
    h.recordLength = quint16(offset);
    h.headerLength = quint16(PrefixSize + DescriptorSize * fields.size() + 1);
    return h;
}

QByteArray dateAndCount(const QDate& d, quint32 count) {
    QByteArray b(7, '\0');
    b[0] = char(qBound(0, d.year() - 1900, 255));
    b[1] = char(d.month());
    b[2] = char(d.day());
    qToLittleEndian<quint32>(count, reinterpret_cast<uchar*>(b.data()) + 3);
    return b;
}

QByteArray headerBytes(const TableHeader& h) {
    QByteArray b(h.headerLength, '\0');
    auto* u = reinterpret_cast<uchar*>(b.data());
    u[0] = h.version;
    const QByteArray dc = dateAndCount(h.lastUpdate, h.recordCount);
    std::memcpy(u + 1, dc.constData(), 7);
    qToLittleEndian<quint16>(h.headerLength, u + 8);
    qToLittleEndian<quint16>(h.recordLength, u + 10);
    u[29] = h.languageDriver;
    int pos = PrefixSize;
    for (const FieldDef& f : h.fields) {
        const QByteArray name = f.name.toLatin1().left(Dbf::MaxFieldNameLength);
        std::memcpy(b.data() + pos, name.constData(), size_t(name.size()));
        b[pos + 11] = f.type;
        const bool longText = f.type == 'C' && f.length > 255;
        b[pos + 16] = char(longText ? f.length % 256 : f.length);
        b[pos + 17] = char(longText ? f.length / 256 : f.decimals);
        pos += DescriptorSize;
    }
    b[pos] = Terminator;
    return b;
}

QVariant decodeField(const char* data, const FieldDef& f, const TextCodec& codec) {
    switch (f.type) {
    case 'C': {
        int n = f.length;
        while (n > 0 && (data[n - 1] == ' ' || data[n - 1] == '\0'))
            --n;
        if (n == 0)
            return {};
        return codec.decode(data, n);
    }
    case 'N':
    case 'F':
        return decodeNumber(data, f);
    case 'D':
        return decodeDate(data);
    case 'L':
        return decodeLogical(data[0]);
    default: // memo pointers are kept as they are but not read
        return {};
    }
}

void encodeField(char* data, const FieldDef& f, const QVariant& value, const TextCodec& codec) {
    if (f.type == 'M')
        throw DbError(DbErrors::NotAllowed,
                      QStringLiteral("The memo field %1 cannot be written.").arg(f.name));
    if (isEmptyValue(value)) {
        std::memset(data, ' ', size_t(f.length));
        return;
    }
    switch (f.type) {
    case 'C':
        encodeText(data, f, value, codec);
        return;
    case 'N':
    case 'F':
        encodeNumber(data, f, value);
        return;
    case 'D':
        encodeDate(data, f, value);
        return;
    default:
        data[0] = logicalOf(value, f);
        return;
    }
}

bool parseNumber(const char* data, int length, double& value) {
    int begin = 0;
    int end = length;
    while (begin < end && (data[begin] == ' ' || data[begin] == '\0'))
        ++begin;
    while (end > begin && (data[end - 1] == ' ' || data[end - 1] == '\0'))
        --end;
    if (begin == end || data[begin] == '*')
        return false;
    if (data[begin] == '+')
        ++begin;
    const auto result = std::from_chars(data + begin, data + end, value);
    return result.ec == std::errc() && result.ptr == data + end;
}

bool parseDate(const char* data, QDate& date) {
    int parts[3] = {0, 0, 0};
    const int widths[3] = {4, 2, 2};
    const char* p = data;
    for (int k = 0; k < 3; ++k) {
        for (int i = 0; i < widths[k]; ++i, ++p) {
            if (*p < '0' || *p > '9')
                return false;
            parts[k] = parts[k] * 10 + (*p - '0');
        }
    }
    date = QDate(parts[0], parts[1], parts[2]);
    return date.isValid() && parts[0] > 0;
}

QByteArray blankRecord(const TableHeader& h) {
    return QByteArray(h.recordLength, ' ');
}

} // namespace Dbf
