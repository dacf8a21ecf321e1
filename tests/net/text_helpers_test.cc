// The bounded substring search, blank trimming and query escaping.
#include "net/text_helpers.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(StrFind, SearchesFromTheStartIndex) {
    EXPECT_EQ(strFind("abcabc", "bc", 0), 1);
    EXPECT_EQ(strFind("abcabc", "bc", 2), 4);
    EXPECT_EQ(strFind("abcabc", "bc", 5), -1);
    EXPECT_EQ(strFind("abc", "x", 0), -1);
    EXPECT_EQ(strFind("abc", "", 3), 3);
    EXPECT_EQ(strFind("abc", "", 4), -1) << "text shorter than start";
    EXPECT_EQ(strFind("abc", "a", -1), -1);
    EXPECT_EQ(strFind(nullptr, "a", 0), -1);
}

TEST(StrFindBetween, WholeOccurrenceMustEndByTheLimit) {
    EXPECT_EQ(strFindBetween("<a></a>", "</a>", 0, 7), 3);
    EXPECT_EQ(strFindBetween("<a></a>", "</a>", 0, 6), -1);
    EXPECT_EQ(strFindBetween("<a></a>", "<a>", 1, 7), -1);
    EXPECT_EQ(strFindBetween("<a></a>", "a", 3, 3), -1) << "end must lie after start";
    EXPECT_EQ(strFindBetween("<a></a>", "a", 4, 2), -1);
}

TEST(Trimming, OnlyBlanksGo) {
    char trailing[] = " a b \t  ";
    strRemoveTrailingSpaces(trailing);
    EXPECT_STREQ(trailing, " a b \t");
    char leading[] = "   \ta b ";
    strRemoveLeadingSpaces(leading);
    EXPECT_STREQ(leading, "\ta b ");
    char blanks[] = "    ";
    strRemoveLeadingSpaces(blanks);
    EXPECT_STREQ(blanks, "");
    char more[] = "   ";
    strRemoveTrailingSpaces(more);
    EXPECT_STREQ(more, "");
}

TEST(ReplaceSpacesWithPluses, EscapesOnlyBlanks) {
    char value[] = " San Jose\tCA ";
    replaceSpacesWithPluses(value);
    EXPECT_STREQ(value, "+San+Jose\tCA+");
}

} // namespace
