#include "pricelists/listcommands.h"

#include "data/fieldbinding.h"
#include "dbase/recordset.h"

void ListCommandContext::bindConfig(bool bind) const {
    if (!tables.binding)
        return;
    if (bind)
        tables.binding->bind(tables.rsPrixList);
    else
        tables.binding->unbind();
}

QString ListCommandContext::shownField(int field) const {
    const Recordset& rs = tables.rsPrixList;
    if (!rs.isOpen() || rs.bof() || rs.eof())
        return {};
    return FieldBinding::displayText(rs.value(field));
}
