#pragma once

#include <QtGlobal>

// The layout of the parts file's Clipper index (STOCK.NTX) and of the record fields the search
// shows from STOCK.DBF. Both files belong to the dealer's parts-catalogue program; this program
// only reads them (the index writer of the tools and tests follows the same layout).
namespace NtxLayout {

// Index header, at offset 0.
inline constexpr qint64 HeaderSize = 1024;
inline constexpr qint64 HeaderBytesRead = 278; // 22 bytes of numbers, key expression, one byte
inline constexpr int RootOffsetAt = 4;

// Index pages.
inline constexpr int KeySize = 15;              // the part number
inline constexpr int ItemSize = 23;             // child page, record number, key
inline constexpr int MaxKeys = 38;              // keys per page
inline constexpr int OffsetCount = MaxKeys + 1; // item offsets at bytes 2 to 79
inline constexpr int FirstItemAt = 80;          // items from byte 80 of the page
inline constexpr int ItemsRead = 42;            // items read with each page
inline constexpr int PageBytesRead = FirstItemAt + ItemsRead * ItemSize; // 1046
inline constexpr qint64 PageSize = 1024; // the block size of the index file

// Within an item.
inline constexpr int ItemChildAt = 0;
inline constexpr int ItemRecordAt = 4;
inline constexpr int ItemKeyAt = 8;

} // namespace NtxLayout

// The fields of a STOCK.DBF record that the search reads, by byte position in the record (byte 0
// being the deletion flag). The table's own field list belongs to the parts-catalogue program.
namespace StockLayout {

inline constexpr int HeaderBytesRead = 32;
inline constexpr int HeaderLengthAt = 8;
inline constexpr int RecordLengthAt = 10;

inline constexpr int BytesRead = 205; // from the byte after the deletion flag
inline constexpr int NumberAt = 3;
inline constexpr int NumberWidth = 15;
inline constexpr int DescriptionAt = 18;
inline constexpr int DescriptionWidth = 30;
inline constexpr int PricesAt = 78; // four prices of 9 bytes each
inline constexpr int PriceWidth = 9;
inline constexpr int CostAt = 114;
inline constexpr int CostWidth = 10;
inline constexpr int FamilyAt = 201;
inline constexpr int FamilyWidth = 5;
inline constexpr int RecordSize = 206; // the smallest record that holds every field above

} // namespace StockLayout
