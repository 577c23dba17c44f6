#include "platform/FailureText.h"

namespace nv {

std::string failureDescription(int32_t number) {
    switch (number) {
    case 5:
        return "Ongeldige procedure-aanroep of ongeldig argument";
    case 6:
        return "Overloop";
    case kFailSubscript:
        return "Index buiten bereik";
    case kFailBadFileName:
        return "Ongeldige bestandsnaam of -nummer";
    case 53:
        return "Bestand niet gevonden";
    case kFailDeviceIo:
        return "Invoer/uitvoer-fout van apparaat";
    case kFailFileTooLarge:
        return "Bestand te groot voor dit backup medium";
    case kFailTargetFull:
        return "Schijf vol";
    case kFailDeviceUnavailable:
        return "Apparaat niet beschikbaar";
    case 70:
        return "Toegang geweigerd";
    case 71:
        return "Schijf niet gereed";
    case kFailAccessRefused:
        return "Fout bij toegang tot pad of bestand";
    case kFailPathNotFound:
        return "Pad niet gevonden";
    case kFailCopyClip:
        return copyClipFailure("FILECOPY.AVI").Description;
    case kFailReadBack:
        return "De schijf gaf bij het teruglezen andere gegevens terug dan erop geschreven zijn";
    case kFailSourceChanging:
        return "Het bestand veranderde steeds terwijl het gekopieerd werd";
    case kFailSourceInUse:
        return "Het bestand is in gebruik bij een ander programma";
    default:
        return "Bestandsbewerking mislukt";
    }
}

FileFailure copyClipFailure(const std::string& clipName) {
    return FileFailure(kFailCopyClip, "De animatie " + clipName +
                                          " ontbreekt in de map van het programma of kan niet "
                                          "worden geopend. Installeer het programma opnieuw");
}

FileFailure readBackFailure(const std::string& destination) {
    return FileFailure(kFailReadBack, "Het bestand " + destination +
                                          " is niet vervangen: de schijf gaf bij het teruglezen "
                                          "andere gegevens terug dan erop geschreven zijn");
}

} // namespace nv
