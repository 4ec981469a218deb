#pragma once

#include "dbase/connection.h"
#include "dbase/fielddef.h"

#include <QObject>
#include <QString>
#include <QVariant>
#include <memory>

enum class CursorType { ForwardOnly, Keyset, Dynamic, Static };
enum class LockType { ReadOnly, Pessimistic, Optimistic, BatchOptimistic };
enum class EditMode { None, InProgress, Add };
// Where a move or a search starts: the current row, the first row or the last row.
enum class MoveStart { Current, First, Last };
enum class SearchDirection { Forward, Backward };

// absolutePosition() before the first and after the last row (the provider's values).
constexpr int PositionUnknown = -1;
constexpr int PositionBof = -2;
constexpr int PositionEof = -3;

struct RecordsetData;

// The rows of one statement ("SELECT ... FROM t ...") or of a whole table (its name), kept on
// the client, with a current row, pending edits, a filter and find. Values are QVariant:
// QString for C (trailing blanks dropped), double for N and F, QDate for D, bool for L, and a
// null QVariant for Null (blank fields, M fields).
//
// Writing follows the lock type: with Optimistic, update() (or moving off an edited row)
// writes the row at once; with BatchOptimistic, edits stay pending until updateBatch(). A row
// that another workstation changed since it was read is never overwritten: the write throws
// DbError (DbErrors::RowChanged). Any use of a closed recordset throws DbError 3704.
class Recordset : public QObject {
    Q_OBJECT
public:
    explicit Recordset(QObject* parent = nullptr);
    ~Recordset() override;

    // Settings that take effect at the next open; changing them while open throws DbError
    // 3705. The cursor location and type are kept for the program's settings only.
    void setCursorLocation(CursorLocation location);
    CursorLocation cursorLocation() const;
    void setCursorType(CursorType type);
    CursorType cursorType() const;
    void setLockType(LockType type);
    LockType lockType() const;

    // Opens on a statement or a table name through an open connection (which must outlive
    // the recordset's use). The first form sets the cursor and lock types first; the second
    // uses the settings above; the third reopens the former source on the former connection.
    void open(const QString& source, Connection& connection, CursorType cursorType,
              LockType lockType);
    void open(const QString& source, Connection& connection);
    void open();
    // Closes; pending edits that were not written are dropped.
    void close();
    bool isOpen() const;
    QString source() const;
    // Reads the rows again from the table (the filter stays) and goes to the first row. An
    // edited row is saved first with Optimistic; a pending batch is dropped.
    void requery();

    void moveFirst();
    void moveLast();
    void moveNext();     // throws 3021 when already after the last row
    void movePrevious(); // throws 3021 when already before the first row
    // Moves n rows from the start given; past either end gives BOF or EOF.
    void move(int n, MoveStart start = MoveStart::Current);
    bool bof() const;
    bool eof() const;
    // 1-based position of the current row among the visible rows, or PositionBof/Eof.
    int absolutePosition() const;
    void setAbsolutePosition(int position);
    // Number of visible rows (those that pass the filter).
    int recordCount() const;

    int fieldCount() const;
    QString fieldName(int index) const;
    // Ordinal of a field named without regard to case, or -1.
    int fieldIndex(const QString& name) const;
    FieldDef field(int index) const;

    // Value of the current row, pending edits included. Throws 3021 at BOF/EOF, 3265 for an
    // unknown field.
    QVariant value(int index) const;
    QVariant value(const QString& name) const;
    // Value of the current row as last read from or written to the table, without edits.
    QVariant storedValue(int index) const;
    // Edits the current row's pending value. A null QVariant or an empty text stores Null.
    // Texts are accepted for numbers (point as decimal separator), dates (yyyyMMdd,
    // yyyy-MM-dd, dd/MM/yyyy...) and logicals ("T"/"F", "True"/"False", "-1"/"0"/"1").
    void setValue(int index, const QVariant& value);
    void setValue(const QString& name, const QVariant& value);

    EditMode editMode() const;
    // Appends an empty row and makes it current; update() writes it.
    void addNew();
    // Writes the current row's edits (Optimistic), or keeps them for the batch
    // (BatchOptimistic).
    void update();
    // Drops the current row's edits since its last update().
    void cancelUpdate();
    // Writes every row with pending edits (BatchOptimistic); with Optimistic, the current row.
    void updateBatch();
    // Drops every pending edit.
    void cancelBatch();
    // True when some row holds edits that are not in the table yet.
    bool hasPendingChanges() const;

    // Shows only the rows that satisfy a filter such as "[UTILISER] = True AND [CODEGRO] =
    // 'AB'" (an OR of AND groups of comparisons of a field with a value); "" shows every row.
    // The current row becomes the first visible row.
    void setFilter(const QString& filter);
    QString filter() const;
    // Searches for the first row from the start given that satisfies one comparison such as
    // "FICHIER = 'ABC'" (the start row included unless skipRecords is 1); leaves the recordset
    // at EOF (or BOF searching backward) when no row matches.
    void find(const QString& criterion, int skipRecords = 0,
              SearchDirection direction = SearchDirection::Forward,
              MoveStart start = MoveStart::Current);

Q_SIGNALS:
    // The current row changed: a move, a find, an open, a requery, a filter, a close, or the
    // current row's values were reloaded (cancelUpdate, cancelBatch).
    void currentRowChanged();
    // A pending value of the current row changed through setValue().
    void valueChanged(int index);

private:
    void emitCurrentRowChanged();
    std::unique_ptr<RecordsetData> d;
};
