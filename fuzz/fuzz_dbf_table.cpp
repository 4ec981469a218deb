// Feeds arbitrary bytes to the table reader as if they were a table file: it must either read
// every value of every record or refuse the file with DbError, never crash or read outside it.
#include "dbase/dberror.h"
#include "dbase/dbfformat.h"
#include "dbase/expression.h"
#include "dbase/tablefile.h"
#include "dbase/textcodec.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    try {
        const TableSnapshot t = TableFile::fromBytes(bytes, QStringLiteral("FUZZ"));
        for (quint32 recno = 1; recno <= t.header.recordCount; ++recno) {
            for (int i = 0; i < t.header.fields.size(); ++i) {
                (void)Dbf::decodeField(t.record(recno) + t.header.offsets[i], t.header.fields[i],
                                       *t.codec);
                (void)fieldValue(t.record(recno), t.header, i);
            }
        }
    } catch (const DbError&) {
    }
    return 0;
}
