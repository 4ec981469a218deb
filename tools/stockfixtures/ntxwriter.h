#pragma once

#include <QByteArray>
#include <QString>
#include <QtGlobal>
#include <array>
#include <vector>

// Builds a Clipper index of the parts file's 15-character part number (for tools and tests:
// the program never writes an index). The result is a true B-tree built from the sorted keys:
// keys of inner pages are entries too, every leaf is at the same depth, equal keys are in
// record order.

using NtxKey = std::array<char, 15>;

struct NtxEntry {
    NtxKey key;
    quint32 record = 0; // from 1
};

struct NtxOptions {
    // Keys the writer puts in a full page (1 to 38); fewer make deeper trees from few keys.
    int keysPerPage = 38;
    // Pages as a Clipper program leaves them after updates: each offset table is a permutation
    // of the item slots and the unused slots hold stale items.
    bool clipperUpdated = false;
    quint32 seed = 1;
    QByteArray keyExpression = "NUMERO";
};

struct NtxImage {
    QByteArray bytes;
    quint32 root = 0;
    int depth = 0;                    // levels, the leaves included
    std::vector<quint32> pages;       // offset of every page, in file order (root last)
    std::vector<int> pageHeights;     // height of each page of `pages`, 1 for a leaf
    std::vector<NtxEntry> entries;    // the entries in index order
    std::vector<quint32> pageOfEntry; // the page holding each entry of `entries`
};

NtxImage BuildNtx(std::vector<NtxEntry> entries, const NtxOptions& options = {});

// A part number as an index key: Windows-1252, padded with blanks to 15 bytes.
NtxKey NtxKeyOf(const QString& number);
