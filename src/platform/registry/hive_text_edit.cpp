// The look-ups and edits the store makes on a document. Every edit stamps its key with the time
// of the change, and keys stay sorted so that a key is followed by its subkeys.

#include "platform/registry/hive_text.h"

#include <algorithm>

namespace kw::registry::text {
namespace {

std::string Stamp(std::int64_t now) {
    std::string out(" ");
    out += std::to_string(now);
    return out;
}

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
