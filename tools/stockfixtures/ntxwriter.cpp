#include "stockfixtures/ntxwriter.h"

#include "partsfile/cp1252.h"
#include "partsfile/ntxlayout.h"

#include <QtEndian>
#include <algorithm>
#include <cstring>
#include <random>

namespace {

using namespace NtxLayout;

void putUInt16(QByteArray& bytes, qint64 at, quint16 value) {
    qToLittleEndian(value, bytes.data() + at);
}
void putUInt32(QByteArray& bytes, qint64 at, quint32 value) {
    qToLittleEndian(value, bytes.data() + at);
}

QByteArray indexHeader(quint32 root, const QByteArray& keyExpression) {
    QByteArray header(HeaderSize, '\0');
    putUInt16(header, 0, 6); // signature
    putUInt16(header, 2, 1); // version
    putUInt32(header, RootOffsetAt, root);
    putUInt32(header, 8, 0); // no free page
    putUInt16(header, 12, ItemSize);
    putUInt16(header, 14, KeySize);
    putUInt16(header, 16, 0); // decimals
    putUInt16(header, 18, MaxKeys);
    putUInt16(header, 20, MaxKeys / 2);
    std::memcpy(header.data() + 22, keyExpression.constData(),
                size_t(std::min<qsizetype>(keyExpression.size(), 255)));
    // 278 unique flag, 280 descending flag, 282 the FOR expression: all left at zero.
    return header;
}

// One page before it is laid out: its keys (by entry index) and its children.
struct PageDraft {
    std::vector<int> entries;
    std::vector<int> children; // page numbers, one more than entries, or empty for a leaf
    int height = 1;
};

class TreeBuilder {
public:
    TreeBuilder(const std::vector<NtxEntry>& entries, const NtxOptions& options)
        : entries_(entries), options_(options), rng_(options.seed),
          perPage_(std::clamp(options.keysPerPage, 1, MaxKeys)) {}

    NtxImage build() {
        const qint64 count = qint64(entries_.size());
        int height = 1;
        while (capacity(height) < count)
            ++height;
        const int root = draft(0, count, height);
        NtxImage image;
        image.depth = height;
        image.root = offsetOf(root);
        image.bytes = indexHeader(image.root, options_.keyExpression);
        image.pageOfEntry.resize(entries_.size());
        for (int page = 0; page < int(drafts_.size()); ++page) {
            image.pages.push_back(offsetOf(page));
            image.pageHeights.push_back(drafts_[size_t(page)].height);
            for (int entry : drafts_[size_t(page)].entries)
                image.pageOfEntry[size_t(entry)] = offsetOf(page);
        }
        for (const PageDraft& page : drafts_)
            image.bytes += layout(page);
        image.entries = entries_;
        return image;
    }

private:
    // Keys a subtree of the given height holds when its pages are full.
    qint64 capacity(int height) const {
        qint64 keys = 0;
        for (int level = 0; level < height && keys < (qint64(1) << 40); ++level)
            keys = keys * (perPage_ + 1) + perPage_;
        return keys;
    }

    static quint32 offsetOf(int page) { return quint32(HeaderSize + PageSize * page); }

    // Drafts the subtree of entries [first, last); children get their page numbers first, so
    // the root is the last page of the file.
    int draft(qint64 first, qint64 last, int height) {
        PageDraft page;
        page.height = height;
        const qint64 count = last - first;
        if (height == 1) {
            for (qint64 e = first; e < last; ++e)
                page.entries.push_back(int(e));
        } else {
            const qint64 below = capacity(height - 1);
            const qint64 children = (count + 1 + below) / (below + 1);
            const qint64 inChildren = count - (children - 1);
            qint64 at = first;
            for (qint64 c = 0; c < children; ++c) {
                const qint64 size = inChildren / children + (c < inChildren % children ? 1 : 0);
                page.children.push_back(draft(at, at + size, height - 1));
                at += size;
                if (c + 1 < children)
                    page.entries.push_back(int(at++));
            }
        }
        drafts_.push_back(std::move(page));
        return int(drafts_.size()) - 1;
    }

    static void putItem(QByteArray& page, int slot, quint32 child, quint32 record,
                        const char* key) {
        const int at = FirstItemAt + slot * ItemSize;
        putUInt32(page, at + ItemChildAt, child);
        putUInt32(page, at + ItemRecordAt, record);
        if (key)
            std::memcpy(page.data() + at + ItemKeyAt, key, KeySize);
    }

    // An item a Clipper program left behind when it moved keys: plausible, but no longer part
    // of the page.
    void putStaleItem(QByteArray& page, int slot) {
        const NtxEntry old = entries_.empty() ? NtxEntry{} : entries_[rng_() % entries_.size()];
        const quint32 child = offsetOf(int(rng_() % drafts_.size()));
        putItem(page, slot, child, old.record + 1, old.key.data());
    }

    QByteArray layout(const PageDraft& draft) {
        QByteArray page(PageSize, '\0');
        const int keys = int(draft.entries.size());
        std::array<int, OffsetCount> slots;
        for (int i = 0; i < OffsetCount; ++i)
            slots[size_t(i)] = i;
        if (options_.clipperUpdated) {
            for (int i = OffsetCount - 1; i > 0; --i)
                std::swap(slots[size_t(i)], slots[rng_() % quint32(i + 1)]);
        }
        putUInt16(page, 0, quint16(keys));
        for (int i = 0; i < OffsetCount; ++i)
            putUInt16(page, 2 + 2 * i, quint16(FirstItemAt + ItemSize * slots[size_t(i)]));
        const auto childAt = [&](int i) {
            return draft.children.empty() ? 0u : offsetOf(draft.children[size_t(i)]);
        };
        for (int i = 0; i < keys; ++i) {
            const NtxEntry& entry = entries_[size_t(draft.entries[size_t(i)])];
            putItem(page, slots[size_t(i)], childAt(i), entry.record, entry.key.data());
        }
        putItem(page, slots[size_t(keys)], childAt(keys), 0, nullptr);
        if (options_.clipperUpdated) {
            for (int i = keys + 1; i < OffsetCount; ++i)
                putStaleItem(page, slots[size_t(i)]);
        }
        return page;
    }

    const std::vector<NtxEntry>& entries_;
    const NtxOptions& options_;
    std::mt19937 rng_;
    int perPage_;
    std::vector<PageDraft> drafts_;
};

} // namespace

NtxKey NtxKeyOf(const QString& number) {
    NtxKey key;
    key.fill(' ');
    const QByteArray bytes = EncodeCp1252(number);
    std::memcpy(key.data(), bytes.constData(), size_t(std::min<qsizetype>(bytes.size(), KeySize)));
    return key;
}

NtxImage BuildNtx(std::vector<NtxEntry> entries, const NtxOptions& options) {
    std::stable_sort(entries.begin(), entries.end(), [](const NtxEntry& a, const NtxEntry& b) {
        const int order = std::memcmp(a.key.data(), b.key.data(), KeySize);
        return order != 0 ? order < 0 : a.record < b.record;
    });
    return TreeBuilder(entries, options).build();
}
