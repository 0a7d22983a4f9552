// Makes the calls of the sound port that its standard input asks for, a line each, and answers each with a line once
// the call has returned:
//
//   create NAME FILE      answers "null" when there is no player
//   volume NAME VOLUME
//   prepare NAME
//   play NAME
//   release NAME
//
// It ends with its input, with the players that are left. A call that does not return ends it by a signal.

#include <unistd.h>

#include <iostream>
#include <map>
#include <sstream>
#include <string>

#include "platform/audio.h"

namespace {

using namespace quiverly;

constexpr unsigned patience = 100; // seconds

class Players {
public:
    // What to answer.
    std::string call(const std::string& line) {
        std::istringstream words(line);
        std::string operation;
        std::string name;
        words >> operation >> name;
        if (operation == "create") {
            std::string file;
            words >> file;
            players[name] = audio::create(file);
            return players[name] ? "created" : "null";
        }
        const audio::PlayerHandle& player = players.at(name);
        if (operation == "volume") {
            float volume = 0;
            words >> volume;
            audio::setVolume(*player, volume);
        } else if (operation == "prepare") {
            audio::prepareToPlay(*player);
        } else if (operation == "play") {
            audio::play(*player);
        } else if (operation == "release") {
            players.erase(name);
        } else {
            return "unknown";
        }
        return "done";
    }

private:
    std::map<std::string, audio::PlayerHandle> players;
};

} // namespace

int main() {
    Players players;
    std::string line;
    while (std::getline(std::cin, line)) {
        ::alarm(patience);
        std::cout << players.call(line) << std::endl;
    }
    ::alarm(patience);
    return 0;
}
