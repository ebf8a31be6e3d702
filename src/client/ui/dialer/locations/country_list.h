#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/automation/variant.h"

namespace kw::dialer {

class Dravlink;

// One country as the engine lists it. The dialing code is held as text.
class CountryInfo {
  public:
    // Fills the record from five variants: name, code, letterCode, localRadius, enable.
    void FromVariant(const automation::SafeArray& args);
    automation::Variant asVariant() const;

    float code() const;
    void set_code(float code);
    const std::string& name() const { return name_; }
    void set_name(std::string name) { name_ = std::move(name); }
    const std::string& letterCode() const { return letterCode_; }
    const std::string& localRadius() const { return localRadius_; }
    const std::string& enable() const { return enable_; }
    // The text of the country in a country box: "UNITED STATES (1)".
    std::string DisplayText() const;

  private:
    std::string code_;
    std::string name_;
    std::string letterCode_;
    std::string localRadius_;
    std::string enable_;
};

// The client's copy of the engine's country table, read once at load.
class CountryList {
  public:
    explicit CountryList(Dravlink& engine) : engine_(engine) {}

    // Fills the table from GetCountryList; a refusal leaves it as it is.
    void SetupCountries();

    std::shared_ptr<CountryInfo> FindByName(const std::string& name) const;
    std::shared_ptr<CountryInfo> FindByCode(const std::string& code) const;
    std::shared_ptr<CountryInfo> Add(std::shared_ptr<CountryInfo> country, const std::string& key);
    // 1-based; fails with 5 outside the collection.
    std::shared_ptr<CountryInfo> item(int index) const;
    // By key; fails with 5 for a key the collection lacks.
    std::shared_ptr<CountryInfo> item(const std::string& key) const;
    int Count() const { return static_cast<int>(members_.size()); }
    void remove(int index);

  private:
    struct Member {
        std::string key;
        std::shared_ptr<CountryInfo> country;
    };
    Dravlink& engine_;
    std::vector<Member> members_;
};

}  // namespace kw::dialer
