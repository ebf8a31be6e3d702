#pragma once

// The text form of one hive: Wine's "WINE REGISTRY Version 2" layout.
//
// A hive is a header (the version line, comments, global options) and a list of key sections.
// A section holds values and lines this code does not understand (`#time=` options, `;` notes,
// value types it cannot read); those lines are kept verbatim so that rewriting a file never drops
// what another writer put there. Values are stored as the bytes the A calls hand over: strings
// are UTF-8 with their terminating NUL, which the text form writes as escaped characters.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kw::registry::text {

inline constexpr std::string_view kVersionLine = "WINE REGISTRY Version 2";

struct Value {
    std::uint32_t type = 0;
    std::vector<std::uint8_t> data;
};

// One line of a key section: a value we understand, or a line kept as it was. A value is kept
// as its text and decoded when asked for: a hive is re-read on every change another process
// makes, and most of its values are never looked at.
struct Entry {
    bool opaque = false;
    std::string name;  // value name ("" is the default value); for an opaque line, the
                       // name when one could be read, so that a new value can replace it
    bool hasName = false;
    std::string raw;  // the text, continuation lines included, without the final LF
};

struct Key {
    std::string path;    // components joined by single backslashes, spelled as created
    std::string suffix;  // what followed ']' on the key line, usually " <unix seconds>"
    std::vector<Entry> entries;
};

struct Document {
    std::vector<std::string> header;  // lines before the first key, version line first
    std::vector<Key> keys;
};

struct ParseError {
    int line = 0;
    std::string reason;
};

// Reads a hive. Fails on anything that makes the file untrustworthy as a whole: a wrong version
// line, a broken key line, a value outside any key, a value of a known type whose data is damaged.
// `error` (optional) receives where and why.
std::optional<Document> Parse(std::string_view text, ParseError* error = nullptr);

// Writes a hive. A document read from a file this function wrote gives back the same bytes.
std::string Serialize(const Document& doc);

// The canonical text of a value line (a file this code wrote has only such lines).
std::string FormatValue(std::string_view name, const Value& value);

// The type and bytes of a value entry (nullopt for an opaque line).
std::optional<Value> ReadValue(const Entry& entry);

// An empty hive with the usual header; `relativeTo` names the root in the header comment.
Document NewDocument(std::string_view relativeTo);

// Escaping of one string as the format writes it, without the surrounding quotes or brackets.
// `delimiters` are the extra characters escaped with a backslash ("\"" for values, "[]" for keys).
// Returns nullopt when `bytes` is not valid UTF-8 (such data is written as hex instead).
std::optional<std::string> EscapeString(std::string_view bytes, std::string_view delimiters);

// The inverse: reads an escaped string starting at `pos` up to the unescaped `close` character,
// leaves `pos` just after it. nullopt when the string is not closed.
std::optional<std::string> UnescapeString(std::string_view text, std::size_t& pos, char close);

// ASCII case-insensitive comparison, as key and value names compare.
bool NamesEqual(std::string_view a, std::string_view b);
int CompareNames(std::string_view a, std::string_view b);
// Orders key paths component by component, so that a key is followed by its subkeys.
int ComparePaths(std::string_view a, std::string_view b);

// Look-ups and edits used by the store. `now` is the modification time written on the key line.
Key* FindKey(Document& doc, std::string_view path);
const Key* FindKey(const Document& doc, std::string_view path);
bool KeyExists(const Document& doc, std::string_view path);  // its own section, or a subkey's
bool HasSubkeys(const Document& doc, std::string_view path);
Key& EnsureKey(Document& doc, std::string_view path, std::int64_t now, bool* created = nullptr);
const Entry* FindValue(const Key& key, std::string_view name);
void SetValue(Key& key, std::string_view name, const Value& value, std::int64_t now);
bool DeleteValue(Key& key, std::string_view name, std::int64_t now);
// Removes the key's section; its parent keeps existing. The caller checks for subkeys.
void DeleteKey(Document& doc, std::string_view path, std::int64_t now);

}  // namespace kw::registry::text
