#pragma once

#include "dbase/fielddef.h"

#include <QDate>
#include <QList>
#include <QString>

// Writes the demo installation's tables under root (the installation's drive directory),
// creating NVNV, PRG, NVGL and NVINFO when missing: PRIXLIST (about 60 price lists: activated
// and up to date, to be updated, upcoming, not activated; associations in CATNO), CATALIST (12
// catalogues with their categories), PARAPROG, DEPART, NVVERS, NVAPPEL, NVINDEX, and the
// 45-field form of PRIXLIST before CATNO as NVNV/PRIXLIST.OLD-FORM.DBF. Dates are relative to
// `today`. Throws DbError when a table cannot be written.
void writeDemoTables(const QString& root, const QDate& today = QDate::currentDate());

// PRIXLIST's fields in their order; without CATNO, the 45-field form of older installations.
QList<FieldDef> PrixListFields(bool withCatno);

// The fields of the newsletter index NVINDEX, in their order: NUMERO, ANNONCEUR (column 1),
// DATEPUB, CATEGORIE, SUJET (column 4), FICHIER, LANGUE, PAGES, AUTEUR, RESUME, TEXTE (column
// 10, the newsletter's text).
QList<FieldDef> NewsletterFields();
