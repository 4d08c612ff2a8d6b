// Touchstone files: ours read back, and those of others, good and bad.
#include <gtest/gtest.h>

#include "exchange/Touchstone.h"
#include "exchange/TouchstoneReader.h"
#include "support.h"

namespace ladderwise {
namespace {

TEST(Touchstone, WhatIsWrittenReadsBackAsItIs) {
    std::mt19937 random(23);
    for (const TouchstoneVersion version : {TouchstoneVersion::One, TouchstoneVersion::Two}) {
        FilterDesign design = MakeDesign({RandomSlot(ElementType::SeriesLC, random),
                                          RandomSlot(ElementType::ShuntTLSCC, random)},
                                         PartChoice::RealParts);
        design.RLoad = 200.0;
        const std::vector<double> freqs = LogGrid(101);
        const std::string text = TouchstoneText(design, freqs, {version, 50.0, 0});
        const TouchstoneResult read = ReadTouchstone(text);
        ASSERT_EQ(read.Error, "");
        EXPECT_TRUE(read.Network.Messages.empty());
        EXPECT_EQ(read.Network.Reference.Load, version == TouchstoneVersion::Two ? 200.0 : 50.0);
        EXPECT_EQ(read.Network.Hz, WrittenFrequencies(freqs));
        for (std::size_t i = 0; i < read.Network.Hz.size(); ++i) {
            const LadderPoint trace = AnalysePoint(design, design.F0, read.Network.Hz[i]);
            const SParameters s =
                Renormalised(read.Network.S[i], read.Network.Reference, {50.0, 200.0});
            ASSERT_LT(std::abs(s.S21 - trace.Transfer), 1e-9 * std::abs(trace.Transfer));
            ASSERT_LT(std::abs(s.S11 - trace.Reflection), 1e-9 * std::abs(trace.Reflection));
        }
    }
}

TEST(Touchstone, TheFormIsTheOneThatReadersAgreeOn) {
    FilterDesign design = MakeDesign({{ElementType::SeriesInd, TestL}});
    const std::string text = TouchstoneText(design, std::vector<double>{1e6, 100e6}, {});
    const std::size_t options = text.find("\n# Hz S RI R 50\n1000000  ");
    ASSERT_NE(options, std::string::npos) << text;
    EXPECT_EQ(text.find('!', options), std::string::npos);
    EXPECT_EQ(text.find("\n\n"), std::string::npos);
    EXPECT_EQ(text.back(), '\n');
    // j 50 ohm in the line of 50: S11 = j / (2 + j) = 0.2 + 0.4j, S21 = 2 / (2 + j) = 0.8 - 0.4j.
    const SParameters s = ReadTouchstone(text).Network.S[1];
    EXPECT_NEAR(std::abs(s.S11 - Complex(0.2, 0.4)), 0.0, 1e-15);
    EXPECT_NEAR(std::abs(s.S12 - Complex(0.8, -0.4)), 0.0, 1e-15);
    // Whole hertz, unless two would be one.
    EXPECT_EQ(WrittenFrequencies(std::vector<double>{1.4, 2.6}), (std::vector<double>{1.0, 3.0}));
    EXPECT_EQ(WrittenFrequencies(std::vector<double>{1.2, 1.4}), (std::vector<double>{1.2, 1.4}));
}

/// The first point of a file, "error" with its text, for a table of cases.
struct Foreign {
    const char* Text;
    double Hz;
    SParameters S;
    PortResistances Reference{50.0, 50.0};
    int Ports = 2;
    std::size_t Points = 1;
    std::size_t Messages = 0;
};

TEST(Touchstone, ForeignFilesReadRightly) {
    const Complex j(0.0, 1.0);
    const SParameters four{0.1, 0.2, 0.3, 0.4};
    const SParameters one{0.5, 0.0, 0.0, 0.0};
    const Foreign cases[] = {
        {"# Hz S RI R 50\n10 .1 0 .2 0 .3 0 .4 0\n", 10, four},
        {"\xef\xbb\xbf! Gr\xf6\xdf"
         "e\r\n\r\n  #\tr 75.5 ri s KHZ  ! end\r\n\t10 .1 0 .2 0 .3 0 .4 0 ! x\r\n! 5\r\n",
         10e3,
         four,
         {75.5, 75.5}},
        {"1 .5 90\n", 1e9, {0.5 * j, 0.0, 0.0, 0.0}, {50, 50}, 1},
        {"# db mhz\n1 -inf 0 0 180 -20 0 -20 0\n", 1e6, {0.0, -1.0, 0.1, 0.1}},
        {"# GHz S RI R50\n1 .1 0\n.2 0\n.3 0\n.4 0\n2 .1 0\n.2 0\n.3 0\n.4 0",
         1e9,
         four,
         {50, 50},
         2,
         2},
        {"# Hz RI\n1 .1 0 .2\n0 .3 0 .4 0\n", 1, four},
        {"# Hz RI\r1 +1.E-1 0 2e-1 0 .3 0 .4 0\r", 1, four},
        {"# Hz RI R 25 100\n1 .1 0 .2 0 .3 0 .4 0\n\x1a", 1, four, {25, 100}},
        {"# Hz RI\n2 9 0\n1 .5 0\n2 8 0\n", 1, one, {50, 50}, 1, 2, 2},
        {"# Hz RI\n1 .1 0 .2 0 .3 0 .4 0\n2 .1 0 .2 0 .3 0 .4 0\n1 3 .5 20 .4\n2 3 .5 20 .4\n",
         1,
         four,
         {50, 50},
         2,
         2,
         1},
        {"# Hz RI\n1 .1 0 .2 0 0 0 0 0\n", 1, {0.1, 0.2, 0.0, 0.0}, {50, 50}, 2, 1, 1},
        // A shunt of 25 ohm at 50: S11 = -1/2, S21 = 1/2; a series of 100: 1/2, 1/2. One port: 1/2
        // is 150 ohm.
        {"# Hz Z RI R 50\n1 .5 0 .5 0 .5 0 .5 0\n", 1, {-0.5, 0.5, 0.5, -0.5}},
        {"# Hz Y RI R 50\n1 .5 0 -.5 0 -.5 0 .5 0\n", 1, {0.5, 0.5, 0.5, 0.5}},
        {"# Hz H RI R 50\n1 2 0 -1 0 1 0 0 0\n", 1, {0.5, 0.5, 0.5, 0.5}},
        {"# Hz G RI R 50\n1 2 0 1 0 -1 0 0 0\n", 1, {-0.5, 0.5, 0.5, -0.5}},
        {"# Hz Z RI R 50\n1 3 0\n", 1, one, {50, 50}, 1},
        {"# Hz Y RI R 50\n1 3 0\n", 1, {-0.5, 0.0, 0.0, 0.0}, {50, 50}, 1},
        {"[Version] 2.0\n# Hz S RI\n[Number of Ports] 2\n[Two-Port Data Order] 12_21\n"
         "[Number of Frequencies] 1\n[Reference]\n25\n100\n[Network Data]\n1 .1 0 .3 0\n.2 0 .4 0\n"
         "[Noise Data]\n1 2 3 4 5\n[End]\nwhatever\n",
         1,
         four,
         {25, 100},
         2,
         1,
         1},
        {"[Version] 2.0\n# Hz Z RI\n[Number of Ports] 2\n[Two-Port Data Order] 21_12\n"
         "[Begin Information]\nno data 1 2 3\n[End Information]\n"
         "[Network Data]\n1 25 0 25 0 25 0 25 0\n[End]\n",
         1,
         {-0.5, 0.5, 0.5, -0.5}},
        {"[Version] 2.0\n# Hz S RI\n[Number of Ports] 2\n[Matrix Format] Lower\n"
         "[Network Data]\n1 .1 0 .2 0 .4 0\n[End]\n",
         1,
         {0.1, 0.2, 0.2, 0.4}},
        // Wrapped anywhere, comments amid a point, a first data line that is alone.
        {"# S RI HZ R 50\n1\n.1 0 .2\n! x\n\n0 .3 0 .4\n0 ! y\n2 .1 0 .2 0 .3 0 .4 0!z\n",
         1,
         four,
         {50, 50},
         2,
         2},
        {"#\n1 .5 90\n", 1e9, {0.5 * j, 0.0, 0.0, 0.0}, {50, 50}, 1},
        {"! c # Hz\r\n#hz ri\r\n+1.0E+00\t.1 -0 2.E-1 0 .3\v0 .4 0 \r\n\x1a\x1a\r\n", 1, four},
        {"# Hz RI\n1 1e-999 1e-320 .2 0 1e-300 0 .4 0\n", 1, {0.0, 0.2, 0.0, 0.4}},
        {"# Hz MA\n0 -.1 180 .2 720 .3 -360 .4 0\n1 0 0 0 0 0 0 0 1\n", 0, four, {50, 50}, 2, 2},
        {"# kHz DB\n3 -20 0\n2 0 0\n1 -INF 45\n", 1e3, {}, {50, 50}, 1, 3, 1},
        {"# Hz RI\n1 .5 0\n1 .2 0\n1 .3 0\n", 1, one, {50, 50}, 1, 1, 1},
        {"# Hz RI R 50\n1 .1 0 .2 0 .3 0 .4 0\n# kHz MA R 75\n2 .1 0 .2 0 .3 0 .4 0\n",
         1,
         four,
         {50, 50},
         2,
         2,
         1},
        {"# Hz RI\n1 .1 0 .2 0 .3 0 .4 0\n2 .1 0 .2 0 .3 0 .4 0\n2 1.2 .5 20 .3\n",
         1,
         four,
         {50, 50},
         2,
         2,
         1},
        {"[version] 2.0\n# hz ri\n[number  of ports] 2 ! c\n[two-port data order] 21_12\n"
         "[reference] 50 75\n[network data]\n1 .1 0 .2 0\n.3 0 .4 0\n",
         1,
         four,
         {50, 75}},
        {"[Version] 2.0\n# MHz MA R 75\n[Number of Ports] 1\n[Network Data]\n1 .5 0\n2 .5 "
         "0\n[End]\n",
         1e6,
         one,
         {75, 75},
         1,
         2},
        {"[Version] 2.0\n# Hz RI\n[Number of Ports] 2\n[Two-Port Data Order] 21_12\n"
         "[Matrix Format] Upper\n[Network Data]\n1 .1 0 .2 0 .4 0\n[End]\n",
         1,
         {0.1, 0.2, 0.2, 0.4}},
    };
    for (const Foreign& c : cases) {
        SCOPED_TRACE(c.Text);
        const TouchstoneResult read = ReadTouchstone(c.Text);
        ASSERT_EQ(read.Error, "");
        const NetworkData& network = read.Network;
        EXPECT_EQ(network.Ports, c.Ports);
        EXPECT_EQ(network.Hz.size(), c.Points);
        EXPECT_EQ(network.Messages.size(), c.Messages);
        EXPECT_DOUBLE_EQ(network.Hz[0], c.Hz);
        EXPECT_EQ(network.Reference, c.Reference);
        EXPECT_EQ(network.OnePath, c.S.S22 == 0.0 && c.Ports == 2);
        const SParameters& s = network.S[0];
        EXPECT_LT(std::abs(s.S11 - c.S.S11) + std::abs(s.S21 - c.S.S21) +
                      std::abs(s.S12 - c.S.S12) + std::abs(s.S22 - c.S.S22),
                  1e-14);
    }
}

TEST(Touchstone, WhatCannotBeUsedIsRefusedWithItsLine) {
    const struct {
        std::string Text;
        const char* Error;
    } cases[] = {
        {"", "line 1: there are no data"},
        {"! nothing\n# Hz S RI R 50\n", "line 2: there are no data"},
        {"# Hz S RI R 50\n1 0,5 0\n", "line 2: \"0,5\" is no number"},
        {"# Hz S RI R 50\n1 nan 0\n", "line 2: \"nan\" is no number"},
        {"# Hz S RI R 50\n1 1e999 0\n", "line 2: \"1e999\" is too large"},
        {"# Hz S RI R 50\n1 inf 0\n", "line 2: a number is infinite"},
        {"# Hz S RI R 50\n-1 0 0\n", "line 2: no frequency is negative"},
        {"# Hz S RI R 50\n1 1 0 1 0 1 0 1 0\n2 1 0 1 0\n", "line 3: "},
        {"# Hz S RI R 50\n1 1 0 1 0 1 0\n1 0 1 0 1 0\n1 0 1 0 1 0\n", "line 2: 3 ports"},
        {"# Hz S RI R 0\n1 1 0\n", "line 1: the resistance behind R"},
        {"# Hz S RI R\n1 1 0\n", "line 1: the resistance behind R is missing"},
        {"# Hz S RI Q\n1 1 0\n", "line 1: \"Q\" is no option"},
        {"1 1 0\n# Hz S RI\n", "line 2: the option line stands behind data"},
        {"# Hz H RI\n1 1 0\n", "line 1: G and H are of two ports"},
        {"# Hz Z RI\n1 -1 0\n", "line 2: there are no S-parameters"},
        {std::string("# Hz\n1 \0 0\n", 11), "line 2: a zero byte"},
        {"\xff\xfe#", "line 1: UTF-16"},
        {"[Number of Ports] 2\n", "line 1: a keyword, but no [Version]"},
        {"[Version] 2.0\n[Number of Ports] 4\n[Reference] 50 50 50 50\n", "line 3: 4 ports"},
        {"[Version] 2.0\n# Hz S RI\n[Number of Ports] 1\n[Number of Frequencies] 2\n"
         "[Network Data]\n1 1 0\n[End]\n",
         "line 7: [Number of Frequencies] is 2, but there are 1"},
        {"[Version] 2.0\n# Hz S RI\n[Number of Ports] 2\n[Network Data]\n",
         "line 4: [Two-Port Data"},
        {"; no comment\n# Hz S RI R 50\n1 1 0\n", "line 1: \";\" is no number"},
        {"<html>\n", "line 1: \"<html>\" is no number"},
        {"# Hz RI R 50ohm\n1 1 0\n", "line 1: \"50ohm\" behind R is no number"},
        {"# Hz RI R (50 1)\n1 1 0\n", "line 1: \"(50\" behind R is no number"},
        {"# Hz RI MHz\n1 1 0\n", "line 1: the option line says two things"},
        {"# Hz\n1D0 1 0\n", "line 2: \"1D0\" is no number"},
        {"# Hz\n1,1,0\n", "line 2: \"1,1,0\" is no number"},
        {"# Hz\n0x1 1 0\n", "line 2: \"0x1\" is no number"},
        {"# Hz\n1 . 0\n", "line 2: \".\" is no number"},
        {"# Hz\n1 ++1 0\n", "line 2: \"++1\" is no number"},
        {"# Hz RI\n1 .1 0 .2\n", "line 2: 4 numbers"},
        {"# Hz RI\n1 .1 0\n2 .1 0 .2 0 .3 0 .4 0\n", "line 3: "},
        {"# Hz DB\n1 0 inf\n", "line 2: a number is infinite"},
        {"# Hz DB\n1 1e6 0\n", "line 2: a number is too large"},
        {"[Version 2.0\n", "line 1: a keyword without its bracket"},
        {"[Version] 3.0\n", "line 1: the version is 1.0 or 2.0"},
        {"[Version] 2.0\n# Hz\n[Number of Ports] 2\n[Magic] 1\n", "line 4: the keyword"},
        {"[Version] 2.0\n# Hz\n[Number of Ports] 2\n[Reference] 50 0\n", "line 4: "},
    };
    for (const auto& c : cases) {
        const TouchstoneResult read = ReadTouchstone(c.Text);
        EXPECT_TRUE(read.Error.starts_with(c.Error)) << c.Text << "\n" << read.Error;
        EXPECT_TRUE(read.Network.Hz.empty());
    }
}

}  // namespace
}  // namespace ladderwise
