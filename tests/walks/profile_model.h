#pragma once

#include <map>
#include <string>
#include <vector>

namespace varda::window_model {

/// What a file of sections, keys and values holds.
class Profile {
public:
    void write(const std::string& section, const std::string& key, const std::string& value) {
        values_[section + "/" + key] = value;
    }
    std::string read(const std::string& section, const std::string& key) const {
        const auto found = values_.find(section + "/" + key);
        return found == values_.end() ? std::string() : found->second;
    }

private:
    std::map<std::string, std::string> values_;
};

} // namespace varda::window_model
