#pragma once

#include "platform/ProfileStore.h"

namespace nv {

// The system's own profile services; they write through, so a batch has nothing to hold.
class Win32ProfileStore : public ProfileStore {
public:
    std::string getString(const std::string& section, const std::string& key,
                          const std::string& fallback, std::size_t size,
                          const std::string& file) override;
    bool writeString(const std::string& section, const std::string& key, const std::string& value,
                     const std::string& file) override;
    bool mayStore(const std::string& file) override;
};

} // namespace nv
