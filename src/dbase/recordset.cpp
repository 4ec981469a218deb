#include "dbase/recordset.h"

#include "dbase/dberror.h"
#include "dbase/query.h"
#include "dbase/textcodec.h"

#include <cstring>
#include <map>
#include <optional>

namespace {

[[noreturn]] void raise(qint64 number, const char* text) {
    throw DbError(number, QString::fromLatin1(text));
}

} // namespace

// A row's pending values: `working` holds every edit, `batched` the row as of its last
// update() in batch mode (the stored row otherwise).
struct Edit {
    QByteArray working;
    QByteArray batched;
};

struct RecordsetData {
    CursorLocation location = CursorLocation::Server;
    CursorType cursorType = CursorType::ForwardOnly;
    LockType lockType = LockType::ReadOnly;
    QString source;
    std::shared_ptr<ConnectionState> connection;
    bool open = false;

    std::shared_ptr<TableSnapshot> table; // its records are the rows as stored
    QList<int> columns;
    QList<FieldDef> fields;
    std::vector<quint32> slotRecno; // record number of each stored row; 0 until written
    std::vector<quint32> rows;      // slots in the recordset's order
    std::vector<quint32> visible;   // the rows that pass the filter
    qsizetype current = 0;          // index in visible; -1 is BOF, visible.size() EOF
    QString filter;
    std::map<quint32, Edit> edits;
    bool adding = false;
    qsizetype beforeAdd = 0;

    bool batch() const { return lockType == LockType::BatchOptimistic; }
    qsizetype size() const { return qsizetype(visible.size()); }
    bool onRow() const { return current >= 0 && current < size(); }
    quint32 slot() const { return visible[size_t(current)]; }
    int recordLength() const { return table->header.recordLength; }
    char* stored(quint32 s) { return table->records.data() + qsizetype(s) * recordLength(); }
    const char* stored(quint32 s) const {
        return table->records.constData() + qsizetype(s) * recordLength();
    }
    const char* shown(quint32 s) const {
        const auto it = edits.find(s);
        return it == edits.end() ? stored(s) : it->second.working.constData();
    }
    bool differsFromStored(quint32 s, const QByteArray& record) const {
        return std::memcmp(record.constData(), stored(s), size_t(recordLength())) != 0;
    }
    bool pending(quint32 s) const {
        if (slotRecno[s] == 0)
            return true;
        const auto it = edits.find(s);
        return it != edits.end() && differsFromStored(s, it->second.batched);
    }

    void checkOpen() const {
        if (!open)
            raise(DbErrors::Closed, "Operation is not allowed when the object is closed.");
    }
    void checkRow() const {
        checkOpen();
        if (!onRow())
            raise(DbErrors::NoCurrentRow, "Either BOF or EOF is True, or the current record has "
                                          "been deleted. Requested operation requires a current "
                                          "record.");
    }
    void checkUpdatable() const {
        checkOpen();
        if (lockType == LockType::ReadOnly)
            raise(DbErrors::NotAllowed, "Current Recordset does not support updating. This may "
                                        "be a limitation of the provider, or of the selected "
                                        "locktype.");
    }
    int checkField(int i) const {
        checkOpen();
        if (i < 0 || i >= fields.size())
            raise(DbErrors::NoSuchField, "Item cannot be found in the collection corresponding "
                                         "to the requested name or ordinal.");
        return i;
    }
    int fieldOffset(int i) const { return table->header.offsets[columns[i]]; }

    void load();
    void applyFilter();
    void writeRow(quint32 s);
    void leaveRow();
    void dropUnwritten();
};

void RecordsetData::load() {
    SelectStatement select;
    if (Sql::isStatement(source)) {
        Statement statement = Sql::parseStatement(source);
        auto* s = std::get_if<SelectStatement>(&statement);
        if (!s || !s->into.isEmpty())
            raise(DbErrors::NotAllowed, "Only a SELECT statement without INTO or a table name "
                                        "can be opened as a recordset.");
        select = std::move(*s);
    } else {
        select.from = source;
    }
    QueryResult r = runSelect(select, *connection);
    table = r.table;
    columns = r.columns;
    fields.clear();
    for (int c : columns)
        fields.append(table->header.fields[c]);
    slotRecno.resize(table->header.recordCount);
    for (quint32 i = 0; i < table->header.recordCount; ++i)
        slotRecno[i] = i + 1;
    rows.clear();
    rows.reserve(r.recnos.size());
    for (quint32 recno : r.recnos)
        rows.push_back(recno - 1);
    edits.clear();
    adding = false;
    applyFilter();
}

void RecordsetData::applyFilter() {
    current = 0;
    if (filter.trimmed().isEmpty()) {
        visible = rows;
        return;
    }
    ExprPtr expr = Sql::parseCondition(filter);
    checkFilterForm(*expr, filter);
    bindExpr(*expr, table->header, *table->codec);
    std::vector<quint32> kept;
    for (quint32 s : rows)
        if (isTrue(*expr, shown(s), table->header))
            kept.push_back(s);
    visible.swap(kept);
}

void RecordsetData::writeRow(quint32 s) {
    connection->checkOpen();
    const Edit& e = edits.at(s);
    const QByteArray record = batch() ? e.batched : e.working;
    if (slotRecno[s] == 0)
        slotRecno[s] = TableFile::appendRecord(*table, record);
    else
        TableFile::writeRecord(*table, slotRecno[s], QByteArrayView(stored(s), recordLength()),
                               record);
    std::memcpy(stored(s), record.constData(), size_t(recordLength()));
    if (edits.at(s).working == record)
        edits.erase(s);
    else
        edits.at(s).batched = record;
}

// Leaving an edited row saves it (optimistic) or keeps it for the batch.
void RecordsetData::leaveRow() {
    if (!onRow())
        return;
    const quint32 s = slot();
    const auto it = edits.find(s);
    const bool wasAdding = adding;
    adding = false;
    if (it == edits.end())
        return;
    if (batch()) {
        it->second.batched = it->second.working;
        return;
    }
    if (differsFromStored(s, it->second.working) || slotRecno[s] == 0) {
        try {
            writeRow(s);
        } catch (...) {
            adding = wasAdding;
            throw;
        }
    } else {
        edits.erase(it);
    }
}

void RecordsetData::dropUnwritten() {
    const auto unwritten = [this](quint32 s) { return slotRecno[s] == 0; };
    std::erase_if(rows, unwritten);
    std::erase_if(visible, unwritten);
    current = qBound<qsizetype>(0, current, size());
    adding = false;
}

namespace {
void checkClosed(const RecordsetData& d) {
    if (d.open)
        raise(DbErrors::Open, "Operation is not allowed when the object is open.");
}
} // namespace

Recordset::Recordset(QObject* parent) : QObject(parent), d(std::make_unique<RecordsetData>()) {}

Recordset::~Recordset() = default;

void Recordset::emitCurrentRowChanged() {
    Q_EMIT currentRowChanged();
}

// Settings

void Recordset::setCursorLocation(CursorLocation location) {
    checkClosed(*d);
    d->location = location;
}
CursorLocation Recordset::cursorLocation() const {
    return d->location;
}
void Recordset::setCursorType(CursorType type) {
    checkClosed(*d);
    d->cursorType = type;
}
CursorType Recordset::cursorType() const {
    return d->cursorType;
}
void Recordset::setLockType(LockType type) {
    checkClosed(*d);
    d->lockType = type;
}
LockType Recordset::lockType() const {
    return d->lockType;
}

// Opening and closing

void Recordset::open(const QString& source, Connection& connection, CursorType cursorType,
                     LockType lockType) {
    checkClosed(*d);
    d->cursorType = cursorType;
    d->lockType = lockType;
    open(source, connection);
}

void Recordset::open(const QString& source, Connection& connection) {
    checkClosed(*d);
    d->source = source;
    d->connection = connection.state_;
    open();
}

void Recordset::open() {
    checkClosed(*d);
    if (!d->connection || d->source.isEmpty())
        raise(DbErrors::NotAllowed, "The recordset has no source or connection to open.");
    d->connection->checkOpen();
    d->load();
    d->open = true;
    emitCurrentRowChanged();
}

void Recordset::close() {
    d->checkOpen();
    d->open = false;
    d->table.reset();
    d->rows.clear();
    d->visible.clear();
    d->edits.clear();
    d->adding = false;
    emitCurrentRowChanged();
}

bool Recordset::isOpen() const {
    return d->open;
}

QString Recordset::source() const {
    return d->source;
}

void Recordset::requery() {
    d->checkOpen();
    if (!d->batch())
        d->leaveRow();
    d->connection->checkOpen();
    d->load();
    emitCurrentRowChanged();
}

// Moving

void Recordset::moveFirst() {
    move(0, MoveStart::First);
}

void Recordset::moveLast() {
    move(0, MoveStart::Last);
}

void Recordset::moveNext() {
    if (eof())
        d->checkRow();
    move(1);
}

void Recordset::movePrevious() {
    if (bof())
        d->checkRow();
    move(-1);
}

void Recordset::move(int n, MoveStart start) {
    d->checkOpen();
    if (start == MoveStart::Current && ((n > 0 && eof()) || (n < 0 && bof())))
        d->checkRow();
    d->leaveRow();
    qsizetype base = d->current;
    if (start == MoveStart::First)
        base = 0;
    else if (start == MoveStart::Last)
        base = d->size() - 1;
    d->current = d->size() == 0 ? 0 : qBound<qsizetype>(-1, base + n, d->size());
    emitCurrentRowChanged();
}

bool Recordset::bof() const {
    d->checkOpen();
    return d->size() == 0 || d->current < 0;
}

bool Recordset::eof() const {
    d->checkOpen();
    return d->size() == 0 || d->current >= d->size();
}

int Recordset::absolutePosition() const {
    d->checkOpen();
    if (d->size() == 0)
        return PositionUnknown;
    if (d->current < 0)
        return PositionBof;
    return d->current >= d->size() ? PositionEof : int(d->current + 1);
}

void Recordset::setAbsolutePosition(int position) {
    d->checkOpen();
    if (position < 1 || position > d->size())
        raise(3001, "Arguments are of the wrong type, are out of acceptable range, or are in "
                    "conflict with one another.");
    move(position - 1, MoveStart::First);
}

int Recordset::recordCount() const {
    d->checkOpen();
    return int(d->size());
}

// Fields and values

int Recordset::fieldCount() const {
    d->checkOpen();
    return int(d->fields.size());
}

QString Recordset::fieldName(int index) const {
    return d->fields[d->checkField(index)].name;
}

int Recordset::fieldIndex(const QString& name) const {
    d->checkOpen();
    for (int i = 0; i < d->fields.size(); ++i)
        if (d->fields[i].name.compare(name.trimmed(), Qt::CaseInsensitive) == 0)
            return i;
    return -1;
}

FieldDef Recordset::field(int index) const {
    return d->fields[d->checkField(index)];
}

QVariant Recordset::value(int index) const {
    d->checkField(index);
    d->checkRow();
    return Dbf::decodeField(d->shown(d->slot()) + d->fieldOffset(index), d->fields[index],
                            *d->table->codec);
}

QVariant Recordset::value(const QString& name) const {
    return value(d->checkField(fieldIndex(name)));
}

QVariant Recordset::storedValue(int index) const {
    d->checkField(index);
    d->checkRow();
    return Dbf::decodeField(d->stored(d->slot()) + d->fieldOffset(index), d->fields[index],
                            *d->table->codec);
}

void Recordset::setValue(int index, const QVariant& value) {
    d->checkField(index);
    d->checkUpdatable();
    d->checkRow();
    const quint32 s = d->slot();
    auto it = d->edits.find(s);
    if (it == d->edits.end()) {
        const QByteArray stored(d->stored(s), d->recordLength());
        it = d->edits.emplace(s, Edit{stored, stored}).first;
    }
    Dbf::encodeField(it->second.working.data() + d->fieldOffset(index), d->fields[index], value,
                     *d->table->codec);
    Q_EMIT valueChanged(index);
}

void Recordset::setValue(const QString& name, const QVariant& value) {
    setValue(d->checkField(fieldIndex(name)), value);
}

// Editing

EditMode Recordset::editMode() const {
    d->checkOpen();
    if (!d->onRow())
        return EditMode::None;
    if (d->adding)
        return EditMode::Add;
    const auto it = d->edits.find(d->slot());
    const bool edited = it != d->edits.end() && it->second.working != it->second.batched;
    return edited ? EditMode::InProgress : EditMode::None;
}

void Recordset::addNew() {
    d->checkUpdatable();
    d->leaveRow();
    const auto s = quint32(d->slotRecno.size());
    const QByteArray blank = Dbf::blankRecord(d->table->header);
    d->table->records.append(blank);
    d->slotRecno.push_back(0);
    d->rows.push_back(s);
    d->visible.push_back(s);
    d->beforeAdd = d->current;
    d->current = d->size() - 1;
    d->edits.emplace(s, Edit{blank, blank});
    d->adding = true;
    emitCurrentRowChanged();
}

void Recordset::update() {
    d->checkUpdatable();
    d->checkRow();
    d->leaveRow();
}

void Recordset::cancelUpdate() {
    d->checkOpen();
    if (!d->onRow())
        return;
    if (d->adding && d->slotRecno[d->slot()] == 0) {
        d->edits.erase(d->slot());
        const qsizetype back = d->beforeAdd;
        d->dropUnwritten();
        d->current = d->size() == 0 ? 0 : qBound<qsizetype>(-1, back, d->size());
        emitCurrentRowChanged();
        return;
    }
    d->adding = false;
    const quint32 s = d->slot();
    const auto it = d->edits.find(s);
    if (it != d->edits.end()) {
        it->second.working = it->second.batched;
        if (!d->pending(s))
            d->edits.erase(it);
    }
    emitCurrentRowChanged();
}

void Recordset::updateBatch() {
    d->checkUpdatable();
    d->leaveRow();
    // Every pending row is tried; one refused by another workstation does not stop the others.
    std::optional<DbError> first;
    int refused = 0;
    for (quint32 s : d->rows) {
        if (!d->pending(s))
            continue;
        try {
            if (!d->edits.count(s)) {
                const QByteArray blank = Dbf::blankRecord(d->table->header);
                d->edits.emplace(s, Edit{blank, blank});
            }
            d->writeRow(s);
        } catch (const DbError& e) {
            ++refused;
            if (!first)
                first = e;
        }
    }
    if (!first)
        return;
    if (refused == 1)
        throw *first;
    throw DbError(
        first->number(),
        QStringLiteral("%1 (%2 rows were not saved.)").arg(first->description()).arg(refused));
}

void Recordset::cancelBatch() {
    d->checkOpen();
    d->edits.clear();
    d->dropUnwritten();
    emitCurrentRowChanged();
}

bool Recordset::hasPendingChanges() const {
    d->checkOpen();
    for (quint32 s : d->rows)
        if (d->pending(s))
            return true;
    return editMode() != EditMode::None;
}

// Filter and find

void Recordset::setFilter(const QString& filter) {
    d->checkOpen();
    d->leaveRow();
    const QString previous = d->filter;
    d->filter = filter;
    try {
        d->applyFilter();
    } catch (...) {
        d->filter = previous;
        d->applyFilter();
        throw;
    }
    emitCurrentRowChanged();
}

QString Recordset::filter() const {
    return d->filter;
}

void Recordset::find(const QString& criterion, int skipRecords, SearchDirection direction,
                     MoveStart start) {
    d->checkOpen();
    ExprPtr expr = Sql::parseCondition(criterion);
    checkCriterionForm(*expr, criterion);
    bindExpr(*expr, d->table->header, *d->table->codec);
    d->leaveRow();
    const bool forward = direction == SearchDirection::Forward;
    qsizetype i = d->current;
    if (start == MoveStart::First)
        i = 0;
    else if (start == MoveStart::Last)
        i = d->size() - 1;
    else if (i < 0 && forward)
        i = 0;
    i += forward ? skipRecords : -skipRecords;
    const qsizetype step = forward ? 1 : -1;
    for (; i >= 0 && i < d->size(); i += step) {
        if (isTrue(*expr, d->shown(d->visible[size_t(i)]), d->table->header)) {
            d->current = i;
            emitCurrentRowChanged();
            return;
        }
    }
    d->current = forward ? d->size() : -1;
    emitCurrentRowChanged();
}
