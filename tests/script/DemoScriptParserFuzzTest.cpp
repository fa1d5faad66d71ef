#include "script/DemoScriptParserTest.h"

#include "script/StringTokenizer.h"
#include "script/StringUtils.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <random>
#include <string>

namespace {

const char* const PUNCTUATION[] = {"{", "}", "(", ")", ";", ".",  ":",  "<",
                                   "=", "*", "[", "]", ",", "//", "\n", " "};

// Damages a script in one to three places: flipped bytes, a cut-off end, a
// slice doubled or removed, or inserted punctuation of the grammar.
class ScriptMutator {
public:
    explicit ScriptMutator(unsigned int seed) : random(seed) {}

    std::string mutate(std::string text) {
        int rounds = pick(1, 3);
        for (int i = 0; i < rounds && !text.empty(); i++) {
            text = mutateOnce(text);
        }
        return text;
    }

private:
    int pick(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); }

    size_t position(const std::string& text) {
        return static_cast<size_t>(pick(0, static_cast<int>(text.size()) - 1));
    }

    std::string mutateOnce(std::string text) {
        switch (pick(0, 4)) {
        case 0:
            text[position(text)] = static_cast<char>(pick(0, 255));
            break;
        case 1:
            text.resize(position(text));
            break;
        case 2: {
            size_t start = position(text);
            size_t length = static_cast<size_t>(pick(1, 40));
            std::string slice = text.substr(start, length);
            text.insert(position(text), slice);
            break;
        }
        case 3:
            text.erase(position(text), static_cast<size_t>(pick(1, 40)));
            break;
        default: {
            const int count = sizeof(PUNCTUATION) / sizeof(PUNCTUATION[0]);
            text.insert(position(text), PUNCTUATION[pick(0, count - 1)]);
            break;
        }
        }
        return text;
    }

    std::mt19937 random;
};

} // namespace

class DemoScriptParserFuzzTest : public DemoScriptParserTest {
protected:
    // True if the parser could reach a block "paths" whose statements hold
    // no key "definition". The same tokenizing as the parser's finds every
    // place where a name "paths" stands before a "{", whether or not the
    // parser would get there.
    static bool mayLackDefinition(const std::string& text) {
        DemoScriptParser steps("unused");
        StringTokenizer tokens(steps.stripComments(text), "{}", true);
        std::vector<std::string> all;
        while (tokens.hasMoreTokens()) {
            all.push_back(tokens.getNext());
        }
        for (size_t i = 0; i + 1 < all.size(); i++) {
            if (steps.stripComments(all[i]) != "paths" || StringUtils::trim(all[i + 1]) != "{") {
                continue;
            }
            bool found = false;
            StringTokenizer statements((i + 2 < all.size()) ? all[i + 2] : "", ";");
            while (statements.hasMoreTokens()) {
                StringTokenizer parts(statements.getNext(), "=");
                if (StringUtils::trim(parts.getNext()) == "definition") {
                    found = true;
                }
            }
            if (!found) {
                return true;
            }
        }
        return false;
    }

    // The fatal cases of the script language are left out: a call of the
    // pool event "modify" (its group lacks "method"), and a paths block
    // without "definition". The definition files stay as they are, so every
    // declared parameter keeps its type and default and every method its
    // "<event>".
    static bool isFatal(const std::string& text) {
        return text.find("modify") != std::string::npos || mayLackDefinition(text);
    }

    int fed = 0;
    int validScripts = 0;
    int validTimelines = 0;
    int refusedScripts = 0;
    int refusedTimelines = 0;

    void feed(const std::string& text) {
        fed++;
        // A fresh file each time: rewriting one in place makes the file
        // system flush it on every round.
        std::remove(dir.file("demo.txt").c_str());
        dir.write("demo.txt", text);
        parser = new DemoScriptParser(dir.file("demo.txt"));
        parser->parseDefaults(true);
        parser->parse();
        systemStore = parser->getParameterGroup("system_parameters");
        effectStore = parser->getParameterGroup("effect_parameters");
        if (!parser->isValid()) {
            refusedScripts++;
            EXPECT_NE("", parser->getErrorMessage()) << text;
            return;
        }
        validScripts++;
        EXPECT_EQ("", parser->getErrorMessage()) << text;
        createEffectObjects();
        timeline = parser->parseTimeline();
        if (timeline == nullptr) {
            refusedTimelines++;
            EXPECT_FALSE(parser->isValid()) << text;
            EXPECT_NE("", parser->getErrorMessage()) << text;
            return;
        }
        validTimelines++;
        EXPECT_TRUE(parser->isValid()) << text;
        timeline->init();
    }
};

TEST_F(DemoScriptParserFuzzTest, DamagedScriptsAreEitherValidOrExplained) {
    const int cases = 3000;
    ScriptMutator mutator(20240607u);
    std::string original = exampleScript();
    ASSERT_FALSE(isFatal(original));

    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    int skipped = 0;
    for (int i = 0; i < cases; i++) {
        std::string text = mutator.mutate(original);
        if (isFatal(text)) {
            skipped++;
            continue;
        }
        feed(text);
        releaseRun();
        if (HasFailure()) {
            break;
        }
    }
    testing::internal::GetCapturedStderr();
    testing::internal::GetCapturedStdout();

    RecordProperty("skipped", skipped);
    RecordProperty("refusedScripts", refusedScripts);
    RecordProperty("refusedTimelines", refusedTimelines);
    RecordProperty("validTimelines", validTimelines);
    EXPECT_EQ(cases, fed + skipped);
    EXPECT_GT(fed, cases * 9 / 10);
    // The damage must reach every outcome, or the test proves little.
    EXPECT_GT(refusedScripts, 0);
    EXPECT_GT(refusedTimelines, 0);
    EXPECT_GT(validTimelines, 0);
    EXPECT_EQ(validScripts, validTimelines + refusedTimelines);
}

TEST_F(DemoScriptParserFuzzTest, FilterKeepsOutOnlyTheFatalScripts) {
    std::string original = exampleScript();
    EXPECT_FALSE(isFatal(original));
    EXPECT_TRUE(isFatal(scriptWithTimeline("intro.modify(00:01:000);")));
    EXPECT_TRUE(isFatal("{KVLDS1}\npaths { gfx = x/; }\n"));
    EXPECT_TRUE(isFatal("{KVLDS1}\nscreen { a = 1; }\npaths { }\n"));
    EXPECT_FALSE(isFatal("{KVLDS1}\npathz { gfx = x/; }\n"));
    EXPECT_FALSE(isFatal("{KVLDS1}\npaths { definition = x/; gfx = y/; }\n"));
}
