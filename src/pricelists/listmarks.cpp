#include "pricelists/listmarks.h"

void ListMarkTable::redim(int listCount) {
    for (QList<QString>& column : columns_)
        column.resize(qMax(0, listCount) + 1);
}

void ListMarkTable::clearSelection() {
    for (QString& mark : columns_[0])
        mark.clear();
}

int ListMarkTable::selectedCount() const {
    int count = 0;
    for (const QString& mark : columns_[0])
        count += mark.isEmpty() ? 0 : 1;
    return count;
}
