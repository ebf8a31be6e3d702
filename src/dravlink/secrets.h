#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace dravlink {

// Where the engine keeps passwords: the desktop's Secret Service, or a file sealed with a key of
// the user's own. Each secret is filed under an id that means nothing without the store.
class SecretBackend {
  public:
    virtual ~SecretBackend() = default;
    virtual bool Put(const std::string& id, const std::string& secret) = 0;
    virtual std::optional<std::string> Get(const std::string& id) = 0;
};

// Secrets sealed with a random key kept in `folder`/key; the sealed secrets in `folder`/sealed.
// Both files are 0600 in a 0700 folder.
std::unique_ptr<SecretBackend> SealedFileSecrets(std::filesystem::path folder);
// The desktop's Secret Service; nullptr when none is running on the session bus.
std::unique_ptr<SecretBackend> DesktopSecrets();

// What the engine stores in place of a password: a reference ("secret:<id>") to a secret in the
// backend. A value from an older engine (its own reversible encoding) still reads, and is
// replaced by a reference when it is next written.
class Secrets {
  public:
    // `fallback` is the sealed file: it answers for secrets kept there before a Secret Service ran.
    Secrets(std::shared_ptr<SecretBackend> primary, std::shared_ptr<SecretBackend> fallback = {});

    // The reference to keep for `plain`; reuses the id of `previous` when that is a reference.
    // An empty password stays empty. Throws DataError when the secret cannot be kept.
    std::string Keep(const std::string& plain, const std::string& previous = "");
    // The password a stored value stands for: a reference looked up ("" when the secret is
    // gone), an old encoded value decoded, anything else as it stands.
    std::string Reveal(const std::string& stored);
    // True when `stored` must be rewritten to be a reference.
    static bool NeedsSealing(const std::string& stored);
    static bool IsReference(const std::string& stored);

  private:
    std::shared_ptr<SecretBackend> primary_;
    std::shared_ptr<SecretBackend> fallback_;
};

// The Secret Service when one runs, else the sealed file in `sealedFolder`.
std::shared_ptr<Secrets> DefaultSecrets(const std::filesystem::path& sealedFolder);

}  // namespace dravlink
