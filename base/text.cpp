#include "base/text.h"

#include <algorithm>
#include <charconv>

namespace vantrel {

namespace {
char Lower(char c) {
    return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
}
bool StartsWord(char c) {
    return c == '\0' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r' || c == ' ';
}
} // namespace

std::string UCase(std::string_view s) {
    std::string out(s);
    for (char& c : out)
        c = UpperChar(c);
    return out;
}

std::string LCase(std::string_view s) {
    std::string out(s);
    for (char& c : out)
        c = Lower(c);
    return out;
}

void ProperCaseInPlace(char* begin, char* end) {
    bool start = true;
    for (char* c = begin; c != end; ++c) {
        *c = start ? UpperChar(*c) : Lower(*c);
        start = StartsWord(*c);
    }
}

std::string ProperCase(std::string_view s) {
    std::string out(s);
    ProperCaseInPlace(out.data(), out.data() + out.size());
    return out;
}

std::string TrimSpaces(std::string_view s) {
    std::size_t b = s.find_first_not_of(' ');
    if (b == std::string_view::npos) return {};
    std::size_t e = s.find_last_not_of(' ');
    return std::string(s.substr(b, e - b + 1));
}

std::string TrimBlanks(std::string_view s) {
    std::size_t b = 0, e = s.size();
    while (b < e && IsBlankChar(s[b]))
        ++b;
    while (e > b && IsBlankChar(s[e - 1]))
        --e;
    return std::string(s.substr(b, e - b));
}

bool ContainsText(std::string_view haystack, std::string_view needle) {
    return haystack.find(needle) != std::string_view::npos;
}

bool EqualsNoCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (UpperChar(a[i]) != UpperChar(b[i])) return false;
    return true;
}

std::string ReplaceAll(std::string_view s, std::string_view from, std::string_view to) {
    std::string out;
    if (from.empty()) return std::string(s);
    std::size_t pos = 0;
    while (true) {
        std::size_t hit = s.find(from, pos);
        if (hit == std::string_view::npos) break;
        out.append(s.substr(pos, hit - pos));
        out.append(to);
        pos = hit + from.size();
    }
    out.append(s.substr(pos));
    return out;
}

std::size_t LineEnd(std::string_view text, std::size_t pos) {
    while (pos < text.size() && !IsLineBreakChar(text[pos]))
        ++pos;
    return std::min(pos, text.size());
}

std::string WithoutLineBreaks(std::string_view s) {
    std::string out;
    out.reserve(s.size());
    for (char c : s)
        if (!IsLineBreakChar(c)) out += c;
    return out;
}

std::string WithoutControlCharacters(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 32 || (byte >= 127 && byte < 160)) continue;
        out += c;
    }
    return out;
}

std::string Escape(std::string_view s) {
    static constexpr char Hex[] = "0123456789ABCDEF";
    std::string out;
    out.reserve(s.size());
    for (char c : s) {
        const auto byte = static_cast<unsigned char>(c);
        switch (c) {
        case '\t':
            out += "\\t";
            break;
        case '\r':
            out += "\\r";
            break;
        case '\n':
            out += "\\n";
            break;
        case '\\':
            out += "\\\\";
            break;
        default:
            if (byte < 32 || byte == 127)
                out.append("\\x").append(1, Hex[byte >> 4]).append(1, Hex[byte & 15]);
            else
                out += c;
        }
    }
    return out;
}

std::string FloatText(float value) {
    char buf[64];
    auto res = std::to_chars(buf, buf + sizeof buf, value);
    std::string out(buf, res.ptr);
    if (out == "-0") out = "0";
    return out;
}

} // namespace vantrel
