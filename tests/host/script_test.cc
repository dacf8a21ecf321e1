// Script lines: words and quotes, what each verb accepts, and the text
// handed on for commands the player does not know.
#include <gtest/gtest.h>

#include "script.h"

namespace {

ScriptCommand parsed(const std::string& line) {
    ScriptCommand command;
    std::string error;
    EXPECT_EQ(parseScriptCommand(line, command, error), ParseResult::Command)
        << line << ": " << error;
    return command;
}

std::string errorFor(const std::string& line) {
    ScriptCommand command;
    std::string error;
    EXPECT_EQ(parseScriptCommand(line, command, error), ParseResult::Error) << line;
    return error;
}

TEST(ScriptLine, WordsQuotesAndEscapes) {
    std::vector<std::string> words;
    std::string error;
    ASSERT_TRUE(splitScriptWords(" a\t\"b c\" \"\" \"q\\\"x\\\\\" back\\slash ", words, error));
    EXPECT_EQ(words, (std::vector<std::string>{"a", "b c", "", "q\"x\\", "back\\slash"}));
    words.clear();
    EXPECT_FALSE(splitScriptWords("\"open \\\"", words, error));
    EXPECT_EQ(error, "unterminated quote");

    ScriptCommand command;
    EXPECT_EQ(parseScriptCommand("   # a comment", command, error), ParseResult::Empty);
    EXPECT_EQ(parseScriptCommand(" \t\r", command, error), ParseResult::Empty);
}

TEST(ScriptLine, PlayerVerbsCheckTheirArguments) {
    ScriptCommand show = parsed("show 10 20 100 50\r");
    EXPECT_EQ(show.verb, ScriptVerb::Show);
    EXPECT_EQ(show.numbers, (std::vector<long>{10, 20, 100, 50}));
    EXPECT_EQ(parsed("wheel 1 2 -3").numbers[2], -3);
    EXPECT_DOUBLE_EQ(parsed("wait-updates 2.5").seconds, 2.5);
    EXPECT_EQ(parsed("answer cancel").numbers[0], 1);
    EXPECT_EQ(parsed("track \"\" \"B\"").texts, (std::vector<std::string>{"", "B"}));

    EXPECT_EQ(errorFor("hide now"), "hide: expected 0 arguments, got 1");
    EXPECT_EQ(errorFor("idle -1"), "idle: '-1' is not a number (0 or more)");
    EXPECT_EQ(errorFor("move 1 40000"), "move: '40000' is not a coordinate (-32768 to 32767)");
    EXPECT_EQ(errorFor("show 0 0 0 10"),
              "show: X Y W H must be at least 0 0 1 1 and X+W, Y+H at most 8192");
    EXPECT_EQ(errorFor("resize 8000 0 193 10").substr(0, 7), "resize:");
    EXPECT_EQ(errorFor("wait-updates soon"), "wait-updates: 'soon' is not a number of seconds");
    EXPECT_EQ(errorFor("answer maybe"), "answer: expected default or cancel, not 'maybe'");
    EXPECT_EQ(errorFor("type"),
              "type: expected one text (the rest of the line or one quoted text)");
    EXPECT_EQ(errorFor("type \"a\" b"),
              "type: expected one text (the rest of the line or one quoted text)");
}

TEST(ScriptLine, KeysByNameOrCode) {
    EXPECT_EQ(keyCodeFromWord("return"), 13);
    EXPECT_EQ(keyCodeFromWord("enter"), 13);
    EXPECT_EQ(keyCodeFromWord("down"), 31);
    EXPECT_EQ(keyCodeFromWord("0"), 0);
    EXPECT_EQ(keyCodeFromWord("255"), 255);
    EXPECT_EQ(keyCodeFromWord("256"), -1);
    EXPECT_EQ(keyCodeFromWord("Tab"), -1);
    EXPECT_EQ(keyCodeFromWord("9x"), -1);
    EXPECT_EQ(errorFor("key escape"), "key: 'escape' is not a key code (0 to 255) or key name");
}

TEST(ScriptLine, OtherVerbsKeepTheRestOfTheLine) {
    ScriptCommand set = parsed("  set CID_LOCATION_TBOX_city  \"New  York\" ");
    EXPECT_EQ(set.verb, ScriptVerb::PluginCommand);
    EXPECT_EQ(set.name, "set");
    EXPECT_EQ(set.rest, "CID_LOCATION_TBOX_city  \"New  York\"");
    EXPECT_EQ(parsed("type New  York ").texts[0], "New  York");
    EXPECT_EQ(parsed("type \" padded \"").texts[0], " padded ");
    // Quotes are checked for every verb, the plug-in's too.
    EXPECT_EQ(errorFor("press \"half"), "unterminated quote");
}

} // namespace
