#include "startup/Settings.h"

#include "platform/Platform.h"
#include "startup/AppSettings.h"
#include "startup/MsgBox.h"
#include "startup/Paths.h"

#include <cerrno>
#include <cstdlib>

namespace nv {

const char* const kIniFileName = "NVbackuptool.ini";
const char* const kSectionBasic = "Basic settings";
const char* const kSectionFiles = "Backupfiles";
const char* const kRowKeyPrefix = "BackUpfile";

std::string fReadIni(const std::string& path, const std::string& section, const std::string& key,
                     const std::string& fallback) {
    // The platform call gets a 256-character buffer and is told 255, so 254 characters come back.
    return platform().profiles->getString(section, key, fallback, 255, path);
}

std::string fSettingsNotStoredText(const std::string& folder) {
    return "De instellingen kunnen niet worden opgeslagen in de map " +
           folderWithoutTrailingBackslash(folder) +
           ".\r\n\r\nDe lijst met bestanden en het gekozen station worden daarom niet bewaard. "
           "Zorg dat u in deze map mag schrijven.";
}

namespace {

// The batch in which a store that failed was last told; a list of thousands of rows written to a
// read-only folder gives one box.
unsigned toldInBatch = 0;

void tellNotStored(const std::string& path) {
    if (SettingsStoresUntold::active())
        return;
    if (const unsigned batch = ProfileBatch::current()) {
        if (batch == toldInBatch)
            return;
        toldInBatch = batch;
    }
    MsgBox(fSettingsNotStoredText(folderOf(path)), Buttons::OK, Icon::Exclamation);
}

} // namespace

void subWriteIni(const std::string& path, const std::string& section, const std::string& key,
                 std::string& value) {
    for (char& c : value)
        if (c == '\r' || c == '\n')
            c = ' ';
    if (!platform().profiles->writeString(section, key, value, path))
        tellNotStored(path);
}

void subWriteIni(const std::string& path, const std::string& section, const std::string& key,
                 const std::string& value) {
    std::string copy = value;
    subWriteIni(path, section, key, copy);
}

namespace {

std::string settingsFile(const std::string& file) {
    return file.empty() ? AppSettings.strIniFile : AppSettings.strAppDir + file;
}

} // namespace

std::string fIniValue(const std::string& section, const std::string& key,
                      const std::string& fallback, const std::string& file) {
    std::string target = settingsFile(file);
    std::string result = fReadIni(target, section, key, "?");
    if (result == "?") {
        result = fallback;
        subWriteIni(target, section, key, result);
    }
    return result;
}

std::string rowKey(int row) {
    return kRowKeyPrefix + std::to_string(row);
}

long fRowCount(const std::string& countText, const std::string& file) {
    long count = 0;
    if (parseWholeNumber(countText, 0, kMaximumRows, count))
        return count;
    const std::string target = settingsFile(file);
    while (count < kMaximumRows && fReadIni(target, kSectionFiles, rowKey(count + 1), "?") != "?")
        ++count;
    return count;
}

bool parseWholeNumber(const std::string& text, long minimum, long maximum, long& out) {
    std::size_t begin = text.find_first_not_of(" \t");
    std::size_t end = text.find_last_not_of(" \t");
    if (begin == std::string::npos)
        return false;
    std::string digits = text.substr(begin, end - begin + 1);
    std::size_t i = digits[0] == '-' || digits[0] == '+' ? 1 : 0;
    if (i == digits.size() || digits.size() > 12)
        return false;
    for (std::size_t k = i; k < digits.size(); ++k)
        if (digits[k] < '0' || digits[k] > '9')
            return false;
    long value = std::strtol(digits.c_str(), nullptr, 10);
    if (value < minimum || value > maximum)
        return false;
    out = value;
    return true;
}

} // namespace nv
