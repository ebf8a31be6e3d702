// The string rules of the hive text, used both ways: how names compare and sort, and how a
// string is escaped into the text and read back out of it.

#include "platform/registry/hive_text.h"

#include <algorithm>
#include <cstdio>

#include "platform/registry/hive_text_internal.h"

namespace kw::registry::text {

using namespace detail;

namespace {

void AppendUtf8(std::string& out, std::uint32_t cp) {
    if (cp < 0x80) {
        out += static_cast<char>(cp);
    } else if (cp < 0x800) {
        out += static_cast<char>(0xC0 | (cp >> 6));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    } else if (cp < 0x10000) {
        out += static_cast<char>(0xE0 | (cp >> 12));
        out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (cp >> 18));
        out += static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    }
}

// Decodes the code point at `pos`; false on anything that is not strict UTF-8.
bool DecodeUtf8(std::string_view s, std::size_t& pos, std::uint32_t& cp) {
    const auto b0 = static_cast<unsigned char>(s[pos]);
    if (b0 < 0x80) {
        cp = b0;
        ++pos;
        return true;
    }
    int extra = 0;
    std::uint32_t min = 0;
    if ((b0 & 0xE0) == 0xC0) {
        extra = 1;
        cp = b0 & 0x1F;
        min = 0x80;
    } else if ((b0 & 0xF0) == 0xE0) {
        extra = 2;
        cp = b0 & 0x0F;
        min = 0x800;
    } else if ((b0 & 0xF8) == 0xF0) {
        extra = 3;
        cp = b0 & 0x07;
        min = 0x10000;
    } else {
        return false;
    }
    if (pos + static_cast<std::size_t>(extra) >= s.size())
        return false;
    for (int i = 1; i <= extra; ++i) {
        const auto b = static_cast<unsigned char>(s[pos + static_cast<std::size_t>(i)]);
        if ((b & 0xC0) != 0x80)
            return false;
        cp = (cp << 6) | (b & 0x3F);
    }
    if (cp < min || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF))
        return false;
    pos += static_cast<std::size_t>(extra) + 1;
    return true;
}

void AppendHexEscape(std::string& out, std::uint32_t unit, bool nextIsHexDigit) {
    char buf[16];
    std::snprintf(buf, sizeof buf, nextIsHexDigit ? "\\x%04x" : "\\x%x", unit);
    out += buf;
}

}  // namespace

std::string detail::EscapeOrLatin1(std::string_view bytes, std::string_view delimiters) {
    if (auto escaped = EscapeString(bytes, delimiters))
        return *std::move(escaped);
    // A name that is not UTF-8 came from a file as raw bytes (the calls refuse such names): its
    // stray bytes go back raw, as they were read. An escape would read back as another name.
    // Escaped a run of valid text at a time, so that an escape is padded when a hex digit follows.
    std::string out;
    std::size_t pos = 0;
    while (pos < bytes.size()) {
        const std::size_t from = pos;
        std::uint32_t cp = 0;
        while (pos < bytes.size()) {
            std::size_t at = pos;
            if (!DecodeUtf8(bytes, at, cp))
                break;
            pos = at;
        }
        out += *EscapeString(bytes.substr(from, pos - from), delimiters);
        if (pos < bytes.size())
            out += bytes[pos++];
    }
    return out;
}

bool NamesEqual(std::string_view a, std::string_view b) {
    if (a.size() != b.size())
        return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (Fold(static_cast<unsigned char>(a[i])) != Fold(static_cast<unsigned char>(b[i]))) {
            return false;
        }
    }
    return true;
}

int CompareNames(std::string_view a, std::string_view b) {
    const std::size_t n = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < n; ++i) {
        const int ca = Fold(static_cast<unsigned char>(a[i]));
        const int cb = Fold(static_cast<unsigned char>(b[i]));
        if (ca != cb)
            return ca < cb ? -1 : 1;
    }
    return a.size() == b.size() ? 0 : (a.size() < b.size() ? -1 : 1);
}

int ComparePaths(std::string_view a, std::string_view b) {
    // The separator sorts before every character, so "A\B" comes before "A B" and "AB".
    const std::size_t n = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < n; ++i) {
        const int ca = a[i] == '\\' ? 0 : Fold(static_cast<unsigned char>(a[i]));
        const int cb = b[i] == '\\' ? 0 : Fold(static_cast<unsigned char>(b[i]));
        if (ca != cb)
            return ca < cb ? -1 : 1;
    }
    return a.size() == b.size() ? 0 : (a.size() < b.size() ? -1 : 1);
}

std::optional<std::string> EscapeString(std::string_view bytes, std::string_view delimiters) {
    // Most names and values are plain printable ASCII: copy those whole.
    const bool plain = std::all_of(bytes.begin(), bytes.end(), [&](char c) {
        return c >= 0x20 && c < 0x7f && c != '\\' && delimiters.find(c) == std::string_view::npos;
    });
    if (plain)
        return std::string(bytes);
    std::string out;
    out.reserve(bytes.size() + 8);
    std::size_t pos = 0;
    while (pos < bytes.size()) {
        std::uint32_t cp = 0;
        if (!DecodeUtf8(bytes, pos, cp))
            return std::nullopt;
        const bool more = pos < bytes.size();
        const char next = more ? bytes[pos] : '\0';
        if (cp == '\\' || (cp < 0x80 && cp != 0 &&
                           delimiters.find(static_cast<char>(cp)) != std::string_view::npos)) {
            out += '\\';
            out += static_cast<char>(cp);
        } else if (cp < 0x20) {
            static constexpr char kNamed[] = "\0\0\0\0\0\0\0abtnvfr";
            if (cp >= 7 && cp <= 13) {
                out += '\\';
                out += kNamed[cp];
            } else if (cp == 27) {
                out += "\\e";
            } else {
                char buf[8];
                std::snprintf(buf, sizeof buf, more && IsOctalDigit(next) ? "\\%03o" : "\\%o", cp);
                out += buf;
            }
        } else if (cp < 0x80) {
            out += static_cast<char>(cp);
        } else if (cp < 0x10000) {
            AppendHexEscape(out, cp, more && IsHexDigit(next));
        } else {
            const std::uint32_t v = cp - 0x10000;
            AppendHexEscape(out, 0xD800 + (v >> 10), false);
            AppendHexEscape(out, 0xDC00 + (v & 0x3FF), more && IsHexDigit(next));
        }
    }
    return out;
}

std::optional<std::string> UnescapeString(std::string_view text, std::size_t& pos, char close) {
    const char stops[] = {close, '\\', '\0'};
    const std::size_t end = text.find_first_of(stops, pos);
    if (end != std::string_view::npos && text[end] == close) {
        std::string out(text.substr(pos, end - pos));
        pos = end + 1;
        return out;
    }
    std::string out;
    std::uint32_t pendingHigh = 0;  // a high surrogate waiting for its partner
    auto flushHigh = [&] {
        if (pendingHigh != 0)
            AppendUtf8(out, 0xFFFD);
        pendingHigh = 0;
    };
    while (pos < text.size()) {
        const char c = text[pos++];
        if (c == close) {
            flushHigh();
            return out;
        }
        if (c != '\\') {
            flushHigh();
            out += c;
            continue;
        }
        if (pos >= text.size())
            return std::nullopt;
        const char e = text[pos++];
        if (e == 'x') {
            std::uint32_t unit = 0;
            int digits = 0;
            while (digits < 4 && pos < text.size() && IsHexDigit(text[pos])) {
                unit = unit * 16 + static_cast<std::uint32_t>(HexValue(text[pos++]));
                ++digits;
            }
            if (digits == 0) {
                flushHigh();
                out += 'x';
            } else if (unit >= 0xD800 && unit <= 0xDBFF) {
                flushHigh();
                pendingHigh = unit;
            } else if (unit >= 0xDC00 && unit <= 0xDFFF) {
                if (pendingHigh != 0) {
                    AppendUtf8(out, 0x10000 + ((pendingHigh - 0xD800) << 10) + (unit - 0xDC00));
                    pendingHigh = 0;
                } else {
                    AppendUtf8(out, 0xFFFD);
                }
            } else {
                flushHigh();
                AppendUtf8(out, unit);
            }
            continue;
        }
        flushHigh();
        if (IsOctalDigit(e)) {
            std::uint32_t v = static_cast<std::uint32_t>(e - '0');
            for (int i = 1; i < 3 && pos < text.size() && IsOctalDigit(text[pos]); ++i) {
                v = v * 8 + static_cast<std::uint32_t>(text[pos++] - '0');
            }
            AppendUtf8(out, v);
            continue;
        }
        switch (e) {
            case 'a':
                out += '\a';
                break;
            case 'b':
                out += '\b';
                break;
            case 't':
                out += '\t';
                break;
            case 'n':
                out += '\n';
                break;
            case 'v':
                out += '\v';
                break;
            case 'f':
                out += '\f';
                break;
            case 'r':
                out += '\r';
                break;
            case 'e':
                out += '\x1b';
                break;
            default:
                out += e;
                break;  // \\ \" \[ \] and anything else stand for themselves
        }
    }
    return std::nullopt;
}

}  // namespace kw::registry::text
