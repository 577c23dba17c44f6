#include "mainwindow/TargetRoot.h"

#include "platform/FailureText.h"

namespace nv {

std::string fTargetRoot(const std::string& driveTarget) {
    const bool letter = !driveTarget.empty() && ((driveTarget[0] >= 'A' && driveTarget[0] <= 'Z') ||
                                                 (driveTarget[0] >= 'a' && driveTarget[0] <= 'z'));
    if (!letter || driveTarget.size() < 2 || driveTarget[1] != ':')
        throw fileFailure(kFailDeviceUnavailable);
    return driveTarget + "\\";
}

} // namespace nv
