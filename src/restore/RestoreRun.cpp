#include "restore/RestoreRun.h"

#include "platform/CaseFold.h"
#include "platform/FileSystem.h"
#include "startup/FileOps.h"
#include "startup/Paths.h"

#include <map>
#include <set>
#include <vector>

namespace nv {

const char* const kRestoreNotFoundText =
    "Niet alle files zijn gevonden!\r\nIn de bovenste lijst staan de bestanden geselecteerd die "
    "NIET zijn teruggezet omdat deze niet te vinden zijn in de backup directory. U kunt door nu "
    "op de knop 'Vorige' te drukken zoeken naar een andere map waarin deze bestanden staan.";

const char* const kRestoreSameNameText =
    "Bestanden met dezelfde naam uit verschillende mappen zijn NIET teruggezet, omdat uit deze "
    "map niet blijkt bij welke map zij horen. Open de map met de naam van hun eigen map (een "
    "backup met submappen) en druk opnieuw op 'Volgende'.";

namespace {

const char* const kInUseText = "Deze bestanden zijn NIET teruggezet omdat een ander programma ze "
                               "open heeft, waarschijnlijk Norvale:";

// The last folder of a full path, "" for a file at a root.
std::string lastFolderOf(const std::string& path) {
    const std::string folder = folderOf(path);
    return folder.find('\\') == std::string::npos ? "" : bareNameOf(folder);
}

// Bare names that rows of the list give to more than one file. Rows that are not selected count
// too: the one file of a flat folder may be theirs, even when a single row is to be restored.
std::set<std::string> namesOfSeveralFiles(const RestoreList& list) {
    std::map<std::string, std::set<std::string>> paths;
    for (int row = 0; row < list.count(); ++row) {
        std::string text = list.text(row);
        paths[upperCase(bareNameOf(text))].insert(upperCase(text));
    }
    std::set<std::string> several;
    for (const auto& [name, files] : paths)
        if (files.size() > 1)
            several.insert(name);
    return several;
}

} // namespace

std::string fRestoreSelectedRows(RestoreList& list, const std::string& sourceFolder,
                                 int16_t& intLoop) {
    std::string notFound;
    std::string sameName;
    std::vector<std::string> inUse;
    // Two rows naming one file by the same bare name in different folders would both take the
    // one file of the folder; such a row is restored only from a folder named after its own,
    // as a backup with subfolders has them.
    const std::set<std::string> several = namesOfSeveralFiles(list);
    const std::string openFolder = lastFolderOf(sourceFolder + "\\x");
    const int last = list.count() - 1;
    // What an interrupted restore left beside the files it was to replace goes first.
    std::set<std::string> folders;
    for (int row = 0; row <= last; ++row) {
        const std::string text = list.text(row);
        // A bare name lies in no folder to look in; a name at a root does.
        if (!list.selected(row) || text.find('\\') == std::string::npos)
            continue;
        const std::string folder = folderOf(text);
        if (folders.insert(upperCase(folder)).second)
            subRemoveCopyLeftovers(folder);
    }
    for (int row = 0; row <= last; ++row) {
        intLoop = static_cast<int16_t>(row);
        if (!list.selected(row))
            continue;
        std::string text = list.text(row);
        std::string copy = text;
        std::string name = fFileOfPath(copy);
        std::string source = sourceFolder + "\\" + name;
        if (!fPlainFileExists(source)) {
            notFound = kRestoreNotFoundText;
        } else if (several.count(upperCase(name)) &&
                   !equalsIgnoringCase(lastFolderOf(text), openFolder)) {
            sameName = kRestoreSameNameText;
        } else {
            // The finance program keeps its files open while it runs; one replaced under it
            // would be overwritten, or mixed with what it writes next.
            ReplaceClaim claim = fileSystem().claimToReplace(text);
            if (claim.inUse) {
                inUse.push_back(text);
                continue;
            }
            subCopyFile(source, text);
            list.setSelected(row, false);
        }
    }
    std::string caption = "Het terugzetten van de bestanden is gereed. \r\n" + notFound;
    if (!sameName.empty())
        caption += (notFound.empty() ? "" : "\r\n") + sameName;
    if (!inUse.empty()) {
        caption += std::string("\r\n\r\n") + kInUseText;
        for (const std::string& path : inUse)
            caption += "\r\n" + path;
        caption += "\r\nSluit Norvale af en zet de backup opnieuw terug.";
    }
    return caption;
}

std::string fWizardFailureText(const std::string& description, int step, int substep) {
    return "Het terugzetten van de bestanden is niet (volledig) gelukt omdat er een fout is "
           "ontstaan met de volgende omschrijving:\r\n" +
           description + "\r\nDeze is opgetreden in stap " + std::to_string(step) +
           " en in substap " + std::to_string(substep) +
           ". Geef dit eventueel door aan de leverancier";
}

} // namespace nv
