#include "stockfixtures/stockgenerator.h"

#include <QDir>
#include <QFile>
#include <algorithm>
#include <iterator>
#include <random>

namespace {

struct PartName {
    const char* french;
    const char* english;
    const char* family;
};

constexpr PartName PartNames[] = {
    {"PLAQUETTES DE FREIN AVANT", "FRONT BRAKE PADS", "FREIN"},
    {"PLAQUETTES DE FREIN ARRIÈRE", "REAR BRAKE PADS", "FREIN"},
    {"DISQUE DE FREIN", "BRAKE ROTOR", "FREIN"},
    {"ÉTRIER DE FREIN RÉUSINÉ", "REMAN BRAKE CALIPER", "FREIN"},
    {"FILTRE À HUILE", "OIL FILTER", "FILT"},
    {"FILTRE À AIR", "AIR FILTER", "FILT"},
    {"FILTRE À CARBURANT", "FUEL FILTER", "FILT"},
    {"FILTRE D'HABITACLE", "CABIN AIR FILTER", "FILT"},
    {"BOUGIE D'ALLUMAGE", "SPARK PLUG", "ALLUM"},
    {"FILS DE BOUGIES", "SPARK PLUG WIRE SET", "ALLUM"},
    {"BOBINE D'ALLUMAGE", "IGNITION COIL", "ALLUM"},
    {"AMORTISSEUR AVANT", "FRONT SHOCK ABSORBER", "SUSP"},
    {"AMORTISSEUR ARRIÈRE", "REAR SHOCK ABSORBER", "SUSP"},
    {"ROTULE DE SUSPENSION", "BALL JOINT", "SUSP"},
    {"BIELLETTE STABILISATRICE", "SWAY BAR LINK", "SUSP"},
    {"EMBOUT DE BIELLETTE", "TIE ROD END", "DIR"},
    {"ROULEMENT DE ROUE", "WHEEL BEARING", "ROUL"},
    {"MOYEU DE ROUE AVANT", "FRONT HUB ASSEMBLY", "ROUL"},
    {"COURROIE DE DISTRIBUTION", "TIMING BELT", "MOT"},
    {"COURROIE SERPENTINE", "SERPENTINE BELT", "MOT"},
    {"TENDEUR DE COURROIE", "BELT TENSIONER", "MOT"},
    {"POMPE À EAU", "WATER PUMP", "REFR"},
    {"THERMOSTAT", "THERMOSTAT", "REFR"},
    {"RADIATEUR", "RADIATOR", "REFR"},
    {"JOINT DE CULASSE", "HEAD GASKET", "MOT"},
    {"DÉMARREUR RÉUSINÉ", "REMAN STARTER", "ELEC"},
    {"ALTERNATEUR RÉUSINÉ", "REMAN ALTERNATOR", "ELEC"},
    {"SONDE D'OXYGÈNE", "OXYGEN SENSOR", "ELEC"},
    {"LAMPE HALOGÈNE", "HALOGEN BULB", "ECL"},
    {"BALAI D'ESSUIE-GLACE", "WIPER BLADE", "ACC"},
    {"TROUSSE D'EMBRAYAGE", "CLUTCH KIT", "TRANS"},
    {"CÂBLE D'ACCÉLÉRATEUR", "ACCELERATOR CABLE", "DIV"},
    {"SILENCIEUX", "MUFFLER", "ECH"},
    {"CONVERTISSEUR CATALYTIQUE", "CATALYTIC CONVERTER", "ECH"},
};

const char* const Variants[] = {"",   "",   "",       " STD",   " HD",      " 12MM",  " 14MM",
                                " G", " D", " 2 PCS", " 4 PCS", " PREMIUM", " 6 CYL", " V8"};

using Random = std::function<quint32()>;

// Bodies that follow the group code: digits and letters in the forms suppliers use.
QString numberBody(const Random& rng) {
    const auto digits = [&](int n) {
        QString text;
        for (int i = 0; i < n; ++i)
            text += QChar(u'0' + int(rng() % 10));
        return text;
    };
    const auto letter = [&] { return QChar(u'A' + int(rng() % 26)); };
    switch (rng() % 6) {
    case 0:
        return digits(4 + int(rng() % 3));
    case 1:
        return digits(3 + int(rng() % 3)) + letter();
    case 2:
        return QString(letter()) + digits(4);
    case 3:
        return QString(letter()) + letter() + digits(2 + int(rng() % 3)) + letter();
    case 4:
        return digits(2) + u'-' + digits(4);
    default:
        return digits(5) + letter() + letter();
    }
}

std::vector<QString> uniqueNumbers(const StockGeneration& generation, const Random& rng) {
    std::vector<QString> numbers;
    const quint32 prefixCount = quint32(generation.prefixes.size());
    while (int(numbers.size()) < generation.parts) {
        const qsizetype missing = generation.parts - qsizetype(numbers.size());
        for (qsizetype i = 0; i < missing + missing / 16 + 16; ++i) {
            const QString prefix =
                prefixCount == 0 ? QString() : generation.prefixes[int(rng() % prefixCount)];
            numbers.push_back(QString(prefix + numberBody(rng)).left(15));
        }
        std::sort(numbers.begin(), numbers.end());
        numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    }
    // Records lie in the order the parts were entered, not in number order.
    for (size_t i = numbers.size() - 1; i > 0; --i)
        std::swap(numbers[i], numbers[rng() % quint32(i + 1)]);
    numbers.resize(size_t(generation.parts));
    return numbers;
}

NtxImage writeIndex(const QString& dir, std::vector<NtxEntry> entries, const NtxOptions& options) {
    NtxImage image = BuildNtx(std::move(entries), options);
    QFile index(QDir(dir).filePath(QStringLiteral("STOCK.NTX")));
    if (!index.open(QIODevice::WriteOnly | QIODevice::Truncate) ||
        index.write(image.bytes) != image.bytes.size())
        image.bytes.clear();
    return image;
}

} // namespace

StockPart GeneratedPart(const QString& number, const Random& rng) {
    const PartName& name = PartNames[rng() % std::size(PartNames)];
    const char* variant = Variants[rng() % std::size(Variants)];
    StockPart part;
    part.number = number;
    part.description = QString::fromUtf8(name.french) + QString::fromUtf8(variant);
    part.description2 = QString::fromUtf8(name.english) + QString::fromUtf8(variant);
    const double list = double(250 + rng() % 90000) / 100.0; // 2.50 to 902.49
    part.prices = {list, list * 0.9, list * 0.85, list * 0.8};
    part.cost = list * 0.6;
    part.family = QString::fromUtf8(name.family);
    return part;
}

NtxImage WriteStockFiles(const QString& dir, const std::vector<StockPart>& parts,
                         const NtxOptions& options) {
    QDir().mkpath(dir);
    StockTableWriter table(QDir(dir).filePath(QStringLiteral("STOCK.DBF")));
    std::vector<NtxEntry> entries;
    entries.reserve(parts.size());
    for (const StockPart& part : parts) {
        table.append(part);
        entries.push_back({NtxKeyOf(part.number), quint32(entries.size() + 1)});
    }
    if (!table.finish())
        return {};
    return writeIndex(dir, std::move(entries), options);
}

StockFiles WriteStockFiles(const QString& dir, const StockGeneration& generation) {
    std::mt19937 engine(generation.seed);
    const Random rng = [&engine] { return quint32(engine()); };
    StockFiles files;
    files.numbers = uniqueNumbers(generation, rng);
    const size_t count = files.numbers.size();
    // A few numbers entered twice, under other records.
    for (int i = 0; i < generation.duplicates && count > 1; ++i)
        files.numbers[rng() % count] = files.numbers[rng() % count];
    std::vector<bool> deleted(count, false);
    for (int i = 0; i < generation.deleted && count > 0; ++i)
        deleted[rng() % count] = true;

    QDir().mkpath(dir);
    StockTableWriter table(QDir(dir).filePath(QStringLiteral("STOCK.DBF")));
    std::vector<NtxEntry> entries;
    entries.reserve(count);
    for (size_t i = 0; i < count; ++i) {
        StockPart part = GeneratedPart(files.numbers[i], rng);
        part.deleted = deleted[i];
        table.append(part);
        entries.push_back({NtxKeyOf(part.number), quint32(i + 1)});
    }
    if (!table.finish())
        return files;
    const NtxImage image = writeIndex(dir, std::move(entries), generation.index);
    files.written = !image.bytes.isEmpty();
    files.depth = image.depth;
    files.pages = qint64(image.pages.size());
    return files;
}
