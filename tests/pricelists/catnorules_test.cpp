// The rules of CATNO: which entry goes on a dissociation, what counts as present, and the code
// a catalogue node's key names.

#include "pricelists/catnorules.h"

#include <gtest/gtest.h>

TEST(CatnoRules, AnEntryIsRemovedOnlyWhereAnEntryStarts) {
    struct Case {
        const char* catno;
        const char* code;
        const char* kept;
    };
    const Case cases[] = {
        {"AB;B;", "B", "AB;"},               // B; inside AB; is passed over
        {"B;C;", "B", "C;"},                 // the entry at the first character
        {"AXYZ;XYZ;", "XYZ", "AXYZ;"},       // only the second entry
        {"ABC;XYZ;DEF;", "XYZ", "ABC;DEF;"}, // in the middle
        {"AB;", "B", "AB;"},                 // no entry of B at all
        {"B;B;", "B", "B;"},                 // the first entry only
        {"", "B", ""},
    };
    for (const Case& c : cases)
        EXPECT_EQ(RemoveCatnoEntry(c.catno, c.code).toStdString(), c.kept)
            << c.catno << " less " << c.code;
}

TEST(CatnoRules, PresenceIsAPlainSubstringAndAppendAddsOneEntry) {
    EXPECT_TRUE(CatnoMentions("AB;", "B")) << "AB counts as holding B";
    EXPECT_TRUE(CatnoMentions("ABC;XYZ;", "XYZ"));
    EXPECT_FALSE(CatnoMentions("ABC;", "XY;"));
    EXPECT_FALSE(CatnoMentions("", "B"));
    EXPECT_EQ(AppendCatnoEntry("", "B"), "B;");
    EXPECT_EQ(AppendCatnoEntry("ABC;", "XY"), "ABC;XY;");
}

TEST(CatnoRules, TheCatalogueCodeOfAKeyHoldsForEveryLength) {
    EXPECT_EQ(CatalogueCodeOfKey("C  A"), "A");
    EXPECT_EQ(CatalogueCodeOfKey("C AB"), "AB");
    EXPECT_EQ(CatalogueCodeOfKey("CABC"), "ABC") << "a three-character code keeps its first letter";
}
