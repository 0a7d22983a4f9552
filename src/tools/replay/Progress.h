#pragma once

#include <cstdint>

namespace quiverly {

// One line on standard error that tells how far a replay is, rewritten in place. Silent unless that is a terminal.
class Progress {
public:
    Progress();
    ~Progress() { clear(); }
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    // One more line of the recording has been replayed. Shows itself now and then.
    void advance(double seconds);

    // Takes the line away, before anything else is written to standard error.
    void clear();

    // The same before standard output is written, which leaves the line alone if it goes elsewhere.
    void clearForOutput();

private:
    const bool onTerminal;
    const bool sharedWithOutput;
    bool visible = false;
    std::int64_t lines = 0;
};

} // namespace quiverly
