// Build-time generator of the hidden string table: reads the plain list (entry number, then the
// text between double quotes) and writes the scrambled data and its index.
//
// Usage: hiddengen LIST DATA INDEX
#include "app/hiddenscheme.h"

#include <array>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <optional>
#include <sstream>
#include <string>

namespace {

using HiddenScheme::Bytes;
using Entries = std::array<std::optional<std::string>, HiddenScheme::EntryCount>;

struct ListError {
    int line;
    std::string reason;
};

bool isPlainAscii(const std::string& text) {
    for (const char c : text) {
        if (static_cast<unsigned char>(c) < 0x20 || static_cast<unsigned char>(c) > 0x7e)
            return false;
    }
    return true;
}

void parseLine(const std::string& line, int number, Entries& entries) {
    const auto open = line.find('"');
    const auto close = line.rfind('"');
    if (open == std::string::npos || close == open)
        throw ListError{number, "expected: number \"text\""};
    std::istringstream head(line.substr(0, open));
    int entry = -1;
    std::string rest;
    if (!(head >> entry) || (head >> rest))
        throw ListError{number, "expected an entry number before the text"};
    if (entry < 0 || entry >= HiddenScheme::EntryCount)
        throw ListError{number,
                        "entry number outside 0.." + std::to_string(HiddenScheme::EntryCount - 1)};
    if (entries[entry])
        throw ListError{number, "entry " + std::to_string(entry) + " given twice"};
    const std::string text = line.substr(open + 1, close - open - 1);
    if (!isPlainAscii(text))
        throw ListError{number, "only printable ASCII is allowed"};
    entries[entry] = text;
}

Entries readList(std::istream& in) {
    Entries entries;
    std::string line;
    for (int number = 1; std::getline(in, line); ++number) {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        if (line.find_first_not_of(" \t") == std::string::npos || line.front() == '#')
            continue;
        parseLine(line, number, entries);
    }
    return entries;
}

// A fixed key, so that the same list always gives the same resources.
Bytes makeKey() {
    Bytes key(16);
    std::uint32_t state = 0x4e565356u;
    for (auto& byte : key) {
        state = state * 1103515245u + 12345u;
        byte = std::uint8_t(state >> 16);
    }
    return key;
}

void putOffset(Bytes& index, std::size_t value) {
    index.push_back(std::uint8_t(value & 0xff));
    index.push_back(std::uint8_t(value >> 8));
}

bool writeFile(const char* path, const Bytes& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()));
    return bool(out);
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        std::cerr << "usage: hiddengen LIST DATA INDEX\n";
        return 2;
    }
    std::ifstream list(argv[1]);
    if (!list) {
        std::cerr << argv[1] << ": cannot be read\n";
        return 1;
    }
    Entries entries;
    try {
        entries = readList(list);
    } catch (const ListError& error) {
        std::cerr << argv[1] << ":" << error.line << ": " << error.reason << "\n";
        return 1;
    }
    const Bytes key = makeKey();
    Bytes data;
    Bytes index;
    for (int n = 0; n < HiddenScheme::EntryCount; ++n) {
        putOffset(index, data.size());
        const std::string text = entries[n].value_or(std::string());
        const Bytes stored = HiddenScheme::scramble(Bytes(text.begin(), text.end()), n, key);
        data.insert(data.end(), stored.begin(), stored.end());
    }
    putOffset(index, data.size());
    data.insert(data.end(), key.begin(), key.end());
    putOffset(index, data.size());
    if (data.size() > 0xffff) {
        std::cerr << argv[1] << ": the table exceeds the 16-bit offsets\n";
        return 1;
    }
    if (!writeFile(argv[2], data) || !writeFile(argv[3], index)) {
        std::cerr << "cannot write the table\n";
        return 1;
    }
    return 0;
}
