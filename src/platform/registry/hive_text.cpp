#include "platform/registry/hive_text.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <unordered_map>

namespace kw::registry::text {
namespace {

constexpr std::uint32_t kSz = 1;
constexpr std::uint32_t kExpandSz = 2;
constexpr std::uint32_t kBinary = 3;
constexpr std::uint32_t kDword = 4;
constexpr std::uint32_t kMultiSz = 7;
constexpr int kHexWrapColumn = 76;

unsigned char Fold(unsigned char c) {
    return (c >= 'a' && c <= 'z') ? static_cast<unsigned char>(c - 'a' + 'A') : c;
}

bool IsHexDigit(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

int HexValue(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return c - 'A' + 10;
}

bool IsOctalDigit(char c) {
    return c >= '0' && c <= '7';
}

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

std::string_view TrimRight(std::string_view s) {
    while (!s.empty() && (s.back() == ' ' || s.back() == '\t' || s.back() == '\r')) {
        s.remove_suffix(1);
    }
    return s;
}

std::string_view TrimLeft(std::string_view s) {
    while (!s.empty() && (s.front() == ' ' || s.front() == '\t')) s.remove_prefix(1);
    return s;
}

bool StartsWith(std::string_view s, std::string_view prefix) {
    return s.substr(0, prefix.size()) == prefix;
}

std::string FoldedName(std::string_view name) {
    std::string out(name);
    for (char& c : out) c = static_cast<char>(Fold(static_cast<unsigned char>(c)));
    return out;
}

std::string EscapeOrLatin1(std::string_view bytes, std::string_view delimiters) {
    if (auto escaped = EscapeString(bytes, delimiters))
        return *std::move(escaped);
    // Names are checked for UTF-8 before they get here; this keeps a stray byte visible.
    std::string out;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const auto c = static_cast<unsigned char>(bytes[i]);
        if (c >= 0x80) {
            AppendHexEscape(out, c, i + 1 < bytes.size() && IsHexDigit(bytes[i + 1]));
        } else {
            out += *EscapeString(bytes.substr(i, 1), delimiters);
        }
    }
    return out;
}

// What a value line's data turned out to be.
enum class DataResult { kValue, kUnknownType, kDamaged };

bool ParseHexBytes(std::string_view s, std::vector<std::uint8_t>& out) {
    std::size_t i = 0;
    while (true) {
        while (i < s.size() && (s[i] == ' ' || s[i] == '\t')) ++i;
        if (i == s.size())
            return true;
        if (!IsHexDigit(s[i]))
            return false;
        int v = HexValue(s[i++]);
        if (i < s.size() && IsHexDigit(s[i]))
            v = v * 16 + HexValue(s[i++]);
        out.push_back(static_cast<std::uint8_t>(v));
        while (i < s.size() && (s[i] == ' ' || s[i] == '\t')) ++i;
        if (i == s.size())
            return true;
        if (s[i] != ',')
            return false;
        ++i;
    }
}

class Lines {
  public:
    explicit Lines(std::string_view text) : text_(text) {}
    bool Next(std::string_view& line) {
        if (pos_ >= text_.size())
            return false;
        start_ = pos_;
        std::size_t end = text_.find('\n', pos_);
        if (end == std::string_view::npos)
            end = text_.size();
        line = text_.substr(pos_, end - pos_);
        if (!line.empty() && line.back() == '\r')
            line.remove_suffix(1);
        pos_ = end + 1;
        ++number_;
        return true;
    }
    int Number() const { return number_; }
    // The text from `from` to the end of the last line returned, without its LF.
    std::string_view Since(std::size_t from) const {
        std::size_t end = std::min(pos_, text_.size() + 1) - 1;
        if (end > from && text_[end - 1] == '\r')
            --end;
        return text_.substr(from, end - from);
    }
    std::size_t LineStart() const { return start_; }
    // Lines left before the next key line, to size a section once.
    std::size_t LinesBeforeNextKey() const {
        if (pos_ >= text_.size())
            return 0;
        std::size_t end = text_.find("\n[", pos_);
        if (end == std::string_view::npos)
            end = text_.size();
        std::size_t n = 1;
        const char* p = text_.data() + pos_;
        const char* stop = text_.data() + end;
        while ((p = static_cast<const char*>(
                    std::memchr(p, '\n', static_cast<std::size_t>(stop - p))))) {
            ++n;
            ++p;
        }
        return n;
    }

  private:
    std::string_view text_;
    std::size_t pos_ = 0;
    std::size_t start_ = 0;
    int number_ = 0;
};

// Reads the data after "=". `rest` is the rest of the line; hex data may pull further lines.
DataResult ParseData(std::string_view rest, Lines& lines, Value& entry) {
    auto stringValue = [&](std::uint32_t type, std::size_t quote) {
        std::size_t pos = quote + 1;
        auto s = UnescapeString(rest, pos, '"');
        if (!s || !TrimRight(rest.substr(pos)).empty())
            return DataResult::kDamaged;
        entry.type = type;
        entry.data.assign(s->begin(), s->end());
        entry.data.push_back(0);
        return DataResult::kValue;
    };
    if (rest.empty())
        return DataResult::kUnknownType;
    if (rest[0] == '"')
        return stringValue(kSz, 0);
    if (StartsWith(rest, "str:\""))
        return stringValue(kSz, 4);
    if (StartsWith(rest, "str(2):\""))
        return stringValue(kExpandSz, 7);
    if (StartsWith(rest, "str(7):\""))
        return stringValue(kMultiSz, 7);
    if (StartsWith(rest, "dword:")) {
        std::string_view digits = TrimRight(rest.substr(6));
        if (digits.empty() || digits.size() > 8)
            return DataResult::kDamaged;
        std::uint32_t v = 0;
        for (char c : digits) {
            if (!IsHexDigit(c))
                return DataResult::kDamaged;
            v = v * 16 + static_cast<std::uint32_t>(HexValue(c));
        }
        entry.type = kDword;
        entry.data = {static_cast<std::uint8_t>(v), static_cast<std::uint8_t>(v >> 8),
                      static_cast<std::uint8_t>(v >> 16), static_cast<std::uint8_t>(v >> 24)};
        return DataResult::kValue;
    }
    std::size_t start = 0;
    if (StartsWith(rest, "hex:")) {
        entry.type = kBinary;
        start = 4;
    } else if (StartsWith(rest, "hex(")) {
        std::size_t close = rest.find("):", 4);
        if (close == std::string_view::npos || close == 4 || close > 12) {
            return DataResult::kUnknownType;
        }
        std::uint32_t type = 0;
        for (char c : rest.substr(4, close - 4)) {
            if (!IsHexDigit(c))
                return DataResult::kUnknownType;
            type = type * 16 + static_cast<std::uint32_t>(HexValue(c));
        }
        entry.type = type;
        start = close + 2;
    } else {
        return DataResult::kUnknownType;
    }
    std::string_view chunk = TrimRight(rest.substr(start));
    entry.data.clear();
    while (!chunk.empty() && chunk.back() == '\\') {
        chunk.remove_suffix(1);
        if (!ParseHexBytes(chunk, entry.data))
            return DataResult::kDamaged;
        std::string_view next;
        if (!lines.Next(next))
            return DataResult::kDamaged;
        chunk = TrimRight(TrimLeft(next));
    }
    if (!ParseHexBytes(chunk, entry.data))
        return DataResult::kDamaged;
    return DataResult::kValue;
}

void DropTrailingBlanks(Key& key) {
    while (!key.entries.empty() && key.entries.back().opaque && !key.entries.back().hasName &&
           TrimRight(TrimLeft(key.entries.back().raw)).empty()) {
        key.entries.pop_back();
    }
}

std::string Stamp(std::int64_t now) {
    std::string out(" ");
    out += std::to_string(now);
    return out;
}

}  // namespace

std::string FormatValue(std::string_view name, const Value& e) {
    std::string line;
    if (name.empty()) {
        line = "@=";
    } else {
        line = "\"" + EscapeOrLatin1(name, "\"") + "\"=";
    }
    const auto& d = e.data;
    if ((e.type == kSz || e.type == kExpandSz || e.type == kMultiSz) && !d.empty() &&
        d.back() == 0) {
        std::string_view body(reinterpret_cast<const char*>(d.data()), d.size() - 1);
        if (auto escaped = EscapeString(body, "\"")) {
            if (e.type == kExpandSz)
                line += "str(2):";
            if (e.type == kMultiSz)
                line += "str(7):";
            line += '"';
            line += *escaped;
            line += '"';
            return line;
        }
    }
    char buf[32];
    if (e.type == kDword && d.size() == 4) {
        const std::uint32_t v =
            static_cast<std::uint32_t>(d[0]) | (static_cast<std::uint32_t>(d[1]) << 8) |
            (static_cast<std::uint32_t>(d[2]) << 16) | (static_cast<std::uint32_t>(d[3]) << 24);
        std::snprintf(buf, sizeof buf, "dword:%08x", v);
        return line + buf;
    }
    if (e.type == kBinary) {
        line += "hex:";
    } else {
        std::snprintf(buf, sizeof buf, "hex(%x):", e.type);
        line += buf;
    }
    // Wrap as Wine does: a count of the characters on the line, reset after each break.
    int count = static_cast<int>(line.size());
    for (std::size_t i = 0; i < d.size(); ++i) {
        std::snprintf(buf, sizeof buf, "%02x", d[i]);
        line += buf;
        count += 2;
        if (i + 1 < d.size()) {
            line += ',';
            if (++count > kHexWrapColumn) {
                line += "\\\n  ";
                count = 2;
            }
        }
    }
    return line;
}

namespace {

template <typename DocT>
auto FindKeyIn(DocT& doc, std::string_view path) -> decltype(&doc.keys[0]) {
    for (auto& key : doc.keys) {
        if (NamesEqual(key.path, path))
            return &key;
    }
    return nullptr;
}

bool IsUnder(std::string_view path, std::string_view ancestor) {
    if (ancestor.empty())
        return !path.empty();
    return path.size() > ancestor.size() && path[ancestor.size()] == '\\' &&
           NamesEqual(path.substr(0, ancestor.size()), ancestor);
}

}  // namespace

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

std::optional<Document> Parse(std::string_view text, ParseError* error) {
    Lines lines(text);
    auto fail = [&](std::string reason) -> std::optional<Document> {
        if (error)
            *error = ParseError{lines.Number(), std::move(reason)};
        return std::nullopt;
    };
    if (text.find('\0') != std::string_view::npos)
        return fail("binary content");
    std::string_view line;
    if (!lines.Next(line) || line != kVersionLine)
        return fail("not a registry file");
    Document doc;
    doc.header.emplace_back(line);
    Key* current = nullptr;
    Value scratch;  // decoded only to check it; reused so that checking allocates nothing
    // A repeated name replaces the earlier value (the last one wins, as in Wine). While names
    // come in order, as this code writes them, none can repeat; otherwise an index is built of
    // folded name -> entry, so that a large section is never searched once per line.
    std::unordered_map<std::string, std::size_t> seen;
    bool indexed = false;
    constexpr std::size_t kNone = static_cast<std::size_t>(-1);
    std::size_t last = kNone;  // index of the last value added in order
    auto startKey = [&](Key* key) {
        current = key;
        seen.clear();
        indexed = !key->entries.empty();
        last = kNone;
        for (std::size_t i = 0; indexed && i < key->entries.size(); ++i) {
            if (!key->entries[i].opaque)
                seen.emplace(FoldedName(key->entries[i].name), i);
        }
    };
    auto addValue = [&](Entry&& entry) {
        if (!indexed &&
            (last == kNone || CompareNames(current->entries[last].name, entry.name) < 0)) {
            last = current->entries.size();
            current->entries.push_back(std::move(entry));
            return;
        }
        if (!indexed) {
            for (std::size_t i = 0; i < current->entries.size(); ++i) {
                if (!current->entries[i].opaque) {
                    seen.emplace(FoldedName(current->entries[i].name), i);
                }
            }
            indexed = true;
        }
        auto [it, inserted] = seen.emplace(FoldedName(entry.name), current->entries.size());
        if (inserted) {
            current->entries.push_back(std::move(entry));
        } else {
            current->entries[it->second] = std::move(entry);
        }
    };
    while (lines.Next(line)) {
        if (!line.empty() && line[0] == '[') {
            std::size_t pos = 1;
            auto path = UnescapeString(line, pos, ']');
            if (!path)
                return fail("unterminated key name");
            while (!path->empty() && path->back() == '\\') path->pop_back();
            if (current)
                DropTrailingBlanks(*current);
            if (Key* existing = FindKeyIn(doc, *path)) {
                startKey(existing);
            } else {
                doc.keys.push_back(Key{*path, std::string(line.substr(pos)), {}});
                doc.keys.back().entries.reserve(lines.LinesBeforeNextKey());
                startKey(&doc.keys.back());
            }
            continue;
        }
        const bool valueLine = !line.empty() && (line[0] == '"' || line[0] == '@');
        if (!current) {
            if (valueLine)
                return fail("value outside a key");
            doc.header.emplace_back(line);
            continue;
        }
        Entry entry;
        const std::size_t lineStart = lines.LineStart();
        if (!valueLine) {
            entry.opaque = true;
            entry.raw = std::string(line);
            current->entries.push_back(std::move(entry));
            continue;
        }
        std::size_t pos = 1;
        if (line[0] == '"') {
            auto name = UnescapeString(line, pos, '"');
            if (!name)
                return fail("unterminated value name");
            entry.name = *std::move(name);
        }
        if (pos >= line.size() || line[pos] != '=')
            return fail("value without '='");
        entry.hasName = true;
        switch (ParseData(line.substr(pos + 1), lines, scratch)) {
            case DataResult::kDamaged:
                return fail("damaged value data");
            case DataResult::kUnknownType:
                entry.opaque = true;
                entry.raw = std::string(line);
                current->entries.push_back(std::move(entry));
                continue;
            case DataResult::kValue:
                break;
        }
        entry.raw = std::string(lines.Since(lineStart));
        addValue(std::move(entry));
    }
    if (current)
        DropTrailingBlanks(*current);
    while (doc.header.size() > 1 && TrimRight(doc.header.back()).empty()) doc.header.pop_back();
    return doc;
}

std::string Serialize(const Document& doc) {
    std::string out;
    for (const auto& line : doc.header) {
        out += line;
        out += '\n';
    }
    for (const auto& key : doc.keys) {
        out += "\n[";
        out += EscapeOrLatin1(key.path, "[]");
        out += ']';
        out += key.suffix;
        out += '\n';
        for (const auto& e : key.entries) {
            out += e.raw;
            out += '\n';
        }
    }
    return out;
}

Document NewDocument(std::string_view relativeTo) {
    Document doc;
    doc.header.emplace_back(kVersionLine);
    doc.header.push_back(";; All keys relative to " + std::string(relativeTo));
    doc.header.emplace_back("");
    doc.header.emplace_back("#arch=win64");
    return doc;
}

Key* FindKey(Document& doc, std::string_view path) {
    return FindKeyIn(doc, path);
}
const Key* FindKey(const Document& doc, std::string_view path) {
    return FindKeyIn(doc, path);
}

bool KeyExists(const Document& doc, std::string_view path) {
    if (path.empty())
        return true;
    return std::any_of(doc.keys.begin(), doc.keys.end(), [&](const Key& k) {
        return NamesEqual(k.path, path) || IsUnder(k.path, path);
    });
}

bool HasSubkeys(const Document& doc, std::string_view path) {
    return std::any_of(doc.keys.begin(), doc.keys.end(),
                       [&](const Key& k) { return IsUnder(k.path, path); });
}

Key& EnsureKey(Document& doc, std::string_view path, std::int64_t now, bool* created) {
    if (created)
        *created = false;
    if (Key* key = FindKey(doc, path))
        return *key;
    auto at = std::find_if(doc.keys.begin(), doc.keys.end(),
                           [&](const Key& k) { return ComparePaths(k.path, path) > 0; });
    if (created)
        *created = true;
    return *doc.keys.insert(at, Key{std::string(path), Stamp(now), {}});
}

const Entry* FindValue(const Key& key, std::string_view name) {
    for (const auto& e : key.entries) {
        if (!e.opaque && NamesEqual(e.name, name))
            return &e;
    }
    return nullptr;
}

std::optional<Value> ReadValue(const Entry& entry) {
    if (entry.opaque)
        return std::nullopt;
    Lines lines(entry.raw);
    std::string_view line;
    lines.Next(line);
    std::size_t pos = 1;
    if (line.empty())
        return std::nullopt;
    if (line[0] == '"' && !UnescapeString(line, pos, '"'))
        return std::nullopt;
    Value value;
    if (pos >= line.size() || ParseData(line.substr(pos + 1), lines, value) != DataResult::kValue) {
        return std::nullopt;
    }
    return value;
}

void SetValue(Key& key, std::string_view name, const Value& value, std::int64_t now) {
    key.suffix = Stamp(now);
    // A line of a type we cannot read under the same name is replaced, never duplicated.
    std::erase_if(key.entries, [&](const Entry& e) {
        return e.opaque && e.hasName && NamesEqual(e.name, name);
    });
    for (auto& e : key.entries) {
        if (!e.opaque && NamesEqual(e.name, name)) {
            e.raw = FormatValue(e.name, value);
            return;
        }
    }
    auto at = std::find_if(key.entries.begin(), key.entries.end(), [&](const Entry& e) {
        return !e.opaque && CompareNames(e.name, name) > 0;
    });
    Entry entry;
    entry.name = std::string(name);
    entry.hasName = true;
    entry.raw = FormatValue(name, value);
    key.entries.insert(at, std::move(entry));
}

bool DeleteValue(Key& key, std::string_view name, std::int64_t now) {
    const auto removed = std::erase_if(
        key.entries, [&](const Entry& e) { return e.hasName && NamesEqual(e.name, name); });
    if (removed == 0)
        return false;
    key.suffix = Stamp(now);
    return true;
}

void DeleteKey(Document& doc, std::string_view path, std::int64_t now) {
    std::erase_if(doc.keys, [&](const Key& k) { return NamesEqual(k.path, path); });
    const std::size_t cut = path.rfind('\\');
    if (cut == std::string_view::npos)
        return;
    const std::string_view parent = path.substr(0, cut);
    if (!KeyExists(doc, parent))
        EnsureKey(doc, parent, now);
}

}  // namespace kw::registry::text
