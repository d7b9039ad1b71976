// A small printf-style formatter. Numbers never depend on the locale.
#include "support/Format.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <string>

namespace {

struct Spec {
    bool left = false, plus = false, space = false, zero = false, alt = false;
    int width = -1;
    int precision = -1;
    char16_t conversion = 0;
};

long long asInteger(const FormatArg& arg) {
    if (const auto* i = std::get_if<long long>(&arg)) return *i;
    if (const auto* d = std::get_if<double>(&arg)) return static_cast<long long>(*d);
    return 0;
}

double asDouble(const FormatArg& arg) {
    if (const auto* d = std::get_if<double>(&arg)) return *d;
    if (const auto* i = std::get_if<long long>(&arg)) return static_cast<double>(*i);
    return 0.0;
}

std::u16string pad(std::u16string body, const Spec& spec, bool numeric) {
    if (spec.width < 0 || static_cast<int>(body.size()) >= spec.width) return body;
    const size_t fill = static_cast<size_t>(spec.width) - body.size();
    if (spec.left) return body + std::u16string(fill, u' ');
    if (numeric && spec.zero) {
        size_t signLen = (!body.empty() && (body[0] == u'-' || body[0] == u'+' || body[0] == u' ')) ? 1 : 0;
        if (body.size() >= signLen + 2 && body[signLen] == u'0' && (body[signLen + 1] == u'x' || body[signLen + 1] == u'X'))
            signLen += 2;
        return body.substr(0, signLen) + std::u16string(fill, u'0') + body.substr(signLen);
    }
    return std::u16string(fill, u' ') + body;
}

std::u16string ascii(const std::string& s) { return std::u16string(s.begin(), s.end()); }

std::u16string formatInteger(long long value, const Spec& spec) {
    const bool isSigned = spec.conversion == u'd' || spec.conversion == u'i';
    unsigned long long magnitude;
    bool negative = false;
    if (isSigned) {
        negative = value < 0;
        magnitude = negative ? 0ULL - static_cast<unsigned long long>(value) : static_cast<unsigned long long>(value);
    } else {
        magnitude = static_cast<unsigned long long>(value);
    }
    int base = 10;
    if (spec.conversion == u'x' || spec.conversion == u'X') base = 16;
    if (spec.conversion == u'o') base = 8;
    char buf[32];
    auto [end, ec] = std::to_chars(buf, buf + sizeof buf, magnitude, base);
    std::string digits(buf, end);
    if (spec.conversion == u'X')
        for (char& c : digits) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    if (spec.precision >= 0) {
        if (spec.precision == 0 && magnitude == 0) digits.clear();
        if (static_cast<int>(digits.size()) < spec.precision)
            digits.insert(0, static_cast<size_t>(spec.precision) - digits.size(), '0');
    }
    std::string prefix;
    if (negative) prefix = "-";
    else if (isSigned && spec.plus) prefix = "+";
    else if (isSigned && spec.space) prefix = " ";
    if (spec.alt && magnitude != 0 && base == 16) prefix += spec.conversion == u'X' ? "0X" : "0x";
    Spec padSpec = spec;
    if (spec.precision >= 0) padSpec.zero = false;
    return pad(ascii(prefix + digits), padSpec, true);
}

std::u16string formatDouble(double value, const Spec& spec) {
    if (std::isnan(value)) return pad(u"nan", spec, false);
    if (std::isinf(value)) return pad(value < 0 ? u"-inf" : u"inf", spec, false);
    const int precision = spec.precision < 0 ? 6 : spec.precision;
    std::chars_format format = std::chars_format::fixed;
    if (spec.conversion == u'e' || spec.conversion == u'E') format = std::chars_format::scientific;
    if (spec.conversion == u'g' || spec.conversion == u'G') format = std::chars_format::general;
    char buf[512];
    auto [end, ec] = std::to_chars(buf, buf + sizeof buf, value, format, precision == 0 && format == std::chars_format::general ? 1 : precision);
    std::string text = ec == std::errc() ? std::string(buf, end) : std::string("0");
    if (format == std::chars_format::scientific) {
        // printf writes at least two exponent digits.
        const size_t e = text.find('e');
        if (e != std::string::npos && e + 2 < text.size() + 1) {
            const size_t digitsAt = e + 2;
            if (text.size() - digitsAt < 2) text.insert(digitsAt, "0");
        }
    }
    if (spec.conversion == u'E' || spec.conversion == u'G')
        for (char& c : text) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    if (text[0] != '-' && spec.plus) text = "+" + text;
    else if (text[0] != '-' && spec.space) text = " " + text;
    return pad(ascii(text), spec, true);
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
        Spec spec;
        for (; i < f.size(); ++i) {
            const char16_t c = f[i];
            if (c == u'-') spec.left = true;
            else if (c == u'+') spec.plus = true;
            else if (c == u' ') spec.space = true;
            else if (c == u'0') spec.zero = true;
            else if (c == u'#') spec.alt = true;
            else break;
        }
        if (i < f.size() && f[i] == u'*') { spec.width = static_cast<int>(asInteger(takeArg())); ++i; }
        else for (; i < f.size() && f[i] >= u'0' && f[i] <= u'9'; ++i) spec.width = std::max(spec.width, 0) * 10 + (f[i] - u'0');
        if (spec.width < -1) { spec.left = true; spec.width = -spec.width; }
        if (i < f.size() && f[i] == u'.') {
            ++i;
            spec.precision = 0;
            if (i < f.size() && f[i] == u'*') { spec.precision = static_cast<int>(asInteger(takeArg())); ++i; }
            else for (; i < f.size() && f[i] >= u'0' && f[i] <= u'9'; ++i) spec.precision = spec.precision * 10 + (f[i] - u'0');
        }
        while (i < f.size() && (f[i] == u'l' || f[i] == u'h' || f[i] == u'L' || f[i] == u'z' || f[i] == u'I' || f[i] == u'w'))
            ++i;
        if (i >= f.size()) { out.append(f, start, std::u16string::npos); break; }
        spec.conversion = f[i];
        switch (spec.conversion) {
        case u's': case u'S': {
            const FormatArg arg = takeArg();
            std::u16string text;
            if (const auto* s = std::get_if<CString>(&arg)) text = s->str();
            if (spec.precision >= 0 && static_cast<int>(text.size()) > spec.precision) text.resize(static_cast<size_t>(spec.precision));
            out += pad(text, spec, false);
            break;
        }
        case u'c': case u'C':
            out += pad(std::u16string(1, static_cast<char16_t>(asInteger(takeArg()))), spec, false);
            break;
        case u'd': case u'i': case u'u': case u'x': case u'X': case u'o':
            out += formatInteger(asInteger(takeArg()), spec);
            break;
        case u'f': case u'F': case u'e': case u'E': case u'g': case u'G':
            out += formatDouble(asDouble(takeArg()), spec);
            break;
        default:
            // Not a directive: copy it as it stands.
            out.append(f, start, i - start + 1);
            break;
        }
    }
    return CString(std::move(out));
}
