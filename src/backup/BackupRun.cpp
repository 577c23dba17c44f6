#include "backup/BackupRun.h"

#include "backup/CopyBatch.h"
#include "backup/LeftoverSweep.h"

#include "platform/DateText.h"
#include "platform/FailureText.h"
#include "platform/FatNames.h"
#include "platform/Platform.h"
#include "startup/AppSettings.h"
#include "startup/FileOps.h"
#include "startup/MsgBox.h"
#include "startup/Paths.h"
#include "startup/Settings.h"

#include <limits>
#include <vector>

namespace nv {

namespace {

const char* const kCrLf = "\r\n";
const char* const kWriteFailureTitle = "Fout bij schrijven naar backup schijf";

// How deep a folder is searched for files; a backup writes one level deep, but a user may have
// nested folders of their own in a folder of this name.
constexpr int kFolderDepth = 8;

bool holdsFiles(const std::string& folder, int depth) {
    if (!fFirstMatch(folder + "\\*.*").empty())
        return true;
    if (depth == 0)
        return false;
    std::vector<std::string> subfolders;
    try {
        subfolders = fListFolders(folder);
    } catch (const FileFailure& failure) {
        if (failure.Number != kFailPathNotFound)
            throw;
    }
    for (const std::string& sub : subfolders)
        if (holdsFiles(folder + "\\" + sub, depth - 1))
            return true;
    return false;
}

// A folder counts as there when it holds a plain file at any depth: a mirrored backup keeps its
// files in subfolders, and a backup never replaces a file that an earlier run wrote.
bool folderExists(const std::string& folder) {
    return answeredOrYes([&] { return holdsFiles(folder, kFolderDepth); });
}

bool isBlank(const std::string& text) {
    return text.find_first_not_of(' ') == std::string::npos;
}

// Puts the run's pending copies in place before any box it shows, so that what the user reads
// matches the medium. A commit refused with 75 passes over; any other failure takes the run's
// failure path in the place of the box.
class CommitBeforeBoxes : public MessageBoxes {
public:
    CommitBeforeBoxes(CopyBatch& copies, BackupWindows& windows)
        : copies_(copies), windows_(windows), installed_(&Platform::boxes, this) {}
    CommitBeforeBoxes(const CommitBeforeBoxes&) = delete;
    CommitBeforeBoxes& operator=(const CommitBeforeBoxes&) = delete;

    Answer show(const MessageBoxRequest& request) override {
        if (copies_.pending())
            goOnBehind([&] { windows_.runCommit([&] { copies_.commit(); }); });
        MessageBoxes* boxes = installed_.saved();
        return boxes ? boxes->show(request) : defaultAnswer(request.buttons, request.defaultButton);
    }

private:
    CopyBatch& copies_;
    BackupWindows& windows_;
    ScopedPlatformPart<MessageBoxes> installed_;
};

// The run's failure path for every number but 75: one box, the progress window closed.
void tellFailure(BackupWindows& windows, const FileFailure& failure) {
    if (failure.Number == kFailTargetFull)
        MsgBox(
            "De backup schijf is vol, verwijder een oude backup map of gebruik een nieuwe schijf",
            Buttons::OK, Icon::Critical, DefaultButton::First, kWriteFailureTitle);
    else if (failure.Number == kFailPathNotFound)
        MsgBox("De backup schijf kan niet worden geopend, het kan zijn dat deze op 'write "
               "protection' staat, dit is vaak een schakelaartje. Pas dit aan of gebruik een "
               "ander backup medium",
               Buttons::OK, Icon::Critical, DefaultButton::First, kWriteFailureTitle);
    else
        MsgBox(std::to_string(failure.Number) + " " + failure.Description);
    windows.closeCopyWindow();
}

void showMissing(const std::string& row) {
    MsgBox(std::string("Het bestand '") + row + " kan niet gevonden worden op deze lokatie" +
               kCrLf + kCrLf +
               "Controleer, nadat het backup programma klaar is, waar het bestand staat of "
               "verwijder deze uit de lijst",
           Buttons::OK, Icon::Exclamation, DefaultButton::First, "Kan bestand niet vinden");
}

void showDuplicate(const std::string& name) {
    MsgBox("Het bestand " + name +
               " bestaat al in de backup directory. U kunt niet twee dezelfde bestanden in "
               "dezelfde backup directory zetten. " +
               kCrLf + kCrLf + "Informeer over de mogelijkheden bij uw leverancier",
           Buttons::OK, Icon::Critical, DefaultButton::First, "Bestand wordt niet gekopieerd");
}

// Tells that a row is not copied because the target's file system refuses a name on its way.
void showUnfitName(const std::string& name, const std::string& folder, const FatRefusal& refusal) {
    std::string why;
    switch (refusal.kind) {
    case FatRefusal::Character:
        why = std::string("bevat het teken ") + refusal.character +
              ", dat de backup schijf niet toestaat";
        break;
    case FatRefusal::Control:
        why = "bevat een stuurteken, dat de backup schijf niet toestaat";
        break;
    case FatRefusal::TrailingDot:
        why = "eindigt op een punt, wat de backup schijf niet toestaat";
        break;
    case FatRefusal::TrailingBlank:
        why = "eindigt op een spatie, wat de backup schijf niet toestaat";
        break;
    }
    const bool ofFolder = !folder.empty();
    MsgBox("Het bestand " + name + " kan niet naar de backup schijf worden gekopieerd: de naam " +
               (ofFolder ? "van de map " + folder + " " : "") + why + "." + kCrLf + kCrLf +
               (ofFolder ? "Geef de map een andere naam" : "Geef het bestand een andere naam") +
               " of gebruik een backup schijf die deze naam wel toestaat.",
           Buttons::OK, Icon::Critical, DefaultButton::First, "Bestand wordt niet gekopieerd");
}

// Whether the target takes the names a row needs; when not, the user has been told.
bool namesFit(NameRules rules, const std::string& name, const std::string& folderPart) {
    if (rules != NameRules::Fat)
        return true;
    const std::string folder = folderPart.empty() ? "" : folderPart.substr(1);
    if (auto refusal = fatRefusal(folder)) {
        showUnfitName(name, folder, *refusal);
        return false;
    }
    if (auto refusal = fatRefusal(name)) {
        showUnfitName(name, "", *refusal);
        return false;
    }
    return true;
}

void showNotCopied(const std::string& why) {
    MsgBox(why + kCrLf + kCrLf + "Sluit Norvale af en maak de backup opnieuw.", Buttons::OK,
           Icon::Critical, DefaultButton::First, "Bestand wordt niet gekopieerd");
}

// Tells why the copy of a row failed where the run goes on behind it, flawed: a source that kept
// changing while it was copied or that another program holds, and a name the stick refused
// (EPERM, EACCES or EINVAL) although its type was not known to refuse it. False for any other
// failure, which the user has not been told.
bool toldNotCopied(const FileFailure& failure, const std::string& source, const std::string& name,
                   const std::string& folderPart) {
    switch (failure.Number) {
    case kFailSourceChanging:
        showNotCopied("Het bestand " + source +
                      " veranderde steeds terwijl het gekopieerd werd, waarschijnlijk omdat "
                      "Norvale nog open staat. Het is daarom niet in de backup opgenomen.");
        return true;
    case kFailSourceInUse:
        showNotCopied("Het bestand " + source +
                      " is in gebruik bij een ander programma, waarschijnlijk Norvale, en kan "
                      "daarom niet gekopieerd worden.");
        return true;
    case kFailAccessRefused:
    case kFailBadFileName:
        return !namesFit(NameRules::Fat, name, folderPart);
    default:
        return false;
    }
}

// The run up to its closing steps; a return goes to them, and so does every failure but 75.
void backUp(BackupWindows& windows, CopyBatch& copies, int16_t& intLoop,
            std::string& strBackupFolder, bool& blnFlawed) {
    AppSettingsRecord& s = AppSettings;
    // One date for every candidate name, so that an answer given after midnight does not
    // mix two days.
    const std::string plainName =
        s.DriveTarget + "\\Backup" + isoDateText(platform().clock->today());
    strBackupFolder = plainName;
    if (MsgBox(std::string("Backup maken naar map: ") + kCrLf + kCrLf + strBackupFolder,
               Buttons::OKCancel, Icon::Question, DefaultButton::First,
               "Backup maken") != Answer::OK)
        return;

    if (folderExists(strBackupFolder)) {
        if (MsgBox(std::string("Directory bestaat al, u heeft vandaag al een backup aangemaakt") +
                       kCrLf + "Wilt u toch een backup aanmaken?",
                   Buttons::YesNo, Icon::Exclamation, DefaultButton::Second,
                   "Backup maken") == Answer::No)
            return;
        intLoop = 2;
        while (folderExists(strBackupFolder)) {
            strBackupFolder = plainName + "(" + std::to_string(intLoop) + ")";
            if (intLoop == std::numeric_limits<int16_t>::max())
                throw fileFailure(6);
            ++intLoop;
        }
    }

    goOnBehind([&] { windows.subShowCopyWindow(); });
    windows.setProgressMax(s.AantalFiles);
    goOnBehind([&] { subMakeFolder(strBackupFolder); });
    windows.runCommit([&] { subSweepBackupLeftovers(s.DriveTarget, strBackupFolder); });
    // Known before any copy, so that a name the stick cannot hold is told as such.
    const NameRules rules = fileSystem().nameRulesOf(strBackupFolder);

    const bool mirrored = s.Directory == 1;
    const int rows = s.AantalFiles;
    for (int row = 1; row <= rows; ++row) {
        intLoop = static_cast<int16_t>(row);
        windows.setProgressValue(row);
        const std::string source =
            static_cast<std::size_t>(row) < s.strFiles.size() ? s.strFiles[row] : std::string();

        // A blank row names no file: there is nothing to copy and nothing to tell, so a list
        // with thousands of them does not turn into thousands of boxes.
        if (isBlank(source))
            continue;
        std::string name;
        bool found = answeredOrYes([&] {
            name = fFirstMatch(source);
            return !name.empty();
        });
        if (!found) {
            showMissing(source);
            blnFlawed = true;
            continue;
        }
        if (name.empty()) // the file system refused the question; the row names its file
            name = bareNameOf(source);

        const std::string status = "Kopiëren " + name;
        windows.setStatusText(status);
        windows.setCopyText(status);

        const std::string folderPart = mirrored ? mirroredFolderPart(source) : "";
        if (!namesFit(rules, name, folderPart)) {
            blnFlawed = true;
            continue;
        }

        // Two rows from folders of one name with one bare name would meet at one mirrored
        // destination; the second is refused as in the flat layout, and so is a file that came
        // there meanwhile. An empty mirrored destination has told its failure and goes on as is.
        const std::string destination =
            mirrored ? fFullPath(source, strBackupFolder) : strBackupFolder + "\\" + name;
        // A copy still waiting for its commit is not on disk under its name yet.
        if (!destination.empty() && (copies.holds(destination) || answeredOrYes([&] {
                                         return !fFirstMatch(destination).empty();
                                     }))) {
            showDuplicate(name);
            blnFlawed = true;
            continue;
        }
        try {
            windows.runCopy([&] { copies.copy(source, destination); });
        } catch (const FileFailure& failure) {
            // A copy that is held was staged: what failed was the commit of its group. An empty
            // destination is fFullPath's failure, which it has told.
            if (!destination.empty() && !copies.holds(destination) &&
                toldNotCopied(failure, source, name, folderPart))
                blnFlawed = true;
            else if (failure.Number != kFailAccessRefused)
                throw;
        }
    }

    // A backup reported done is on the medium: the last copies with the folders they went to,
    // the subfolders' entries in the backup folder, and its own entry in the root.
    goOnBehind([&] {
        windows.runCommit([&] { copies.commit({strBackupFolder, s.DriveTarget + "\\"}); });
    });
    // Every copy was read back in its group; a stick that wraps around may since have written
    // later copies over earlier ones, so once all is written each is looked at again.
    goOnBehind([&] { windows.runCommit([&] { copies.checkPlaced(); }); });

    windows.closeCopyWindow();

    s.LastBackup = platform().clock->today();
    subWriteIni(s.strIniFile, kSectionBasic, "LastBackup", shortDateText(*s.LastBackup));

    if (!blnFlawed)
        MsgBox("Bestanden succesvol gekopieerd naar " + strBackupFolder, Buttons::OK,
               Icon::Information, DefaultButton::First, "Back Up");
    else
        MsgBox("Bestanden gekopieerd naar " + strBackupFolder + kCrLf + kCrLf +
                   "Niet alle bestanden in de lijst zijn echter gekopieerd door de mededelingen "
                   "die u op het scherm kreeg!",
               Buttons::OK, Icon::Exclamation, DefaultButton::First, "Back Up met fout(en)");
}

} // namespace

void Cmd_Backup_Click(BackupWindows& windows, int16_t& intLoop, std::string& strBackupFolder) {
    bool blnFlawed = false;
    {
        CopyBatch copies(fileSystem());
        CommitBeforeBoxes commitFirst(copies, windows);
        try {
            backUp(windows, copies, intLoop, strBackupFolder, blnFlawed);
        } catch (const FileFailure& failure) {
            // What the run wrote before the failure goes in place before its box; a commit that
            // fails as well removes its copies and leaves the first failure to tell.
            if (copies.pending()) {
                try {
                    windows.runCommit([&] { copies.commit(); });
                } catch (const FileFailure&) {
                }
            }
            tellFailure(windows, failure);
        }
    }
    // The closing steps end every run, each once even when it fails: a target that has gone
    // would otherwise bring them back for ever.
    for (void (BackupWindows::*step)() :
         {&BackupWindows::RefreshStatus, &BackupWindows::refreshTargetDirectories}) {
        try {
            goOnBehind([&] { (windows.*step)(); });
        } catch (const FileFailure& failure) {
            tellFailure(windows, failure);
        }
    }
}

} // namespace nv
