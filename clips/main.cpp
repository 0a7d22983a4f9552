// The clips' workshop:
//
//   quiverly-clips make FOLDER            makes every clip from nothing, as FOLDER/<pack>/<number>.mp3
//   quiverly-clips sheet AUDIO FOLDER     draws the clips below AUDIO into FOLDER and prints the contact sheet's tables

#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "clips/ClipMaker.h"
#include "clips/sheet/ContactSheet.h"

int main(int argc, char* argv[]) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    try {
        if (arguments.size() == 2 && arguments[0] == "make") {
            const auto made = quiverly::clips::makeAllClips(arguments[1]);
            if (!made) throw std::runtime_error(made.error());
        } else if (arguments.size() == 3 && arguments[0] == "sheet") {
            std::cout << quiverly::clips::contactSheet(arguments[1], arguments[2]);
        } else {
            std::cerr << "usage: quiverly-clips make FOLDER | quiverly-clips sheet AUDIO FOLDER\n";
            return 2;
        }
    } catch (const std::exception& error) {
        std::cerr << "quiverly-clips: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
