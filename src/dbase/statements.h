#pragma once

#include "dbase/sqlparser.h"

struct ConnectionState;

// Runs a statement that writes tables (SELECT ... INTO, INSERT INTO ... SELECT, CREATE TABLE,
// ALTER TABLE); returns the number of rows written. Every table it changes is written anew
// and renamed over the old one.
qint64 runWritingStatement(Statement& statement, const ConnectionState& connection);
