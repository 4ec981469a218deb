#include "pricelists/rowundo.h"

#include "dbase/dberror.h"
#include "dbase/recordset.h"

namespace {
const QString FichierField = QStringLiteral("FICHIER");
}

void RowUndo::set(Recordset& rs, const QString& field, const QVariant& value) {
    const QString fichier = rs.value(FichierField).toString();
    const bool known = std::any_of(entries_.begin(), entries_.end(), [&](const Entry& e) {
        return e.rs == &rs && e.fichier == fichier && e.field == field;
    });
    if (!known)
        entries_.append({&rs, fichier, field, rs.storedValue(rs.fieldIndex(field))});
    rs.setValue(field, value);
}

void RowUndo::undo() {
    QList<Recordset*> cleared;
    for (auto it = entries_.rbegin(); it != entries_.rend(); ++it) {
        Recordset& rs = *it->rs;
        try {
            if (!cleared.contains(&rs)) {
                rs.cancelUpdate();
                rs.setFilter(QString());
                cleared << &rs;
            }
            rs.find(QStringLiteral("[FICHIER] = '%1'").arg(it->fichier), 0,
                    SearchDirection::Forward, MoveStart::First);
            if (rs.eof())
                continue;
            if (rs.value(it->field) != it->before) {
                rs.setValue(it->field, it->before);
                rs.update();
            }
        } catch (const DbError&) {
            rs.cancelUpdate();
        }
    }
    entries_.clear();
}
