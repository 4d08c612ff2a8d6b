// The steps of a Norton-transformed band-pass and of its search.
#include "pipeline/NortonSequence.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <optional>
#include <utility>

#include "norton/Nortonsearch.h"
#include "numbers/Formatfunctions.h"
#include "prototypes/Prototype.h"
#include "scaling/BandScaler.h"

namespace ladderwise {

namespace {

constexpr int FewestPoles = 3;
constexpr int MostPoles = 5;
constexpr int BoxDecimals = 2;           ///< of A, K and M when the program writes them
constexpr double SmallestScalar = 1.0;   ///< A
constexpr double SmallestRatio = 1.001;  ///< K and M: at 1 a transformer is none
constexpr double NoRatio = 1.0;          ///< M while it plays no part
constexpr double LargestRatio = 100.0;
constexpr const char* NoRatioText = "1.00";  ///< in the box of M for 3 poles
constexpr double HalfDecimal = 0.0051;       ///< a box of two decimals stands for what is nearer

bool IsTee(NortonType type) {
    return type == NortonType::TCap || type == NortonType::TInd;
}

void WriteBox(NumberBox& box, double value) {
    box.Type(FormatFixed(value, BoxDecimals));
}

/// The same for a number that the search has found: it is nobody's entry.
void WriteFound(NumberBox& box, double value) {
    WriteBox(box, value);
    box.Typed = false;
}

/// A number as a box with BoxDecimals shows it.
double AsShown(double value) {
    TryParseDouble(FormatFixed(value, BoxDecimals), value);
    return value;
}

/// The search for the canonical ladder in the design. Its last outcome is kept, since a change of
/// K and M, a repeated calculation and the calculation after a search ask for the same again.
NortonChoice EvenestOf(const FilterDesign& design, const DesignInputs& inputs) {
    struct Asked {
        NortonType Type;
        NortonGoal Goal;
        NortonBase Base;
        bool operator==(const Asked&) const = default;
    };
    static std::optional<std::pair<Asked, NortonChoice>> last;
    const Asked asked{design.Norton.NortonType,
                      static_cast<NortonGoal>(inputs.Choice(ChoiceId::NortonGoal)),
                      BaseOf(design, design.Norton.ImpedanceScalar)};
    if (!last || !(last->first == asked))
        last.emplace(asked, SearchEvenest(asked.Type, asked.Base, asked.Goal));
    return last->second;
}

/// A number that plays no part: as its box says it, "1.00" for M included, and without the mark of
/// an earlier reading. What is no such number gives way to that of a fresh program.
void TakeUnread(InputId id, DesignInputs& inputs, FilterDesign& design) {
    const InputRow& row = RowOf(id, inputs);
    NumberBox& box = inputs.Box(id);
    double value = 0.0;
    if (box.HoldsExactValue())
        value = *box.ExactValue;
    else
        TryParseDouble(box.Text, value);
    if (!(value > 0.0) || !std::isfinite(value)) {
        box.Type(row.Initial);
        TryParseDouble(row.Initial, value);
    }
    row.Put(design, std::clamp(value, NoRatio, LargestRatio));
    box.ReplacedText.reset();
    box.Colour = BoxColour::Normal;
}

/// The terminations that a structure needs of a family whose form they decide.
struct TerminationRule {
    bool LargerLoad;  ///< R Load above R Source is the wrong way round
    const char* Message;
};

/// The rule that Rs and RL break; null if none. A Butterworth prototype begins with a capacitor for
/// the larger load, a Chebyshev one for the smaller load.
const TerminationRule* BrokenRule(const FilterDesign& design) {
    static constexpr TerminationRule teeButterworth{
        true,
        "Error: R_Load is greater than R_Source. \n To use a T Cap or T Ind structure, set R_Load "
        "<= R_Source. \n Or select a Pi Cap or Pi Ind structure. \n Or select a Chebyshev "
        "prototype."};
    static constexpr TerminationRule teeChebyshev{
        false,
        "Error: R_Load is less than R_Source. \n To use a T Cap or T Ind structure, set R_Load >= "
        "R_Source. \n Or select a Pi Cap or Pi Ind structure. \n Or select a Butterworth "
        "prototype."};
    static constexpr TerminationRule piButterworth{
        false,
        "Error: R_Load is less than R_Source. \n To use a Pi Cap or Pi Ind structure, set R_Load "
        ">= R_Source. \n Or select a T Cap or T Ind structure. \n Or select a Chebyshev "
        "prototype."};
    static constexpr TerminationRule piChebyshev{
        true,
        "Error: R_Load is greater than R_Source. \n To use a Pi Cap or Pi Ind structure, set "
        "R_Load <= R_Source. \n Or select a T Cap or T Ind structure. \n Or select a Butterworth "
        "prototype."};
    const bool tee = IsTee(design.Norton.NortonType);
    const TerminationRule* rule = nullptr;
    if (design.ResponseType == ResponseType::Butterworth)
        rule = tee ? &teeButterworth : &piButterworth;
    else if (design.ResponseType == ResponseType::Chebyshev)
        rule = tee ? &teeChebyshev : &piChebyshev;
    if (!rule) return nullptr;
    const bool wrong =
        rule->LargerLoad ? design.RLoad > design.RSource : design.RLoad < design.RSource;
    return wrong ? rule : nullptr;
}

}  // namespace

void ReadNortonInputs(DesignInputs& inputs, FilterDesign& design, const MessageCallback& report) {
    if (design.PassType != PassType::Norton) {
        for (const InputId id : {InputId::NortonA, InputId::NortonK, InputId::NortonM})
            TakeUnread(id, inputs, design);
        return;
    }
    if (design.NumPoles != FewestPoles && design.NumPoles != MostPoles) {
        design.NumPoles = FewestPoles;
        inputs.Box(InputId::NumPoles).Replace(FewestPoles, std::to_string(FewestPoles));
    }
    StepInput(InputId::NortonA, inputs, design, {}, report);
    StepInput(InputId::NortonK, inputs, design, {}, report);
    if (design.NumPoles == MostPoles)
        StepInput(InputId::NortonM, inputs, design, {}, report);
    else
        TakeUnread(InputId::NortonM, inputs, design);
}

void SetNortonForm(FilterDesign& design, const MessageCallback& report) {
    design.FormCLC = !IsTee(design.Norton.NortonType);
    const TerminationRule* const broken = BrokenRule(design);
    if (broken && report) report("Error", broken->Message);
}

void LookForEvenest(const DesignInputs& inputs, FilterDesign& design) {
    if (design.PassType != PassType::Norton || !inputs.IsOn(ChoiceId::AutoOptimize)) return;
    const NortonChoice best = EvenestOf(design, inputs);
    design.NortonResult.SearchedK = AsShown(std::min(best.K, LargestRatio));
    if (design.NumPoles == MostPoles)
        design.NortonResult.SearchedM = AsShown(std::min(best.M, LargestRatio));
}

std::string NortonSearchText(const FilterDesign& design) {
    const NortonResult& result = design.NortonResult;
    const auto differs = [](double searched, double used) {
        return searched > 0.0 && std::abs(searched - used) > HalfDecimal;
    };
    const bool two = result.SearchedM > 0.0;
    if (!differs(result.SearchedK, result.K) && !(two && differs(result.SearchedM, result.M)))
        return {};
    const auto ratios = [two](double k, double m) {
        return "K " + FormatFixed(k, BoxDecimals) +
               (two ? " and M " + FormatFixed(m, BoxDecimals) : "");
    };
    return ratios(result.K, result.M) + (two ? " are" : " is") +
           " not optimised, although Auto Optimize is on: \"Optimize K and M\" (console: "
           "auto-optimize=on) gives " +
           ratios(result.SearchedK, result.SearchedM) + ".";
}

void BuildNortonLadder(FilterDesign& design) {
    ScaleBandPass(design);
    design.NortonBaseElements = design.Elements;
    design.Elements.fill({});
    TransformNorton(design);
}

std::string NortonFault(const FilterDesign& design) {
    if (design.PassType != PassType::Norton) return {};
    if (BrokenRule(design))
        return "This structure cannot be built between these terminations with this response.";
    const NortonResult& result = design.NortonResult;
    const auto unfit = [](double value) { return !std::isfinite(value) || value < 0.0; };
    const auto count = std::count_if(result.Capacitors.begin(), result.Capacitors.end(), unfit) +
                       std::count_if(result.Inductors.begin(), result.Inductors.end(), unfit);
    if (count == 0) return {};
    return "This ladder cannot be built with these K" +
           std::string(design.NumPoles == MostPoles ? " and M" : "") + ": " +
           std::to_string(count) + (count == 1 ? " value is" : " values are") +
           " negative or not finite.";
}

void StepNortonInput(InputId id, double step, DesignInputs& inputs, FilterDesign& design,
                     const MessageCallback& report) {
    StepInput(id, inputs, design, {}, report);
    NortonSettings& norton = design.Norton;
    double& value = id == InputId::NortonA   ? norton.ImpedanceScalar
                    : id == InputId::NortonK ? norton.NortonK
                                             : norton.NortonM;
    value += step;
    norton.ImpedanceScalar = std::max(norton.ImpedanceScalar, SmallestScalar);
    norton.NortonK = std::max(norton.NortonK, SmallestRatio);
    WriteBox(inputs.Box(InputId::NortonA), norton.ImpedanceScalar);
    WriteBox(inputs.Box(InputId::NortonK), norton.NortonK);
    if (design.NumPoles != MostPoles && id != InputId::NortonM) return;
    norton.NortonM = std::max(norton.NortonM, SmallestRatio);
    WriteBox(inputs.Box(InputId::NortonM), norton.NortonM);
}

void OptimizeNorton(DesignInputs& inputs, const FilterDesign& design) {
    // A copy of both: the calculation that follows reads the boxes once more, and the mark of a
    // replaced entry would not survive two readings.
    DesignInputs read = inputs;
    const auto base = std::make_unique<FilterDesign>(design);
    ReadInputs(read, *base, nullptr);
    ReadNortonInputs(read, *base, nullptr);
    SetNortonForm(*base, nullptr);
    base->Elements.fill({});
    BuildPrototype(*base, base->NumPoles, nullptr);
    BuildNortonLadder(*base);
    const NortonChoice best = EvenestOf(*base, inputs);
    WriteFound(inputs.Box(InputId::NortonK), best.K);
    if (base->NumPoles == MostPoles)
        WriteFound(inputs.Box(InputId::NortonM), best.M);
    else
        inputs.Box(InputId::NortonM).WriteText(NoRatioText, NoRatio);
}

bool ApplyNortonControl(NortonControl control, DesignInputs& inputs, const FilterDesign& design) {
    double typed = 0.0;
    const bool sameScalar = TryParseDouble(inputs.Box(InputId::NortonA).Text, typed) &&
                            typed == design.Norton.ImpedanceScalar;
    const bool automatic =
        inputs.IsOn(ChoiceId::AutoOptimize) && !(control == NortonControl::Box && sameScalar);
    const bool search = automatic || control == NortonControl::OptimizeButton;
    if (search) OptimizeNorton(inputs, design);
    return search || control != NortonControl::GoalButton;
}

}  // namespace ladderwise
