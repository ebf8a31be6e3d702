// Reading a hive's text into a document, and a value's kept text back into its type and bytes.
// A file is trusted only as a whole, so any damage fails the read and says where.

#include "platform/registry/hive_text.h"

#include <algorithm>
#include <cstring>
#include <unordered_map>

#include "platform/registry/hive_text_internal.h"

namespace kw::registry::text {

using namespace detail;

namespace {

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

// The lines of a text. Each comes without its LF and without one CR before it, for parsing;
// Raw() keeps every CR, so that what is kept verbatim is written back byte for byte.
class Lines {
  public:
    // With finalLine, a text ending in LF has one more, empty, line after it: a value's kept
    // text ends that way when its continuation was an empty line.
    explicit Lines(std::string_view text, bool finalLine = false)
        : text_(text), finalLine_(finalLine) {}
    bool Next(std::string_view& line) {
        if (pos_ > text_.size())
            return false;
        if (pos_ == text_.size() && !(finalLine_ && pos_ > 0 && text_[pos_ - 1] == '\n'))
            return false;
        start_ = pos_;
        std::size_t end = text_.find('\n', pos_);
        if (end == std::string_view::npos)
            end = text_.size();
        raw_ = text_.substr(pos_, end - pos_);
        line = raw_;
        if (!line.empty() && line.back() == '\r')
            line.remove_suffix(1);
        pos_ = end + 1;
        ++number_;
        return true;
    }
    std::string_view Raw() const { return raw_; }
    int Number() const { return number_; }
    // The text from `from` to the end of the last line returned, without its LF.
    std::string_view Since(std::size_t from) const {
        const std::size_t end = std::min(pos_, text_.size() + 1) - 1;
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
    bool finalLine_ = false;
    std::string_view raw_;
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

}  // namespace

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
    doc.header.emplace_back(lines.Raw());
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
            if (Key* existing = FindKey(doc, *path)) {
                startKey(existing);
            } else {
                doc.keys.push_back(Key{*path, std::string(lines.Raw().substr(pos)), {}});
                doc.keys.back().entries.reserve(lines.LinesBeforeNextKey());
                startKey(&doc.keys.back());
            }
            continue;
        }
        const bool valueLine = !line.empty() && (line[0] == '"' || line[0] == '@');
        if (!current) {
            if (valueLine)
                return fail("value outside a key");
            doc.header.emplace_back(lines.Raw());
            continue;
        }
        Entry entry;
        const std::size_t lineStart = lines.LineStart();
        if (!valueLine) {
            entry.opaque = true;
            entry.raw = std::string(lines.Raw());
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
                entry.raw = std::string(lines.Raw());
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

std::optional<Value> ReadValue(const Entry& entry) {
    if (entry.opaque)
        return std::nullopt;
    Lines lines(entry.raw, true);
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

}  // namespace kw::registry::text
