// Mathematical functions that never fail in silence: an argument outside the domain, or a result
// outside the range of double, goes to one hook, which substitutes a usable value where it knows
// one and keeps a log that the user can read. No Qt.
//
// Use these wherever an input of the user, or a value read from a file, can drive an argument out
// of bounds. In bounds they are the functions of the standard library, at the price of a compare.
// A NaN argument is no error of the function: it comes out as NaN and is not logged, and neither is
// an infinite result that follows exactly from an infinite argument.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace ladderwise {

/// What went wrong. Numbered as the error types of the System V math library.
enum class MathErrorKind : int {
    Domain = 1,     ///< the function has no value at this argument
    Singular = 2,   ///< a pole
    Overflow = 3,   ///< the result is too large for a double
    Underflow = 4,  ///< the result is too small for a double, but not zero
    TotalLoss = 5,  ///< an angle so large that none of its digits tells the place on the circle
};

/// One error, as its function hands it to the hook.
struct MathErrorRecord {
    int Kind;            ///< a MathErrorKind; any other number is logged as unknown
    const char* Name;    ///< of the function, as the standard library spells it
    double Arg1;         ///< first argument
    double Arg2;         ///< second argument; 0 for a function of one
    double ReturnValue;  ///< what the function would return; the hook may replace it
};

/// What the hook did about an error.
enum class MathErrorOutcome { Corrected, SideStepped, Nothing };

/// The lines of all errors of a run of the program, two for each, within a bound of memory.
class MathErrorLog {
public:
    /// Beyond this many lines the oldest give way.
    static constexpr std::size_t LargestLineCount = 100'000;

    /// `record` holds the value that the function returns.
    void Append(const MathErrorRecord& record, MathErrorOutcome outcome);

    /// Errors since the start of the program, those that have given way included.
    std::uint64_t ErrorCount() const { return errorCount; }

    /// The lines of the errors from number `first` (0 is the program's first) that are still held.
    /// Where errors from `first` on have given way, a line that says how many stands before them.
    std::vector<std::string> Lines(std::uint64_t first = 0) const;

private:
    struct Entry {
        int Kind;
        std::string Name;
        double Arg1, Arg2, ReturnValue;
        MathErrorOutcome Outcome;
    };
    static constexpr std::size_t LargestEntryCount = LargestLineCount / 2;

    std::vector<Entry> entries;  ///< a ring: error number n stands at n mod LargestEntryCount
    std::uint64_t errorCount = 0;
};

/// The log of the whole program, empty at its start. Beside the number format of the system's
/// locale it is the program's only global: a mathematical function has nobody else to tell.
MathErrorLog& MathErrors();

/// The one hook of the program. Substitutes record.ReturnValue where the table of MathErrorHook
/// (Matherrmain.cpp) has a value for the kind and the function, and logs the error in any case.
/// 1 if the value was replaced and is to be returned, 0 if the function's own stands.
int MathErrorHook(MathErrorRecord& record);

/// The slow ends of the functions below: tell which error it is, and return what the hook says.
namespace matherr {
double RaiseError(MathErrorKind kind, const char* name, double arg1, double arg2, double proposed);
double FinishExponential(const char* name, double x, double result);
double FinishLogarithm(const char* name, double x);
double FinishPow(double x, double y, double result);
double FinishAngle(const char* name, double x, double result);

/// Finite and not zero: for every function below whose range this is, nothing can have gone wrong.
inline bool IsOrdinary(double result) {
    return result - result == 0.0 && result != 0.0;
}

/// From here on neighbouring doubles are 2 rad and more apart.
inline constexpr double TotalLossAngle = 9007199254740992.0;  // 2^53
inline bool IsUsableAngle(double x) {
    return std::fabs(x) < TotalLossAngle;
}
}  // namespace matherr

/// sqrt(x); of a negative x sqrt(-x).
inline double GuardedSqrt(double x) {
    if (!(x < 0.0)) return std::sqrt(x);
    return matherr::RaiseError(MathErrorKind::Domain, "sqrt", x, 0.0, std::nan(""));
}

/// ln x; of a negative x -1e99, of zero 1e99.
inline double GuardedLog(double x) {
    return x > 0.0 ? std::log(x) : matherr::FinishLogarithm("log", x);
}

/// Decimal logarithm of x; of a negative x -1e99, of zero 1e99.
inline double GuardedLog10(double x) {
    return x > 0.0 ? std::log10(x) : matherr::FinishLogarithm("log10", x);
}

/// e^x; 1 where the result leaves the range of double on either side.
inline double GuardedExp(double x) {
    const double result = std::exp(x);
    return matherr::IsOrdinary(result) ? result : matherr::FinishExponential("exp", x, result);
}

/// sinh(x); 1 where the result leaves the range of double.
inline double GuardedSinh(double x) {
    const double result = std::sinh(x);
    return matherr::IsOrdinary(result) ? result : matherr::FinishExponential("sinh", x, result);
}

/// cosh(x); 1 where the result leaves the range of double.
inline double GuardedCosh(double x) {
    const double result = std::cosh(x);
    return matherr::IsOrdinary(result) ? result : matherr::FinishExponential("cosh", x, result);
}

/// x^y; 1e99 at a pole and for what is too large, 1e-99 for what is too small; NaN, but logged, for
/// a negative x and a y that is no integer.
inline double GuardedPow(double x, double y) {
    const double result = std::pow(x, y);
    return matherr::IsOrdinary(result) ? result : matherr::FinishPow(x, y, result);
}

/// arcsin x in radians; pi/2 beyond 1 and -pi/2 beyond -1.
inline double GuardedAsin(double x) {
    if (!(std::fabs(x) > 1.0)) return std::asin(x);
    return matherr::RaiseError(MathErrorKind::Domain, "asin", x, 0.0, std::nan(""));
}

/// arccos x in radians; 0 beyond 1 and -pi, not pi, beyond -1.
inline double GuardedAcos(double x) {
    if (!(std::fabs(x) > 1.0)) return std::acos(x);
    return matherr::RaiseError(MathErrorKind::Domain, "acos", x, 0.0, std::nan(""));
}

/// The angle of (x, y) in radians, -pi .. pi; 0 for (0, 0), which has none.
inline double GuardedAtan2(double y, double x) {
    if (y != 0.0 || x != 0.0) return std::atan2(y, x);
    return matherr::RaiseError(MathErrorKind::Domain, "atan2", y, x, 0.0);
}

/// sin x; 1 for an angle beyond TotalLossAngle.
inline double GuardedSin(double x) {
    return matherr::IsUsableAngle(x) ? std::sin(x) : matherr::FinishAngle("sin", x, std::sin(x));
}

/// cos x; 1 for an angle beyond TotalLossAngle.
inline double GuardedCos(double x) {
    return matherr::IsUsableAngle(x) ? std::cos(x) : matherr::FinishAngle("cos", x, std::cos(x));
}

/// tan x; 1 for an angle beyond TotalLossAngle.
inline double GuardedTan(double x) {
    return matherr::IsUsableAngle(x) ? std::tan(x) : matherr::FinishAngle("tan", x, std::tan(x));
}

}  // namespace ladderwise
