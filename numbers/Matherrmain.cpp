// The math-error hook, its table of substitutes, and the log.
#include "numbers/Matherrmain.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

#include "numbers/Formatfunctions.h"

namespace ladderwise {

namespace {

// Substitutes for what is infinite, and for what is too small to be told from zero. Far from the
// ends of double, so that products and squares of them stay finite.
constexpr double Huge = 1e99;
constexpr double Tiny = 1e-99;
constexpr double HalfPi = 1.5707963267948966;
constexpr double Pi = 3.141592653589793;

struct Substitute {
    MathErrorOutcome Outcome;
    double Value;
};

Substitute Correct(double value) {
    return {MathErrorOutcome::Corrected, value};
}

std::optional<Substitute> SubstituteOutsideDomain(std::string_view name, double arg1) {
    if (name == "atan2") return Substitute{MathErrorOutcome::SideStepped, 0.0};
    if (name == "sqrt") return Correct(std::sqrt(-arg1));
    if (name == "log" || name == "log10") return Correct(-Huge);
    if (name == "asin") return Correct(arg1 > 0.0 ? HalfPi : -HalfPi);
    if (name == "acos") return Correct(arg1 > 0.0 ? 0.0 : -Pi);
    return std::nullopt;
}

/// The table of the hook: the value for a kind of error in a function.
std::optional<Substitute> FindSubstitute(int kind, std::string_view name, double arg1) {
    const bool powerOrLevel = name == "pow" || name == "log10";
    switch (static_cast<MathErrorKind>(kind)) {
        case MathErrorKind::Domain:
            return SubstituteOutsideDomain(name, arg1);
        case MathErrorKind::Singular:
            return Correct(Huge);
        case MathErrorKind::Overflow:
            return Correct(powerOrLevel ? Huge : 1.0);
        case MathErrorKind::Underflow:
            return Correct(powerOrLevel ? Tiny : 1.0);
        case MathErrorKind::TotalLoss:
            return Correct(1.0);
    }
    return std::nullopt;  // a number that is no kind
}

const char* KindText(int kind) {
    static constexpr std::array texts = {"DOMAIN", "SING", "OVERFLOW", "UNDERFLOW", "TLOSS"};
    return kind >= 1 && kind <= static_cast<int>(texts.size()) ? texts[kind - 1] : "????";
}

std::string OutcomeText(MathErrorOutcome outcome, double value) {
    switch (outcome) {
        case MathErrorOutcome::Corrected:
            return "Math Error was Corrected. ReturnValue =" + FormatGeneral(value);
        case MathErrorOutcome::SideStepped:
            return "Math Error was Side Stepped. ReturnValue =" + FormatGeneral(value);
        case MathErrorOutcome::Nothing:
            break;
    }
    return "Nothing was done with the error.";
}

}  // namespace

void MathErrorLog::Append(const MathErrorRecord& record, MathErrorOutcome outcome) {
    Entry entry{record.Kind, record.Name, record.Arg1, record.Arg2, record.ReturnValue, outcome};
    if (entries.size() < LargestEntryCount)
        entries.push_back(std::move(entry));
    else
        entries[errorCount % LargestEntryCount] = std::move(entry);
    ++errorCount;
}

std::vector<std::string> MathErrorLog::Lines(std::uint64_t first) const {
    std::vector<std::string> lines;
    const std::uint64_t oldest = errorCount - entries.size();
    if (first < oldest)
        lines.push_back("The log is full: " + std::to_string(2 * (oldest - first)) +
                        " older lines have given way.");
    for (std::uint64_t n = std::max(first, oldest); n < errorCount; ++n) {
        const Entry& e = entries[n % LargestEntryCount];
        lines.push_back(std::string("type=") + KindText(e.Kind) + "   name=" + e.Name +
                        "   arg1=" + FormatGeneral(e.Arg1) + "   arg2=" + FormatGeneral(e.Arg2));
        lines.push_back(OutcomeText(e.Outcome, e.ReturnValue));
    }
    return lines;
}

MathErrorLog& MathErrors() {
    static MathErrorLog log;
    return log;
}

int MathErrorHook(MathErrorRecord& record) {
    const auto substitute = FindSubstitute(record.Kind, record.Name, record.Arg1);
    if (substitute) record.ReturnValue = substitute->Value;
    MathErrors().Append(record, substitute ? substitute->Outcome : MathErrorOutcome::Nothing);
    return substitute ? 1 : 0;
}

namespace matherr {

double RaiseError(MathErrorKind kind, const char* name, double arg1, double arg2, double proposed) {
    MathErrorRecord record{static_cast<int>(kind), name, arg1, arg2, proposed};
    return MathErrorHook(record) != 0 ? record.ReturnValue : proposed;
}

double FinishExponential(const char* name, double x, double result) {
    if (x == 0.0 || !std::isfinite(x)) return result;
    const auto kind = result == 0.0 ? MathErrorKind::Underflow : MathErrorKind::Overflow;
    return RaiseError(kind, name, x, 0.0, result);
}

double FinishLogarithm(const char* name, double x) {
    if (std::isnan(x)) return x;
    if (x == 0.0) return RaiseError(MathErrorKind::Singular, name, x, 0.0, -HUGE_VAL);
    return RaiseError(MathErrorKind::Domain, name, x, 0.0, std::nan(""));
}

double FinishPow(double x, double y, double result) {
    if (std::isnan(x) || std::isnan(y)) return result;
    if (std::isnan(result)) return RaiseError(MathErrorKind::Domain, "pow", x, y, result);
    if (std::isinf(result) && x == 0.0)
        return RaiseError(MathErrorKind::Singular, "pow", x, y, result);
    if (x == 0.0 || !std::isfinite(x) || !std::isfinite(y)) return result;
    const auto kind = result == 0.0 ? MathErrorKind::Underflow : MathErrorKind::Overflow;
    return RaiseError(kind, "pow", x, y, result);
}

double FinishAngle(const char* name, double x, double result) {
    if (std::isnan(x)) return x;
    const auto kind = std::isinf(x) ? MathErrorKind::Domain : MathErrorKind::TotalLoss;
    return RaiseError(kind, name, x, 0.0, result);
}

}  // namespace matherr

}  // namespace ladderwise
