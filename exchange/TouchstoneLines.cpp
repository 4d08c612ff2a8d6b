// Lines, option line and keywords.
#include "exchange/TouchstoneLines.h"

#include <algorithm>
#include <cctype>
#include <cmath>

#include "numbers/PlainNumbers.h"

namespace ladderwise {

namespace {

constexpr std::size_t LongestQuote = 40;  ///< bytes of a word that a message repeats

constexpr char EndOfFileMark = '\x1a';  ///< that old systems put behind a text, once or often
constexpr const char* EndOfText = "\x1a\r\n\t ";

std::string LowerCase(std::string_view text) {
    std::string lower(text);
    for (char& c : lower)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return lower;
}

bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\v' || c == '\f';
}

std::vector<std::string_view> WordsOf(std::string_view text) {
    std::vector<std::string_view> words;
    for (std::size_t i = 0; i < text.size();) {
        std::size_t end = i;
        while (end < text.size() && !IsBlank(text[end]))
            ++end;
        if (end > i) words.push_back(text.substr(i, end - i));
        i = end + 1;
    }
    return words;
}

/// A positive number of a header; `what` begins the sentence of a refusal.
double PositiveNumber(std::size_t line, std::string_view word, const std::string& what) {
    double x = 0.0;
    if (ReadPlainNumber(word, x) != NumberFault::None || !(x > 0.0) || !std::isfinite(x))
        Refuse(line, what + " is a positive number, not " + QuotedWord(word));
    return x;
}

std::size_t CountNumber(std::size_t line, const std::vector<std::string_view>& words,
                        const std::string& what) {
    constexpr double most = 1e9;
    if (words.size() != 1) Refuse(line, what + " is one whole number");
    const double x = PositiveNumber(line, words[0], what);
    if (x != std::floor(x) || x > most) Refuse(line, what + " is no " + std::string(words[0]));
    return static_cast<std::size_t>(x);
}

/// Reads the bytes line by line into a TouchstoneBody.
class LineReader {
public:
    explicit LineReader(TouchstoneBody& body) : out(body) {}

    void Take(std::size_t number, std::string_view text) {
        line = number;
        text = text.substr(0, text.find('!'));
        while (!text.empty() && IsBlank(text.front()))
            text.remove_prefix(1);
        while (!text.empty() && IsBlank(text.back()))
            text.remove_suffix(1);
        if (text.empty() || section == Section::End) return;
        out.LastLine = number;
        if (text.front() == '[')
            TakeKeyword(text);
        else if (section == Section::Information)
            return;
        else if (text.front() == '#')
            TakeOptions(WordsOf(text.substr(1)));
        else
            TakeNumbers(WordsOf(text));
    }

    void Finish() {
        TouchstoneHeader& header = out.Header;
        if (header.Version == 1) return;
        if (referencesMissing > 0) Refuse(out.LastLine, "[Reference] has too few numbers");
        if (section == Section::Head) Refuse(out.LastLine, "[Network Data] is missing");
        if (header.Ports == 0) Refuse(out.LastLine, "[Number of Ports] is missing");
        if (header.Ports == 2 && header.Matrix == MatrixShape::Full && !header.Order)
            Refuse(out.LastLine, "[Two-Port Data Order] is missing");
        if (header.Order) return;
        header.Order = PairOrder::Columns;
    }

private:
    enum class Section { Head, Information, Network, Noise, End };

    TouchstoneBody& out;
    Section section = Section::Head;
    std::size_t line = 0;
    std::size_t referencesMissing = 0, referencesTaken = 0;

    void TakeKeyword(std::string_view text) {
        const std::size_t close = text.find(']');
        if (close == std::string_view::npos) Refuse(line, "a keyword without its bracket");
        std::string key;
        for (const std::string_view word : WordsOf(text.substr(1, close - 1)))
            key += (key.empty() ? "" : " ") + LowerCase(word);
        if (section == Section::Information) {
            if (key == "end information") section = Section::Head;
            return;
        }
        const auto words = WordsOf(text.substr(close + 1));
        if (key == "version") return TakeVersion(words);
        if (out.Header.Version == 1) Refuse(line, "a keyword, but no [Version] 2.0 before it");
        if (referencesMissing > 0) Refuse(line, "[Reference] has too few numbers");
        if (!TakeSection(key) && !TakeHeaderKeyword(key, words))
            Refuse(line, "the keyword " + QuotedWord(text.substr(0, close + 1)) + " is not known");
    }

    void TakeVersion(const std::vector<std::string_view>& words) {
        double version = 0.0;
        if (words.size() != 1 || ReadPlainNumber(words[0], version) != NumberFault::None ||
            !(version >= 1.0) || !(version < 3.0))
            Refuse(line, "the version is 1.0 or 2.0");
        if (!out.Data.empty() || section != Section::Head)
            Refuse(line, "[Version] stands behind the data");
        out.Header.Version = version < 2.0 ? 1 : 2;
    }

    bool TakeSection(const std::string& key) {
        if (key == "network data") {
            if (section != Section::Head) Refuse(line, "a second [Network Data]");
            section = Section::Network;
        } else if (key == "noise data") {
            if (section != Section::Network) Refuse(line, "[Noise Data] before [Network Data]");
            section = Section::Noise;
            out.Messages.push_back("Noise data from line " + std::to_string(line) +
                                   " on were left out.");
        } else if (key == "end") {
            if (section == Section::Head) Refuse(line, "[End] before [Network Data]");
            section = Section::End;
        } else if (key == "begin information") {
            section = Section::Information;
        } else {
            return false;
        }
        return true;
    }

    bool TakeHeaderKeyword(const std::string& key, const std::vector<std::string_view>& words) {
        TouchstoneHeader& header = out.Header;
        if (section != Section::Head) Refuse(line, "a keyword amid the data");
        const std::string word = words.size() == 1 ? LowerCase(words[0]) : "";
        if (key == "number of ports") {
            header.Ports = static_cast<int>(CountNumber(line, words, "[Number of Ports]"));
        } else if (key == "number of frequencies") {
            header.Points = CountNumber(line, words, "[Number of Frequencies]");
        } else if (key == "number of noise frequencies") {
            CountNumber(line, words, "[Number of Noise Frequencies]");
        } else if (key == "two-port data order" || key == "two-port order") {
            if (word != "21_12" && word != "12_21") Refuse(line, "the order is 21_12 or 12_21");
            header.Order = word == "21_12" ? PairOrder::Columns : PairOrder::Rows;
        } else if (key == "matrix format") {
            if (word != "full" && word != "lower" && word != "upper")
                Refuse(line, "the matrix format is Full, Lower or Upper");
            header.Matrix = word == "full"    ? MatrixShape::Full
                            : word == "lower" ? MatrixShape::Lower
                                              : MatrixShape::Upper;
        } else if (key == "reference") {
            if (header.Ports == 0) Refuse(line, "[Reference] before [Number of Ports]");
            if (header.Ports > 2)
                Refuse(line, std::to_string(header.Ports) + " ports; one or two can be read");
            referencesMissing = static_cast<std::size_t>(header.Ports);
            referencesTaken = 0;
            TakeReferences(words);
        } else {
            return false;
        }
        return true;
    }

    void TakeReferences(const std::vector<std::string_view>& words) {
        for (const std::string_view word : words) {
            if (referencesMissing == 0) Refuse(line, "[Reference] has too many numbers");
            const double ohms = PositiveNumber(line, word, "a reference resistance");
            if (referencesTaken++ == 0) out.Header.Reference.Source = ohms;
            out.Header.Reference.Load = ohms;
            --referencesMissing;
        }
    }

    void TakeNumbers(std::vector<std::string_view> words) {
        if (referencesMissing > 0) return TakeReferences(words);
        if (section == Section::Noise) return;
        if (out.Header.Version == 2 && section == Section::Head)
            Refuse(line, "data before [Network Data]");
        out.Data.push_back({line, std::move(words)});
    }

    void TakeOptions(const std::vector<std::string_view>& words) {
        TouchstoneHeader& header = out.Header;
        if (header.OptionLine > 0) {
            out.Messages.push_back("The second option line, line " + std::to_string(line) +
                                   ", was left out.");
            return;
        }
        if (!out.Data.empty()) RefuseEarlyData();
        header.OptionLine = line;
        bool seen[4] = {};  // unit, parameter, format, resistance
        for (std::size_t i = 0; i < words.size(); ++i) {
            const std::size_t kind = TakeOption(words, i);
            if (seen[kind]) Refuse(line, "the option line says two things about one");
            seen[kind] = true;
        }
    }

    /// What stands before the option line may be no data at all.
    [[noreturn]] void RefuseEarlyData() const {
        const WordLine& first = out.Data.front();
        double x = 0.0;
        if (ReadPlainNumber(first.Words[0], x) == NumberFault::NotANumber)
            Refuse(first.Number, QuotedWord(first.Words[0]) + " is no number");
        Refuse(line, "the option line stands behind data");
    }

    /// One token of the option line, or several of the resistances; which of the four it is about.
    std::size_t TakeOption(const std::vector<std::string_view>& words, std::size_t& i) {
        TouchstoneHeader& header = out.Header;
        const std::string word = LowerCase(words[i]);
        static const std::vector<std::pair<const char*, double>> units = {
            {"hz", 1.0}, {"khz", 1e3}, {"mhz", 1e6}, {"ghz", 1e9}, {"thz", 1e12}};
        for (const auto& [name, unit] : units)
            if (word == name) return header.Unit = unit, 0;
        static const std::vector<std::pair<const char*, NetworkParameter>> parameters = {
            {"s", NetworkParameter::S},
            {"y", NetworkParameter::Y},
            {"z", NetworkParameter::Z},
            {"g", NetworkParameter::G},
            {"h", NetworkParameter::H}};
        for (const auto& [name, parameter] : parameters)
            if (word == name) return header.Parameter = parameter, 1;
        static const std::vector<std::pair<const char*, PairFormat>> formats = {
            {"ri", PairFormat::RealImaginary},
            {"ma", PairFormat::Magnitude},
            {"db", PairFormat::Decibels}};
        for (const auto& [name, format] : formats)
            if (word == name) return header.Format = format, 2;
        if (word[0] != 'r') Refuse(line, QuotedWord(words[i]) + " is no option");
        TakeResistances(words, i);
        return 3;
    }

    /// "R 50", "R50", "R 50 75".
    void TakeResistances(const std::vector<std::string_view>& words, std::size_t& i) {
        TouchstoneHeader& header = out.Header;
        const std::string what = "the resistance behind R";
        std::vector<std::string_view> ohms;
        if (words[i].size() > 1) ohms.push_back(words[i].substr(1));
        double x = 0.0;
        while (i + 1 < words.size() && ReadPlainNumber(words[i + 1], x) == NumberFault::None)
            ohms.push_back(words[++i]);
        const bool follows = ohms.empty() && i + 1 < words.size();
        if (follows && !std::isalpha(static_cast<unsigned char>(words[i + 1].front())))
            Refuse(line, QuotedWord(words[i + 1]) + " behind R is no number");
        if (ohms.empty()) Refuse(line, what + " is missing");
        if (ohms.size() > 2) Refuse(line, "more than two reference resistances");
        header.Reference.Source = PositiveNumber(line, ohms.front(), what);
        header.Reference.Load = PositiveNumber(line, ohms.back(), what);
        header.HasTwoReferences = ohms.size() == 2;
    }
};

void RefuseWhatIsNoText(std::string_view bytes) {
    if (bytes.starts_with("\xff\xfe") || bytes.starts_with("\xfe\xff"))
        Refuse(1, "UTF-16; save the file as plain text");
    const std::size_t zero = bytes.find('\0');
    if (zero != std::string_view::npos) {
        const auto ends =
            std::count(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(zero), '\n');
        Refuse(static_cast<std::size_t>(ends) + 1, "a zero byte: no text file");
    }
}

}  // namespace

void Refuse(std::size_t line, const std::string& reason) {
    throw TouchstoneRefusal{line, reason};
}

std::string QuotedWord(std::string_view word) {
    std::string text = "\"";
    for (const char c : word.substr(0, LongestQuote))
        text += c >= ' ' && c <= '~' ? c : '?';
    return text + (word.size() > LongestQuote ? "...\"" : "\"");
}

TouchstoneBody ReadTouchstoneLines(std::string_view bytes) {
    TouchstoneBody body;
    RefuseWhatIsNoText(bytes);
    if (bytes.starts_with("\xef\xbb\xbf")) bytes.remove_prefix(3);
    const std::size_t last = bytes.find_last_not_of(EndOfText) + 1;
    if (bytes.substr(last).find(EndOfFileMark) != bytes.npos) bytes = bytes.substr(0, last);
    LineReader reader(body);
    std::size_t number = 0;
    while (!bytes.empty()) {
        const std::size_t end = std::min(bytes.find_first_of("\r\n"), bytes.size());
        reader.Take(++number, bytes.substr(0, end));
        const bool pair = bytes.substr(end, 2) == "\r\n";
        bytes.remove_prefix(std::min(end + (pair ? 2 : 1), bytes.size()));
    }
    body.LastLine = std::max<std::size_t>(body.LastLine, 1);
    reader.Finish();
    return body;
}

}  // namespace ladderwise
