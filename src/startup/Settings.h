#pragma once

#include <string>

namespace nv {

extern const char* const kIniFileName;
extern const char* const kSectionBasic;
extern const char* const kSectionFiles;
extern const char* const kRowKeyPrefix;

// The value of key in section of the settings file at path, or fallback.
std::string fReadIni(const std::string& path, const std::string& section, const std::string& key,
                     const std::string& fallback);

// Stores value; CR and LF in it become blanks, in the caller's own string. A store that fails is
// told with the box of fSettingsNotStoredText, once per operation of the user: once in the
// outermost ProfileBatch open, or for a single store outside one.
void subWriteIni(const std::string& path, const std::string& section, const std::string& key,
                 std::string& value);
void subWriteIni(const std::string& path, const std::string& section, const std::string& key,
                 const std::string& value);

// The notice that the settings file in folder cannot be stored.
std::string fSettingsNotStoredText(const std::string& folder);

// While one lives, a store that fails is not told: its owner tells it, as the start does in one
// box.
class SettingsStoresUntold {
public:
    SettingsStoresUntold() { ++depth_; }
    ~SettingsStoresUntold() { --depth_; }
    SettingsStoresUntold(const SettingsStoresUntold&) = delete;
    SettingsStoresUntold& operator=(const SettingsStoresUntold&) = delete;
    static bool active() { return depth_ > 0; }

private:
    inline static int depth_ = 0;
};

// The value the program works with: a missing key (or one holding exactly "?") takes fallback,
// which is stored at once. An empty file means the settings file; any other name is joined to
// the production folder.
std::string fIniValue(const std::string& section, const std::string& key,
                      const std::string& fallback, const std::string& file);

// "BackUpfile" + n.
std::string rowKey(int row);

// The most rows the backup list holds: AantalFiles is a signed 16-bit count.
inline constexpr int kMaximumRows = 32767;

// The number of rows the list holds: the text of AantalFiles when it is a whole number from 0 to
// kMaximumRows, else the number of BackUpfile keys that follow each other from 1, so that a damaged
// count does not lose the list. file selects the settings file as in fIniValue.
long fRowCount(const std::string& countText, const std::string& file);

// Conversions of hand-editable texts; a text that is no number in range gives nothing.
bool parseWholeNumber(const std::string& text, long minimum, long maximum, long& out);

} // namespace nv
