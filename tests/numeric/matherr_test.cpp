// The guarded functions, the hook behind them and the lines of its log.
#include <gtest/gtest.h>

#include <functional>

#include "analysis/Magphasefunctions.h"
#include "numbers/Matherrmain.h"
#include "tests/numeric/support.h"

namespace ladderwise {
namespace {

/// The log lines that a call leaves, joined; its result in *result.
std::string LinesOf(const std::function<double()>& call, double* result) {
    const auto before = MathErrors().ErrorCount();
    *result = call();
    std::string joined;
    for (const std::string& line : MathErrors().Lines(before))
        joined += line + "\n";
    return joined;
}

TEST(MathErrors, EveryRowOfTheHooksTable) {
    const auto hook = [](int kind, const char* name, double x) {
        MathErrorRecord record{kind, name, x, 0.0, 0.5};
        const int used = MathErrorHook(record);
        return used != 0 ? record.ReturnValue : -77.0;
    };
    const std::string corrected = "Math Error was Corrected. ReturnValue =";
    const std::string stepped = "Math Error was Side Stepped. ReturnValue =";
    const std::string nothing = "Nothing was done with the error.";
    const double piHalf = 1.5707963267948966, pi = 3.141592653589793;
    // clang-format off
    const struct { std::function<double()> Call; double Result; std::string First, Second; }
    cases[] = {
        {[] { return GuardedAtan2(0, 0); }, 0, "DOMAIN   name=atan2   arg1=0   arg2=0", stepped + "0"},
        {[] { return GuardedSqrt(-4); }, 2, "DOMAIN   name=sqrt   arg1=-4   arg2=0", corrected + "2"},
        {[] { return GuardedLog(-0.5); }, -1e99, "DOMAIN   name=log   arg1=-0.5   arg2=0", corrected + "-1E99"},
        {[] { return GuardedLog10(-1e-7); }, -1e99, "DOMAIN   name=log10   arg1=-1E-7   arg2=0", corrected + "-1E99"},
        {[] { return GuardedAsin(1.5); }, piHalf, "DOMAIN   name=asin   arg1=1.5   arg2=0", corrected + "1.5707963267949"},
        {[] { return GuardedAsin(-2); }, -piHalf, "DOMAIN   name=asin   arg1=-2   arg2=0", corrected + "-1.5707963267949"},
        {[] { return GuardedAcos(Infinity); }, 0, "DOMAIN   name=acos   arg1=INF   arg2=0", corrected + "0"},
        {[] { return GuardedAcos(-1.1); }, -pi, "DOMAIN   name=acos   arg1=-1.1   arg2=0", corrected + "-3.14159265358979"},
        {[] { return GuardedPow(-8, 0.25); }, NaN, "DOMAIN   name=pow   arg1=-8   arg2=0.25", nothing},
        {[] { return GuardedTan(-Infinity); }, NaN, "DOMAIN   name=tan   arg1=-INF   arg2=0", nothing},
        {[] { return GuardedPow(0, -1); }, 1e99, "SING   name=pow   arg1=0   arg2=-1", corrected + "1E99"},
        {[] { return GuardedLog(0); }, 1e99, "SING   name=log   arg1=0   arg2=0", corrected + "1E99"},
        {[] { return GuardedLog10(0); }, 1e99, "SING   name=log10   arg1=0   arg2=0", corrected + "1E99"},
        {[&] { return hook(2, "atanh", 1); }, 1e99, "SING   name=atanh   arg1=1   arg2=0", corrected + "1E99"},
        {[] { return GuardedPow(-10, 309); }, 1e99, "OVERFLOW   name=pow   arg1=-10   arg2=309", corrected + "1E99"},
        {[&] { return hook(3, "log10", 1); }, 1e99, "OVERFLOW   name=log10   arg1=1   arg2=0", corrected + "1E99"},
        {[] { return GuardedExp(710); }, 1, "OVERFLOW   name=exp   arg1=710   arg2=0", corrected + "1"},
        {[] { return GuardedCosh(-711); }, 1, "OVERFLOW   name=cosh   arg1=-711   arg2=0", corrected + "1"},
        {[] { return GuardedSinh(711); }, 1, "OVERFLOW   name=sinh   arg1=711   arg2=0", corrected + "1"},
        {[] { return GuardedPow(10, -400); }, 1e-99, "UNDERFLOW   name=pow   arg1=10   arg2=-400", corrected + "1E-99"},
        {[&] { return hook(4, "log10", 1); }, 1e-99, "UNDERFLOW   name=log10   arg1=1   arg2=0", corrected + "1E-99"},
        {[] { return GuardedExp(-800); }, 1, "UNDERFLOW   name=exp   arg1=-800   arg2=0", corrected + "1"},
        {[] { return GuardedSin(1e20); }, 1, "TLOSS   name=sin   arg1=1E20   arg2=0", corrected + "1"},
        {[] { return GuardedTan(-1e16); }, 1, "TLOSS   name=tan   arg1=-1E16   arg2=0", corrected + "1"},
        {[&] { return hook(6, "sqrt", -4); }, -77, "????   name=sqrt   arg1=-4   arg2=0", nothing},
        {[&] { return hook(0, "log", 12345.678); }, -77, "????   name=log   arg1=12345.678   arg2=0", nothing},
    };
    // clang-format on
    for (const auto& c : cases) {
        double result = 0.0;
        EXPECT_EQ(LinesOf(c.Call, &result), "type=" + c.First + "\n" + c.Second + "\n");
        if (std::isnan(c.Result))
            EXPECT_TRUE(std::isnan(result)) << c.First;
        else
            EXPECT_EQ(result, c.Result) << c.First;
    }
}

TEST(MathErrors, WhatIsNoErrorIsNotLogged) {
    const auto before = MathErrors().ErrorCount();
    const struct {
        double Result, Expected;
    } cases[] = {
        {GuardedSqrt(2), std::sqrt(2.0)},
        {GuardedSqrt(Infinity), Infinity},
        {GuardedLog(Infinity), Infinity},
        {GuardedLog10(1e-310), std::log10(1e-310)},
        {GuardedExp(-Infinity), 0},
        {GuardedExp(Infinity), Infinity},
        {GuardedPow(0, 0.5), 0},
        {GuardedPow(Infinity, -1), 0},
        {GuardedPow(0.5, Infinity), 0},
        {GuardedAcos(-1), std::acos(-1.0)},
        {GuardedAtan2(0, -1), std::atan2(0.0, -1.0)},
        {GuardedSinh(0), 0},
        {PhaseRad({0, 0}), 0},
        {ComplexToDb({0, 0}), ZeroPowerDb},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.Result, c.Expected);
    for (const double x :
         {GuardedSqrt(NaN), GuardedLog(NaN), GuardedLog10(NaN), GuardedExp(NaN), GuardedCosh(NaN),
          GuardedPow(NaN, 2), GuardedPow(-2, NaN), GuardedAsin(NaN), GuardedAcos(NaN),
          GuardedAtan2(NaN, 0), GuardedAtan2(0, NaN), GuardedTan(NaN), ComplexToDb({NaN, 0})})
        EXPECT_TRUE(std::isnan(x));
    EXPECT_EQ(MathErrors().ErrorCount(), before);
}

TEST(MathErrors, TheOldestLinesGiveWayAndALineSaysSo) {
    MathErrorLog log;
    for (int n = 0; n < 50'003; ++n)
        log.Append({1, "sqrt", -double(n), 0.0, 0.0}, MathErrorOutcome::Nothing);
    const auto lines = log.Lines();
    ASSERT_EQ(lines.size(), 100'001u);
    EXPECT_EQ(lines[0], "The log is full: 6 older lines have given way.");
    EXPECT_EQ(lines[1], "type=DOMAIN   name=sqrt   arg1=-3   arg2=0");
    EXPECT_EQ(lines[99'999], "type=DOMAIN   name=sqrt   arg1=-50002   arg2=0");
    EXPECT_EQ(log.Lines(50'002).size(), 2u);
    EXPECT_EQ(log.ErrorCount(), 50'003u);
}

TEST(MathErrors, NumbersFollowTheLocale) {
    const SeparatorScope comma(',');
    double result = 0.0;
    EXPECT_EQ(LinesOf([] { return GuardedSqrt(-2.25); }, &result),
              "type=DOMAIN   name=sqrt   arg1=-2,25   arg2=0\n"
              "Math Error was Corrected. ReturnValue =1,5\n");
}

}  // namespace
}  // namespace ladderwise
