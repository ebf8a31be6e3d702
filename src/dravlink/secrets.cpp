#include "dravlink/secrets.h"

#include <fcntl.h>
#include <sodium.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <map>
#include <sstream>
#include <vector>

#include "dravlink/credentials.h"
#include "dravlink/text_files.h"
#include "platform/registry/private_files.h"

#ifdef KW_HAVE_LIBSECRET
#include <libsecret/secret.h>
#endif

namespace dravlink {

namespace fs = std::filesystem;

namespace {

constexpr const char* kReferencePrefix = "secret:";
constexpr std::size_t kIdBytes = 16;

std::string Hex(const unsigned char* data, std::size_t size) {
    std::string out(size * 2 + 1, '\0');
    sodium_bin2hex(out.data(), out.size(), data, size);
    out.pop_back();
    return out;
}

std::optional<std::vector<unsigned char>> Unhex(const std::string& hex) {
    std::vector<unsigned char> out(hex.size() / 2);
    std::size_t size = 0;
    if (hex.size() % 2 != 0 ||
        sodium_hex2bin(out.data(), out.size(), hex.data(), hex.size(), nullptr, &size, nullptr) !=
            0 ||
        size != out.size()) {
        return std::nullopt;
    }
    return out;
}

void NeedSodium() {
    if (sodium_init() < 0) {
        throw DataError("the engine's cryptography library cannot start");
    }
}

std::string Describe(const fs::path& path, const char* what) {
    return path.string() + ": " + what + ": " + std::strerror(errno);
}

// Writes `text` to a new 0600 file and renames it over `path`.
void WritePrivate(const fs::path& path, const std::string& text) {
    const fs::path temp = path.string() + ".tmp" + std::to_string(::getpid());
    const int fd = ::open(temp.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (fd < 0) {
        throw DataError(Describe(temp, "cannot be written"));
    }
    const bool ok = ::fchmod(fd, 0600) == 0 &&
                    ::write(fd, text.data(), text.size()) == static_cast<ssize_t>(text.size()) &&
                    ::fsync(fd) == 0;
    ::close(fd);
    if (!ok || ::rename(temp.c_str(), path.c_str()) != 0) {
        const std::string why = Describe(path, "cannot be written");
        ::unlink(temp.c_str());
        throw DataError(why);
    }
}

class SealedFile : public SecretBackend {
  public:
    explicit SealedFile(fs::path folder) : folder_(std::move(folder)) {}

    bool Put(const std::string& id, const std::string& secret) override {
        const auto key = Key(true);
        // The engine in the client and the engine's own process may both write: one at a time,
        // each from the file as the other left it.
        const int lock =
            ::open((folder_ / "sealed.lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
        if (lock < 0 || ::flock(lock, LOCK_EX) != 0) {
            const std::string why = Describe(folder_ / "sealed.lock", "cannot be locked");
            if (lock >= 0) {
                ::close(lock);
            }
            throw DataError(why);
        }
        struct Unlock {
            int fd;
            ~Unlock() { ::close(fd); }
        } unlock{lock};
        auto entries = Entries();
        unsigned char nonce[crypto_secretbox_NONCEBYTES];
        randombytes_buf(nonce, sizeof nonce);
        // The id is sealed with the secret, so an entry moved to another id does not open.
        const std::string plain = id + '\n' + secret;
        std::vector<unsigned char> sealed(sizeof nonce + crypto_secretbox_MACBYTES + plain.size());
        std::memcpy(sealed.data(), nonce, sizeof nonce);
        crypto_secretbox_easy(sealed.data() + sizeof nonce,
                              reinterpret_cast<const unsigned char*>(plain.data()), plain.size(),
                              nonce, key->data());
        entries[id] = Hex(sealed.data(), sealed.size());
        std::string text = "# Sealed secrets of the engine; the key is in the file \"key\".\n";
        for (const auto& [entryId, value] : entries) {
            text += entryId + " " + value + "\n";
        }
        WritePrivate(folder_ / "sealed", text);
        return true;
    }

    std::optional<std::string> Get(const std::string& id) override {
        const auto entries = Entries();
        const auto it = entries.find(id);
        const auto key = it != entries.end() ? Key(false) : std::nullopt;
        const auto sealed = key ? Unhex(it->second) : std::nullopt;
        if (!sealed || sealed->size() < crypto_secretbox_NONCEBYTES + crypto_secretbox_MACBYTES) {
            return std::nullopt;
        }
        std::string plain(sealed->size() - crypto_secretbox_NONCEBYTES - crypto_secretbox_MACBYTES,
                          '\0');
        if (crypto_secretbox_open_easy(reinterpret_cast<unsigned char*>(plain.data()),
                                       sealed->data() + crypto_secretbox_NONCEBYTES,
                                       sealed->size() - crypto_secretbox_NONCEBYTES, sealed->data(),
                                       key->data()) != 0 ||
            plain.compare(0, id.size() + 1, id + '\n') != 0) {
            return std::nullopt;
        }
        return plain.substr(id.size() + 1);
    }

  private:
    using KeyBytes = std::vector<unsigned char>;

    // The user's key, made on first use when `create`; a damaged key file is never replaced,
    // since that would lose every secret sealed with it.
    std::optional<KeyBytes> Key(bool create) {
        NeedSodium();
        std::string why;
        if (!kw::registry::MakePrivateFolder(folder_.string(), &why)) {
            throw DataError(why);
        }
        const fs::path path = folder_ / "key";
        KeyBytes key(crypto_secretbox_KEYBYTES);
        int fd = ::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC);
        if (fd < 0 && errno == ENOENT && create) {
            // Written whole beside it, then linked into place: a reader never sees half a key,
            // and of two processes making one at once, the first one's stands.
            randombytes_buf(key.data(), key.size());
            const fs::path temp = path.string() + ".new" + std::to_string(::getpid());
            fd = ::open(temp.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, 0600);
            const bool written =
                fd >= 0 && ::fchmod(fd, 0600) == 0 &&
                ::write(fd, key.data(), key.size()) == static_cast<ssize_t>(key.size()) &&
                ::fsync(fd) == 0;
            if (fd >= 0) {
                ::close(fd);
            }
            const bool linked =
                written && (::link(temp.c_str(), path.c_str()) == 0 || errno == EEXIST);
            const std::string failure = Describe(path, "cannot be made");
            ::unlink(temp.c_str());
            if (!linked) {
                throw DataError(failure);
            }
            return Key(false);
        }
        if (fd < 0) {
            if (errno == ENOENT) {
                return std::nullopt;
            }
            throw DataError(Describe(path, "cannot be read"));
        }
        const ssize_t n = ::read(fd, key.data(), key.size());
        char extra = 0;
        const bool whole = n == static_cast<ssize_t>(key.size()) && ::read(fd, &extra, 1) == 0;
        ::close(fd);
        if (!whole) {
            throw DataError(path.string() + " is not a key of the engine's");
        }
        kw::registry::MakePrivateFile(path.string());
        return key;
    }

    std::map<std::string, std::string> Entries() const {
        std::map<std::string, std::string> entries;
        std::ifstream in(folder_ / "sealed");
        std::string line;
        while (std::getline(in, line)) {
            const auto space = line.find(' ');
            if (!line.empty() && line[0] != '#' && space != std::string::npos) {
                entries[line.substr(0, space)] = line.substr(space + 1);
            }
        }
        return entries;
    }

    fs::path folder_;
};

#ifdef KW_HAVE_LIBSECRET
const SecretSchema* Schema() {
    static const SecretSchema schema = [] {
        SecretSchema s{};
        s.name = "com.ostvarra.Dravlink.Password";
        s.flags = SECRET_SCHEMA_NONE;
        s.attributes[0] = {"id", SECRET_SCHEMA_ATTRIBUTE_STRING};
        s.attributes[1] = {nullptr, SECRET_SCHEMA_ATTRIBUTE_STRING};
        return s;
    }();
    return &schema;
}

class Keyring : public SecretBackend {
  public:
    bool Put(const std::string& id, const std::string& secret) override {
        GError* error = nullptr;
        const gboolean ok =
            secret_password_store_sync(Schema(), SECRET_COLLECTION_DEFAULT, "Dravlink password",
                                       secret.c_str(), nullptr, &error, "id", id.c_str(), nullptr);
        if (error != nullptr) {
            g_error_free(error);
        }
        return ok != FALSE;
    }

    std::optional<std::string> Get(const std::string& id) override {
        GError* error = nullptr;
        gchar* found =
            secret_password_lookup_sync(Schema(), nullptr, &error, "id", id.c_str(), nullptr);
        if (error != nullptr) {
            g_error_free(error);
        }
        if (found == nullptr) {
            return std::nullopt;
        }
        std::string secret(found);
        secret_password_free(found);
        return secret;
    }
};

// Asks the bus whether the Secret Service's name has an owner now; never starts one, and never
// waits for a bus that is not there.
bool SecretServiceRunning() {
    const char* address = std::getenv("DBUS_SESSION_BUS_ADDRESS");
    if (address == nullptr || *address == '\0') {
        return false;
    }
    GDBusConnection* bus = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
    if (bus == nullptr) {
        return false;
    }
    GVariant* reply = g_dbus_connection_call_sync(
        bus, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
        "NameHasOwner", g_variant_new("(s)", "org.freedesktop.secrets"),
        reinterpret_cast<const GVariantType*>("(b)"), G_DBUS_CALL_FLAGS_NONE, 2000, nullptr,
        nullptr);
    gboolean owned = FALSE;
    if (reply != nullptr) {
        g_variant_get(reply, "(b)", &owned);
        g_variant_unref(reply);
    }
    g_object_unref(bus);
    return owned != FALSE;
}
#endif

}  // namespace

std::unique_ptr<SecretBackend> SealedFileSecrets(fs::path folder) {
    return std::make_unique<SealedFile>(std::move(folder));
}

std::unique_ptr<SecretBackend> DesktopSecrets() {
#ifdef KW_HAVE_LIBSECRET
    if (SecretServiceRunning()) {
        return std::make_unique<Keyring>();
    }
#endif
    return nullptr;
}

Secrets::Secrets(std::shared_ptr<SecretBackend> primary, std::shared_ptr<SecretBackend> fallback)
    : primary_(std::move(primary)), fallback_(std::move(fallback)) {}

bool Secrets::IsReference(const std::string& stored) {
    return stored.rfind(kReferencePrefix, 0) == 0 &&
           stored.size() == std::strlen(kReferencePrefix) + 2 * kIdBytes &&
           Unhex(stored.substr(std::strlen(kReferencePrefix))).has_value();
}

bool Secrets::NeedsSealing(const std::string& stored) {
    return !stored.empty() && stored != "*" && !IsReference(stored);
}

std::string Secrets::Keep(const std::string& plain, const std::string& previous) {
    if (plain.empty()) {
        return "";
    }
    std::string reference = previous;
    if (!IsReference(reference)) {
        NeedSodium();
        unsigned char id[kIdBytes];
        randombytes_buf(id, sizeof id);
        reference = kReferencePrefix + Hex(id, sizeof id);
    }
    const std::string id = reference.substr(std::strlen(kReferencePrefix));
    if (!primary_->Put(id, plain)) {
        throw DataError("the password could not be kept in the desktop's Secret Service");
    }
    return reference;
}

std::string Secrets::Reveal(const std::string& stored) {
    if (!IsReference(stored)) {
        return DecodeOldPassword(stored);
    }
    const std::string id = stored.substr(std::strlen(kReferencePrefix));
    if (auto secret = primary_->Get(id)) {
        return *secret;
    }
    if (fallback_) {
        if (auto secret = fallback_->Get(id)) {
            return *secret;
        }
    }
    return "";
}

std::shared_ptr<Secrets> DefaultSecrets(const fs::path& sealedFolder) {
    std::shared_ptr<SecretBackend> sealed = SealedFileSecrets(sealedFolder);
    if (std::shared_ptr<SecretBackend> desktop = DesktopSecrets()) {
        return std::make_shared<Secrets>(std::move(desktop), std::move(sealed));
    }
    return std::make_shared<Secrets>(std::move(sealed));
}

}  // namespace dravlink
