// A small printf-style formatter. Numbers never depend on the locale.
#include "support/Format.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <cmath>
#include <cstdio>
#include <string>

namespace {

// Widths, and the precisions that add digits, above this are taken as this: no message needs more, and a
// width handed in as an argument must not make the formatter fill gigabytes.
constexpr int kMaxField = 4096;

struct Directive {
    bool left = false, plus = false, space = false, zero = false, alt = false;
    int width = -1;
    int precision = -1;
    char16_t conversion = 0;
};

// A double given for an integer is cut toward zero; NaN is 0 and values beyond the range take its ends.
long long asInteger(const FormatArg& arg) {
    if (const auto* i = std::get_if<long long>(&arg)) return *i;
    const auto* d = std::get_if<double>(&arg);
    if (!d || std::isnan(*d)) return 0;
    constexpr double kTwoTo63 = 9223372036854775808.0;
    if (*d >= kTwoTo63) return LLONG_MAX;
    if (*d < -kTwoTo63) return LLONG_MIN;
    return static_cast<long long>(*d);
}

int capped(long long value) { return static_cast<int>(std::clamp<long long>(value, -kMaxField, kMaxField)); }

// Digits of a width or precision, held at INT_MAX however many there are.
int readDigits(const std::u16string& f, size_t& i) {
    long long value = 0;
    for (; i < f.size() && f[i] >= u'0' && f[i] <= u'9'; ++i)
        if (value <= INT_MAX) value = value * 10 + (f[i] - u'0');
    return static_cast<int>(std::min<long long>(value, INT_MAX));
}

double asDouble(const FormatArg& arg) {
    if (const auto* d = std::get_if<double>(&arg)) return *d;
    if (const auto* i = std::get_if<long long>(&arg)) return static_cast<double>(*i);
    return 0.0;
}

std::u16string pad(std::u16string body, const Directive& directive, bool numeric) {
    if (directive.width < 0 || static_cast<int>(body.size()) >= directive.width) return body;
    const size_t fill = static_cast<size_t>(directive.width) - body.size();
    if (directive.left) return body + std::u16string(fill, u' ');
    if (numeric && directive.zero) {
        size_t signLen = (!body.empty() && (body[0] == u'-' || body[0] == u'+' || body[0] == u' ')) ? 1 : 0;
        if (body.size() >= signLen + 2 && body[signLen] == u'0' && (body[signLen + 1] == u'x' || body[signLen + 1] == u'X'))
            signLen += 2;
        return body.substr(0, signLen) + std::u16string(fill, u'0') + body.substr(signLen);
    }
    return std::u16string(fill, u' ') + body;
}

std::u16string ascii(const std::string& s) { return std::u16string(s.begin(), s.end()); }

std::u16string formatInteger(long long value, const Directive& directive) {
    const bool isSigned = directive.conversion == u'd' || directive.conversion == u'i';
    unsigned long long magnitude;
    bool negative = false;
    if (isSigned) {
        negative = value < 0;
        magnitude = negative ? 0ULL - static_cast<unsigned long long>(value) : static_cast<unsigned long long>(value);
    } else {
        magnitude = static_cast<unsigned long long>(value);
    }
    int base = 10;
    if (directive.conversion == u'x' || directive.conversion == u'X') base = 16;
    if (directive.conversion == u'o') base = 8;
    char buf[32];
    auto [end, ec] = std::to_chars(buf, buf + sizeof buf, magnitude, base);
    std::string digits(buf, end);
    if (directive.conversion == u'X')
        for (char& c : digits) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    if (directive.precision >= 0) {
        const int precision = std::min(directive.precision, kMaxField);
        if (precision == 0 && magnitude == 0) digits.clear();
        if (static_cast<int>(digits.size()) < precision) digits.insert(0, static_cast<size_t>(precision) - digits.size(), '0');
    }
    std::string prefix;
    if (negative) prefix = "-";
    else if (isSigned && directive.plus) prefix = "+";
    else if (isSigned && directive.space) prefix = " ";
    if (directive.alt && magnitude != 0 && base == 16) prefix += directive.conversion == u'X' ? "0X" : "0x";
    Directive padded = directive;
    if (directive.precision >= 0) padded.zero = false;
    return pad(ascii(prefix + digits), padded, true);
}

std::u16string formatDouble(double value, const Directive& directive) {
    if (std::isnan(value)) return pad(u"nan", directive, false);
    if (std::isinf(value)) return pad(value < 0 ? u"-inf" : u"inf", directive, false);
    const int precision = directive.precision < 0 ? 6 : std::min(directive.precision, kMaxField);
    std::chars_format format = std::chars_format::fixed;
    if (directive.conversion == u'e' || directive.conversion == u'E') format = std::chars_format::scientific;
    if (directive.conversion == u'g' || directive.conversion == u'G') format = std::chars_format::general;
    // Room for the 309 integer digits of the largest double, the precision's digits, sign, point and exponent.
    std::string text(static_cast<size_t>(precision) + 330, '\0');
    const auto [end, ec] = std::to_chars(text.data(), text.data() + text.size(), value, format,
                                         precision == 0 && format == std::chars_format::general ? 1 : precision);
    text.resize(ec == std::errc() ? static_cast<size_t>(end - text.data()) : 0);
    if (text.empty()) text = "0";
    if (format == std::chars_format::scientific) {
        // printf writes at least two exponent digits.
        const size_t e = text.find('e');
        if (e != std::string::npos && e + 2 < text.size() + 1) {
            const size_t digitsAt = e + 2;
            if (text.size() - digitsAt < 2) text.insert(digitsAt, "0");
        }
    }
    if (directive.conversion == u'E' || directive.conversion == u'G')
        for (char& c : text) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    if (text[0] != '-' && directive.plus) text = "+" + text;
    else if (text[0] != '-' && directive.space) text = " " + text;
    return pad(ascii(text), directive, true);
}

} // namespace

CString FormatV(const CString& format, const std::vector<FormatArg>& args) {
    const std::u16string& f = format.str();
    std::u16string out;
    size_t next = 0;
    auto takeArg = [&]() -> FormatArg { return next < args.size() ? args[next++] : FormatArg(CString()); };

    for (size_t i = 0; i < f.size(); ++i) {
        if (f[i] != u'%') { out += f[i]; continue; }
        const size_t start = i++;
        if (i < f.size() && f[i] == u'%') { out += u'%'; continue; }
        Directive directive;
        for (; i < f.size(); ++i) {
            const char16_t c = f[i];
            if (c == u'-') directive.left = true;
            else if (c == u'+') directive.plus = true;
            else if (c == u' ') directive.space = true;
            else if (c == u'0') directive.zero = true;
            else if (c == u'#') directive.alt = true;
            else break;
        }
        if (i < f.size() && f[i] == u'*') {
            // A negative width from an argument means left-justified, as in printf.
            const int width = capped(asInteger(takeArg()));
            ++i;
            if (width < 0) directive.left = true;
            directive.width = width < 0 ? -width : width;
        } else if (i < f.size() && f[i] >= u'0' && f[i] <= u'9') {
            directive.width = std::min(readDigits(f, i), kMaxField);
        }
        if (i < f.size() && f[i] == u'.') {
            ++i;
            // A precision of %s only shortens, so it is not capped; a negative one from an argument is none.
            if (i < f.size() && f[i] == u'*') {
                const long long precision = asInteger(takeArg());
                directive.precision = precision < 0 ? -1 : static_cast<int>(std::min<long long>(precision, INT_MAX));
                ++i;
            } else {
                directive.precision = readDigits(f, i);
            }
        }
        while (i < f.size() && (f[i] == u'l' || f[i] == u'h' || f[i] == u'L' || f[i] == u'z' || f[i] == u'I' || f[i] == u'w'))
            ++i;
        if (i >= f.size()) { out.append(f, start, std::u16string::npos); break; }
        directive.conversion = f[i];
        switch (directive.conversion) {
        case u's': case u'S': {
            const FormatArg arg = takeArg();
            std::u16string text;
            if (const auto* s = std::get_if<CString>(&arg)) text = s->str();
            if (directive.precision >= 0 && static_cast<int>(text.size()) > directive.precision) text.resize(static_cast<size_t>(directive.precision));
            out += pad(text, directive, false);
            break;
        }
        case u'c': case u'C':
            out += pad(std::u16string(1, static_cast<char16_t>(asInteger(takeArg()))), directive, false);
            break;
        case u'd': case u'i': case u'u': case u'x': case u'X': case u'o':
            out += formatInteger(asInteger(takeArg()), directive);
            break;
        case u'f': case u'F': case u'e': case u'E': case u'g': case u'G':
            out += formatDouble(asDouble(takeArg()), directive);
            break;
        default:
            // Not a directive: copy it as it stands.
            out.append(f, start, i - start + 1);
            break;
        }
    }
    return CString(std::move(out));
}
