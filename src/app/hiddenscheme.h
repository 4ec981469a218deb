#pragma once

// The scrambling of the hidden string table, shared by the program and by the build's table
// generator. Plain C++ so that the generator needs nothing else.
//
// Layout: the index holds little-endian 16-bit offsets into the data, one at byte 2n for each
// entry n (0 to 27); the entry ends where the next one starts. Bytes 56-57 hold the key offset:
// the key follows the last entry in the data, and bytes 58-59 give the end of the key.
//
// Each entry byte is stored as (plain + stream(n, i) + previous stored byte) mod 256, the chain
// starting from a key byte chosen by the entry number; stream() mixes the key with the entry
// number and the position, so equal texts in two entries are stored differently.

#include <cstddef>
#include <cstdint>
#include <vector>

namespace HiddenScheme {

constexpr int EntryCount = 28;
constexpr std::size_t KeyOffsetByte = 2 * EntryCount;
constexpr std::size_t IndexSize = KeyOffsetByte + 4;

using Bytes = std::vector<std::uint8_t>;

inline std::uint8_t stream(const Bytes& key, int entry, std::size_t i) {
    const std::uint8_t k = key[(i * 7 + std::size_t(entry) * 3) % key.size()];
    return std::uint8_t(k ^ std::uint8_t(entry * 29 + int(i) * 11 + 65));
}

inline std::uint8_t chainStart(const Bytes& key, int entry) {
    return key[std::size_t(entry) % key.size()];
}

inline Bytes scramble(const Bytes& plain, int entry, const Bytes& key) {
    Bytes out(plain.size());
    std::uint8_t previous = chainStart(key, entry);
    for (std::size_t i = 0; i < plain.size(); ++i) {
        out[i] = std::uint8_t(plain[i] + stream(key, entry, i) + previous);
        previous = out[i];
    }
    return out;
}

inline Bytes unscramble(const std::uint8_t* stored, std::size_t size, int entry, const Bytes& key) {
    Bytes out(size);
    std::uint8_t previous = chainStart(key, entry);
    for (std::size_t i = 0; i < size; ++i) {
        out[i] = std::uint8_t(stored[i] - stream(key, entry, i) - previous);
        previous = stored[i];
    }
    return out;
}

// Reads the 16-bit little-endian number at byte position of the index.
inline std::size_t offsetAt(const std::uint8_t* index, std::size_t position) {
    return std::size_t(index[position]) | (std::size_t(index[position + 1]) << 8);
}

} // namespace HiddenScheme
