#pragma once

#include <cstdint>
#include <string>

#include "engine/BonkoEngine.h"

namespace quiverly {

// Writes what happens during a replay as JSON Lines, one event a line, to the end of a text.
class EventPrinter {
public:
    struct Totals {
        std::int64_t reports; // delivered to the reader
        std::int64_t samples;
        std::int64_t slaps; // accepted
        std::int64_t clips;
    };

    explicit EventPrinter(std::string& text) : text(text) {}

    void setTime(double seconds) { time = seconds; } // of the events to come

    void sample(double x, double y, double z);       // g
    void slap(std::int64_t count, double amplitude); // g
    void clip(const std::string& name, float volume);
    void checkSlap(double amplitude); // g
    void phase(const BonkoEngine::Phase& phase);
    void settingsPage(const std::string& url);
    void end(const Totals& totals);

private:
    void begin(const char* event);
    void finish() { text += "}\n"; }
    void member(const char* key);
    template<class Number>
    void number(const char* key, Number value);
    void string(const char* key, std::string_view value);

    std::string& text;
    double time = 0.0; // seconds
};

} // namespace quiverly
