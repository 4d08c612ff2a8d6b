// Rich text to blocks: the words that help texts use, what word processors add, and broken bytes.
#include <gtest/gtest.h>

#include "files/RtfReader.h"

namespace ladderwise {
namespace {

/// One line for each block: kind, level, bookmarks, and its runs with marks for their looks.
std::string Shown(const std::string& body) {
    std::string shown;
    for (const RtfBlock& block : ReadRtf("{\\rtf1\\ansi" + body).Blocks) {
        shown += "PHLT"[static_cast<int>(block.Kind)] + std::to_string(block.Level);
        for (const std::string& bookmark : block.Bookmarks)
            shown += " #" + bookmark;
        for (const std::vector<RtfRun>& cell : block.Cells) {
            shown += "|";
            for (const RtfRun& run : cell) {
                const std::string marks = std::string(run.Bold ? "*" : "") +
                                          (run.Italic ? "/" : "") + (run.Code ? "`" : "") +
                                          (run.Script > 0   ? "^"
                                           : run.Script < 0 ? "_"
                                                            : "");
                shown += marks + run.Text + (run.Link.empty() ? "" : "(" + run.Link + ")");
            }
        }
        shown += ";";
    }
    return shown;
}

TEST(RichText, WordsOfTheSubset) {
    const std::pair<const char*, const char*> cases[] = {
        {" one\\par two}", "P0|one;P0|two;"},
        {"\\pard\\outlinelevel1 {\\*\\bkmkstart k}{\\*\\bkmkend k}Keys\\par\\pard x}",
         "H2 #k|Keys;P0|x;"},
        {" a{\\b b{\\i c}}\\i d\\i0 e\\plain\\super 2\\nosupersub\\sub n}", "P0|a*b*/c/de^2_n;"},
        {"{\\fonttbl{\\f0\\fswiss A;}{\\f3\\fmodern C;}}\\f3 code\\f0 text}", "P0|`codetext;"},
        {"{\\pntext\\'b7\\tab}{\\*\\pn\\pnlvlblt{\\pntxtb\\'b7}}item\\par}", "L0|item;"},
        {"{\\listtext\\bullet\\tab}item\\par\\pard x}", "L0|item;P0|x;"},
        {"\\trowd\\trhdr\\cellx9\\pard\\intbl A\\cell B\\cell\\row\\trowd\\intbl c\\par"
         " d\\cell\\cell\\row\\pard x}",
         "T1|A|B;T0|c\nd|;P0|x;"},
        {"{\\field{\\*\\fldinst HYPERLINK \"D.rtf\" \\\\l \"k\"}{\\fldrslt{\\ul go}}} on}",
         "P0|go(D.rtf#k) on;"},
        {"{\\field{\\*\\fldinst{ HYPERLINK \\\\l \"k\"}}{\\fldrslt go}}}", "P0|go(#k);"},
        {" \\'e9\\'80\\u937?\\u-10187?\\u-8978?\\uc2\\u8211 ab.\\~\\{\\endash}",
         "P0|\u00e9\u20ac\u03a9\U0001d4ee\u2013.\u00a0{\u2013;"},
        {"{\\info{\\title T}{\\author A}}{\\*\\unknown x{y}}{\\pict\\bin4 }}}}}\\nosuch7 z}",
         "P0|z;"},
        {"\\u-10180? x\\u-1?\\'zz\\u0?",
         "P0| x\uffff"
         "zz\ufffd;"},
        {" never ended {\\b x", "P0|never ended *x;"},
        {"} after the end {\\b", "P0| after the end ;"}};
    for (const auto& [source, wanted] : cases)
        EXPECT_EQ(Shown(source), wanted) << source;
    EXPECT_EQ(ReadRtf("{\\rtf1{\\info{\\title My \\'e9}}x}").Title, "My \u00e9");
    EXPECT_FALSE(ReadRtf("<html>").IsRtf);
}

TEST(RichText, DepthAndLengthAreBounded) {
    std::string deep = "{\\rtf1 a";
    for (int i = 0; i < 100000; ++i)
        deep += "{\\b x";
    const RtfDocument document = ReadRtf(deep + std::string(100000, '}') + "z");
    ASSERT_EQ(document.Blocks.size(), 1u);
    EXPECT_EQ(document.Blocks[0].PlainText().size(), std::size_t{MaxRtfDepth} + 1);
    std::string huge = "{\\rtf1 ";
    while (huge.size() < MaxRtfText + 9000)
        huge += std::string(4000, 'x') + "\\tab";
    EXPECT_LE(ReadRtf(huge).Blocks[0].PlainText().size(), MaxRtfText);
}

}  // namespace
}  // namespace ladderwise
