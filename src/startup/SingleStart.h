#pragma once

namespace nv {

// One running program per settings file: two would undo each other's edits of the list. The
// face decides how programs find each other.
class SingleStart {
public:
    virtual ~SingleStart() = default;
    // False when another program runs on the same settings file.
    virtual bool first() const = 0;
    // From a later start: asks the first program to bring its window forward; false when it
    // could not be reached.
    virtual bool askFirstToComeForward() = 0;
};

extern const char* const kAlreadyOpenText;

// At a start: tells the user when the program is already open on these settings, then has its
// window come forward. False when this start is to end.
bool goOnAsOnlyStart(SingleStart& start);

} // namespace nv
