// The TDF reader: nesting, keys in any case, values, comments and damage.
#include "formats/tdf.h"

#include <gtest/gtest.h>

namespace vantrel {
namespace {

// "name{key=value;...}" for a quick comparison of what was read.
std::string Outline(const TdfSection& s) {
    std::string out = std::string(s.name) + "{";
    for (const TdfEntry& e : s.entries)
        out += std::string(e.key) + "=" + std::string(e.value) + ";";
    for (const TdfSection& child : s.sections)
        out += Outline(child);
    return out + "}";
}

TEST(Tdf, ReadsWhatCanBeRead) {
    struct Case {
        const char* text;
        const char* outline;
        std::size_t problems;
    } cases[] = {
        // Nested sections, blanks around keys and values, a value holding '=' and spaces.
        {"[Head]\r\n\t{\r\n\tName = Two Rivers ;\r\n\t[Schema 0]\r\n\t\t{\r\n\t\tType=Network 1;"
         "\r\n\t\tx=a=b;\r\n\t\t}\r\n\t}\r\n",
         "{Head{Name=Two Rivers;Schema 0{Type=Network 1;x=a=b;}}}", 0},
        // Comments between entries, a comment opener inside a value kept.
        {"// top\n[A]{ /* one\n two */ k=v; // end\n u=http://x; }", "{A{k=v;u=http://x;}}", 0},
        {"[A]{k=v;} /* open", "{A{k=v;}}", 1},
        // Unbalanced braces: a stray '}', a section left open, a '{' without a name.
        {"[A]{k=v;}}[B]{j=w;}", "{A{k=v;}B{j=w;}}", 1},
        {"[A]{k=v;[B]{j=w;", "{A{k=v;B{j=w;}}}", 2},
        {"{k=v;}", "{{k=v;}}", 1},
        // A section with no body, a name with no ']', a line that is not key=value.
        {"[A] k=v;", "{k=v;A{}}", 1},
        {"[A\nk=v;", "{k=v;A{}}", 2},
        {"[A]{junk\nk=v;oops;}", "{A{k=v;}}", 2},
        // A value without ';' ends at its line; an empty value.
        {"[A]{k=v\nj=;}", "{A{k=v;j=;}}", 1},
    };
    for (const Case& c : cases) {
        const TdfDocument doc = ReadTdf(c.text);
        EXPECT_EQ(Outline(doc.root), c.outline) << c.text;
        EXPECT_EQ(doc.problems.size(), c.problems) << c.text;
    }
}

TEST(Tdf, KeysInAnyCaseAndValueOffsets) {
    const std::string text = "[GlobalHeader]{ AIProfile =  DEFAULT ; empty=;}";
    const TdfDocument doc = ReadTdf(text);
    const TdfSection* header = doc.root.FindSection("globalheader");
    ASSERT_TRUE(header);
    const TdfEntry* e = header->Find("aiprofile");
    ASSERT_TRUE(e);
    EXPECT_EQ(e->value.data() - text.data(), 29);
    const TdfEntry* empty = header->Find("EMPTY");
    ASSERT_TRUE(empty);
    EXPECT_TRUE(empty->value.empty());
    EXPECT_EQ(*empty->value.data(), ';');
}

TEST(Tdf, ProblemsNameTheirLine) {
    const TdfDocument doc = ReadTdf("[A]\n{\nk=v;\n}\n}\n");
    ASSERT_EQ(doc.problems.size(), 1u);
    EXPECT_EQ(doc.problems[0].rfind("line 5: ", 0), 0u) << doc.problems[0];
}

// Nesting deeper than the limit is skipped, not recursed into; problems stop
// at the limit and one line saying so.
TEST(Tdf, DeepNestingAndManyProblemsStayBounded) {
    std::string deep;
    for (int i = 0; i < 100000; ++i)
        deep += "[s]{";
    const TdfDocument doc = ReadTdf(deep);
    int depth = 0;
    for (const TdfSection* s = &doc.root; !s->sections.empty(); s = &s->sections[0])
        ++depth;
    EXPECT_EQ(depth, TdfMaxDepth);
    EXPECT_LE(doc.problems.size(), TdfMaxProblems + 1);
    EXPECT_EQ(ReadTdf(std::string(1000, '}')).problems.size(), TdfMaxProblems + 1);
}

} // namespace
} // namespace vantrel
