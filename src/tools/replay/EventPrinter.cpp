#include "tools/replay/EventPrinter.h"

#include "tools/replay/JsonText.h"

namespace quiverly {

void EventPrinter::sample(double x, double y, double z) {
    begin("sample");
    number("x", x);
    number("y", y);
    number("z", z);
    finish();
}

void EventPrinter::slap(std::int64_t count, double amplitude) {
    begin("slap");
    number("count", count);
    number("amplitude", amplitude);
    finish();
}

void EventPrinter::clip(const std::string& name, float volume) {
    begin("clip");
    string("file", name);
    number("volume", volume);
    finish();
}

void EventPrinter::checkSlap(double amplitude) {
    begin("check-slap");
    number("amplitude", amplitude);
    finish();
}

void EventPrinter::phase(const BonkoEngine::Phase& phase) {
    using Kind = BonkoEngine::Phase::Kind;
    begin("phase");
    string("phase", phase.kind == Kind::idle ? "idle" : phase.kind == Kind::listening ? "listening" : "error");
    if (phase.kind == Kind::error) string("message", phase.message);
    finish();
}

void EventPrinter::settingsPage(const std::string& url) {
    begin("settings-page");
    string("url", url);
    finish();
}

void EventPrinter::end(const Totals& totals) {
    text += "{\"event\":\"end\"";
    number("reports", totals.reports);
    number("samples", totals.samples);
    number("slaps", totals.slaps);
    number("clips", totals.clips);
    finish();
}

void EventPrinter::begin(const char* event) {
    text += "{\"t\":";
    json::appendNumber(text, time);
    string("event", event);
}

void EventPrinter::member(const char* key) {
    text.append(",\"").append(key).append("\":");
}

template<class Number>
void EventPrinter::number(const char* key, Number value) {
    member(key);
    json::appendNumber(text, value);
}

void EventPrinter::string(const char* key, std::string_view value) {
    member(key);
    json::appendString(text, value);
}

} // namespace quiverly
