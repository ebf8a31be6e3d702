// The hive text, read and written: whatever a file holds, reading never fails other than with a
// parse error, and what is read and written back reads as the same keys, names and bytes. The
// writer is checked on its own too: each value set afresh in a new hive reads back unchanged.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "platform/registry/hive_text.h"

namespace {

using namespace kw::registry::text;

[[noreturn]] void Broken(const char* what, const std::string& detail) {
    std::fprintf(stderr, "read-write-read broken: %s: %s\n", what, detail.c_str());
    std::abort();
}

// Every value of a as b holds it: same keys in the same order, same names, types and bytes.
void SameValues(const Document& a, const Document& b) {
    if (a.keys.size() != b.keys.size())
        Broken("key count", std::to_string(a.keys.size()) + " / " + std::to_string(b.keys.size()));
    for (std::size_t k = 0; k < a.keys.size(); ++k) {
        const Key& ka = a.keys[k];
        const Key& kb = b.keys[k];
        if (ka.path != kb.path)
            Broken("key path", ka.path + " / " + kb.path);
        for (const Entry& e : ka.entries) {
            if (e.opaque)
                continue;
            const auto va = ReadValue(e);
            const Entry* other = FindValue(kb, e.name);
            const auto vb = other ? ReadValue(*other) : std::nullopt;
            if (!va || !vb || va->type != vb->type || va->data != vb->data)
                Broken("value", ka.path + " " + e.name);
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto doc = Parse(text);
    if (!doc)
        return 0;
    const std::string written = Serialize(*doc);
    const auto again = Parse(written);
    if (!again)
        Broken("a written hive does not read", written.substr(0, 200));
    SameValues(*doc, *again);
    if (Serialize(*again) != written)
        Broken("a second write differs", written.substr(0, 200));

    // The writer's own lines: every readable value, set in a new hive.
    Document fresh = NewDocument("\\\\User");
    for (const Key& key : doc->keys) {
        Key& target = EnsureKey(fresh, key.path, 1700000000);
        for (const Entry& e : key.entries) {
            if (const auto value = e.opaque ? std::nullopt : ReadValue(e))
                SetValue(target, e.name, *value, 1700000000);
        }
    }
    const auto reread = Parse(Serialize(fresh));
    if (!reread)
        Broken("a hive of canonical lines does not read", Serialize(fresh).substr(0, 200));
    for (const Key& key : doc->keys) {
        const Key* back = FindKey(*reread, key.path);
        if (back == nullptr)
            Broken("key lost", key.path);
        for (const Entry& e : key.entries) {
            const auto value = e.opaque ? std::nullopt : ReadValue(e);
            if (!value)
                continue;
            // The last of equal names wins on reading, so compare with what the first read kept.
            const Entry* kept = FindValue(key, e.name);
            const auto expected = kept ? ReadValue(*kept) : std::nullopt;
            const Entry* found = FindValue(*back, e.name);
            const auto got = found ? ReadValue(*found) : std::nullopt;
            if (!expected || !got || expected->type != got->type || expected->data != got->data)
                Broken("canonical value", key.path + " " + e.name);
        }
    }
    return 0;
}
