#include "platform/posix/ErrnoFailures.h"

#include "platform/FailureText.h"

#include <cerrno>

namespace nv {

FileFailure failureFromErrno(int err, const std::string&) {
    int32_t number;
    switch (err) {
    case ENOSPC:
    case EDQUOT:
        number = kFailTargetFull;
        break;
    case ENXIO:
    case ENODEV:
    case ENOMEDIUM:
        number = kFailDeviceUnavailable;
        break;
    case EACCES:
    case EPERM:
    case EEXIST:
    case EBUSY:
    case ETXTBSY:
    case ENOTEMPTY:
    case EISDIR:
        number = kFailAccessRefused;
        break;
    case ENOENT:
    case ENOTDIR:
    case EROFS:
        number = kFailPathNotFound;
        break;
    case EIO:
        number = kFailDeviceIo;
        break;
    case ENAMETOOLONG:
    case EINVAL:
    case ELOOP:
        number = kFailBadFileName;
        break;
    default:
        number = kFailGeneral;
        break;
    }
    return fileFailure(number);
}

void throwErrno(int err, const std::string& drivePath) {
    throw failureFromErrno(err, drivePath);
}

} // namespace nv
