#include <cmath>

#include "clips/PackRecipe.h"
#include "clips/instruments/Choir.h"
#include "clips/instruments/Harp.h"
#include "clips/instruments/Horn.h"
#include "clips/instruments/Impact.h"
#include "clips/instruments/Lips.h"
#include "clips/instruments/Speech.h"
#include "clips/instruments/Strings.h"
#include "clips/instruments/Struck.h"
#include "clips/instruments/Voice.h"
#include "clips/packs/Cast.h"
#include "clips/synthesis/Filter.h"
#include "clips/synthesis/Oscillator.h"
#include "clips/synthesis/Stage.h"
#include "clips/synthesis/Tuning.h"

namespace quiverly::clips {

namespace {

constexpr double woman = 1.17; // factor of her vocal tract on a man's resonances

const Curve swell{{0, 0.3}, {0.35, 1}, {1, 0}};
const Curve hummed{{0, 0.3}, {0.35, 1}, {0.7, 0.7}, {1, 0.05}};

// Not a person, so it is not in the cast.
Speaker cat() {
    return {.name = "A cat", .low = 1.35, .middle = 1.3, .high = 1.4, .breath = 1.2, .jitter = 0.02, .shimmer = 0.08};
}

Stereo alone(const Cry& cry, RandomNumbers& random) {
    return Stage().play(cried(cry, random)).in(room::parlour);
}

Stereo coyHum(RandomNumbers& random) {
    const Cry he{.speaker = cast::tom,
                 .seconds = 0.26,
                 .pitch = {{0, 150}, {0.5, 112}, {1, 126}},
                 .loudness = hummed,
                 .mouth = {{0, consonant::m}},
                 .press = 0.4,
                 .before = 0.05,
                 .after = 0.1};
    return alone(he, random);
}

Stereo askingHum(RandomNumbers& random) {
    const Cry she{.speaker = cast::mara,
                  .seconds = 0.36,
                  .pitch = {{0, 215}, {0.3, 195}, {1, 370}},
                  .loudness = {{0, 0.3}, {0.3, 1}, {0.8, 0.7}, {1, 0.05}},
                  .mouth = {{0, consonant::m}, {0.5, vowel::er}, {1, consonant::m}},
                  .press = 0.4,
                  .before = 0.05,
                  .after = 0.12};
    return alone(she, random);
}

Stereo purr(RandomNumbers& random) {
    const Cry cry{.speaker = cat(),
                  .seconds = 0.6,
                  .pitch = {{0, 92}, {0.5, 110}, {1, 88}},
                  .loudness = {{0, 0.4}, {0.25, 1}, {0.7, 0.7}, {1, 0.05}},
                  .mouth = {{0, consonant::m}, {0.5, vowel::er}, {1, consonant::m}},
                  .press = 0.5,
                  .air = 2.5,
                  .before = 0.06,
                  .after = 0.15};
    return Stage().play(fluttered(cried(cry, random), {{0, 23}, {1, 26}}, 0.85)).in(room::parlour);
}

Stereo mmHm(RandomNumbers& random) {
    Cry she{.speaker = cast::ida,
            .seconds = 0.17,
            .pitch = {{0, 235}, {0.5, 205}, {1, 190}},
            .loudness = hummed,
            .mouth = {{0, consonant::m}},
            .press = 0.45,
            .before = 0.03,
            .after = 0.06};
    Stage stage;
    stage.play(cried(she, random), 0, 0.9);
    she.seconds = 0.24;
    she.pitch = {{0, 190}, {0.4, 300}, {1, 215}};
    she.mouth = {{0, vowel::uh}, {0.4, vowel::er}, {0.8, consonant::m}};
    she.before = 0.07;
    she.after = 0.14;
    return stage.play(cried(she, random), 0.23).in(room::parlour);
}

Stereo ooh(RandomNumbers& random) {
    const Cry she{.speaker = cast::mara,
                  .seconds = 0.42,
                  .pitch = {{0, 240}, {0.35, 430}, {0.6, 380}, {1, 230}},
                  .loudness = {{0, 0.25}, {0.3, 1}, {0.65, 0.6}, {1, 0.03}},
                  .mouth = {{0, vowel::er}, {0.4, vowel::oo}, {1, vowel::oo}},
                  .press = {{0, 0.4}, {0.4, 0.6}, {1, 0.2}},
                  .air = 1.6,
                  .before = 0.06,
                  .after = 0.2};
    return alone(she, random);
}

Stereo hey(RandomNumbers& random) {
    const Cry he{.speaker = cast::boris,
                 .seconds = 0.4,
                 .pitch = {{0, 105}, {0.3, 150}, {1, 78}},
                 .loudness = {{0, 0.3}, {0.25, 1}, {0.6, 0.6}, {1, 0.03}},
                 .mouth = {{0, vowel::ae}, {0.45, vowel::eh}, {1, vowel::ih}},
                 .press = {{0, 0.3}, {0.3, 0.6}, {1, 0.3}},
                 .before = 0.09,
                 .after = 0.16};
    return alone(he, random);
}

// Laughter: ha-ha-ha, each with a breath of its own, falling in pitch and loudness (J. Bachorowski and others, "The
// acoustic features of human laughter", 2001: 4 to 5 a second, each half breath).
Stereo laughing(const Speaker& speaker, int times, double high, double low, MouthShape open, RandomNumbers& random) {
    Stage stage;
    double at = 0;
    for (int time = 0; time < times; ++time) {
        const double along = times > 1 ? static_cast<double>(time) / (times - 1) : 0;
        const double pitch = high * std::pow(low / high, along) * (time == 0 ? 0.92 : 1);
        const Cry ha{.speaker = speaker,
                     .seconds = 0.1 + 0.02 * along,
                     .pitch = {{0, 0.9 * pitch}, {0.35, 1.12 * pitch}, {1, 0.75 * pitch}},
                     .loudness = {{0, 0.2}, {0.4, 1}, {1, 0.05}},
                     .mouth = {{0, open}, {1, vowel::uh}},
                     .press = 0.55,
                     .air = 1.8,
                     .before = time == 0 ? 0.03 : 0.06,
                     .after = time == times - 1 ? 0.2 : 0.05};
        stage.play(cried(ha, random), at, (time == 0 ? 0.8 : 1) - 0.4 * along);
        at += 0.18 + 0.03 * along;
    }
    return stage.in(room::parlour);
}

Stereo gasp(RandomNumbers& random) {
    const Cry she{.speaker = cast::hedda,
                  .seconds = 0.16,
                  .pitch = {{0, 300}, {0.4, 420}, {1, 330}},
                  .mouth = {{0, vowel::uh}, {0.5, vowel::a}},
                  .press = 0.35,
                  .air = 3,
                  .before = 0.12,
                  .after = 0.14};
    return alone(she, random);
}

Stereo haHa(RandomNumbers& random) {
    return laughing(cast::tom, 2, 260, 200, vowel::ae, random);
}

Stereo snigger(RandomNumbers& random) {
    return laughing(cast::otto, 4, 230, 150, vowel::eh, random);
}

Stereo oneKiss(RandomNumbers& random) {
    return Stage().play(kiss(0.34, random)).in(room::parlour);
}

Stereo ohHo(RandomNumbers& random) {
    Cry she{.speaker = cast::ida,
            .seconds = 0.2,
            .pitch = {{0, 270}, {0.4, 330}, {1, 230}},
            .mouth = {{0, vowel::a}, {1, vowel::aw}},
            .press = 0.55,
            .after = 0.06};
    Stage stage;
    stage.play(cried(she, random), 0, 0.9);
    she.seconds = 0.32;
    she.pitch = {{0, 260}, {0.35, 430}, {1, 200}};
    she.mouth = {{0, vowel::a}, {0.6, vowel::aw}, {1, vowel::oo}};
    she.before = 0.09;
    she.after = 0.16;
    return stage.play(cried(she, random), 0.27).in(room::parlour);
}

Stereo giggle(RandomNumbers& random) {
    return laughing(cast::mara, 4, 520, 340, vowel::eh, random);
}

Stereo chuckle(RandomNumbers& random) {
    return laughing(cast::boris, 3, 190, 105, vowel::a, random);
}

Stereo meow(RandomNumbers& random) {
    const Cry cry{
        .speaker = cat(),
        .seconds = 0.62,
        .pitch = {{0, 420}, {0.25, 690}, {0.55, 640}, {1, 330}},
        .loudness = {{0, 0.25}, {0.25, 1}, {0.65, 0.7}, {1, 0.03}},
        .mouth = {{0, consonant::m}, {0.12, vowel::ee}, {0.4, vowel::ae}, {0.75, vowel::aw}, {1, consonant::w}},
        .press = {{0, 0.5}, {0.3, 0.7}, {1, 0.3}},
        .after = 0.16};
    return alone(cry, random);
}

tl::expected<Stereo, std::string> wellHello(RandomNumbers& random) {
    const Cry hm{.speaker = cast::boris,
                 .seconds = 0.25,
                 .pitch = {{0, 120}, {0.4, 95}, {1, 130}},
                 .loudness = hummed,
                 .mouth = {{0, consonant::m}, {0.6, vowel::er}, {1, consonant::m}},
                 .press = 0.5,
                 .after = 0.1};
    const auto words = spoken("Well, hello there.", {.wordsPerMinute = 150, .pitch = 22, .range = 170});
    if (!words) return tl::unexpected(words.error());
    Stage stage;
    stage.play(plucked(keyPitch(34), 0.6, 0.2, random), 0, 0.5).play(plucked(keyPitch(41), 0.8, 0.2, random), 0.3, 0.5);
    return stage.play(cried(hm, random), 0, 0.8).play(*words, 0.36).in(room::parlour);
}

Stereo threeKisses(RandomNumbers& random) {
    return Stage()
        .play(kiss(0.22, random), 0, 0.8, -0.6)
        .play(kiss(0.22, random), 0.28, 0.9, 0.6)
        .play(kiss(0.4, random), 0.58)
        .in(room::parlour);
}

Stereo oohLa(RandomNumbers& random) {
    Cry she{.speaker = cast::hedda,
            .seconds = 0.3,
            .pitch = {{0, 260}, {0.5, 430}, {1, 360}},
            .loudness = {{0, 0.2}, {0.35, 1}, {1, 0.15}},
            .mouth = {{0, vowel::er}, {0.4, vowel::oo}, {1, consonant::l}},
            .press = 0.5,
            .before = 0.05,
            .after = 0.03};
    Stage stage;
    stage.play(cried(she, random), 0, 0.9);
    she.seconds = 0.36;
    she.pitch = {{0, 430}, {0.3, 600}, {1, 260}};
    she.loudness = {{0, 0.3}, {0.25, 1}, {0.6, 0.6}, {1, 0.03}};
    she.mouth = {{0, consonant::l}, {0.2, vowel::a}, {1, vowel::a}};
    she.press = {{0, 0.6}, {1, 0.2}};
    she.before = 0.01;
    she.after = 0.2;
    return stage.play(cried(she, random), 0.36).in(room::parlour);
}

Stereo wolfWhistle(RandomNumbers& random) {
    const Curve puff{{0, 0.5}, {0.15, 1}, {0.85, 0.9}, {1, 0}};
    return Stage()
        .play(whistle(0.38, {{0, 900}, {0.3, 1100}, {1, 2600}}, puff, random))
        .play(whistle(0.62, {{0, 1050}, {0.35, 2250}, {0.5, 2200}, {1, 780}}, puff, random), 0.44)
        .in(room::parlour);
}

Stereo wow(RandomNumbers& random) {
    const Cry he{.speaker = cast::pip,
                 .seconds = 0.62,
                 .pitch = {{0, 125}, {0.3, 340}, {0.55, 300}, {1, 110}},
                 .loudness = {{0, 0.2}, {0.28, 1}, {0.6, 0.7}, {1, 0.03}},
                 .mouth = {{0, consonant::w}, {0.25, vowel::a}, {0.6, vowel::ae}, {1, consonant::w}},
                 .press = {{0, 0.5}, {0.3, 0.8}, {1, 0.3}},
                 .after = 0.18};
    return alone(he, random);
}

Stereo throatyLaugh(RandomNumbers& random) {
    return laughing(cast::ida, 6, 290, 160, vowel::a, random);
}

Stereo growlingMeow(RandomNumbers& random) {
    const Cry tiger{.speaker = cat(),
                    .seconds = 0.75,
                    .pitch = {{0, 170}, {0.45, 430}, {1, 190}},
                    .loudness = {{0, 0.4}, {0.35, 1}, {0.7, 0.7}, {1, 0.03}},
                    .mouth = {{0, consonant::r}, {0.3, vowel::er}, {0.55, vowel::ae}, {1, consonant::w}},
                    .press = 0.9,
                    .air = 1.5,
                    .after = 0.2,
                    .rasp = 0.5};
    return Stage().play(fluttered(cried(tiger, random), 27, {{0, 0.9}, {0.35, 0.7}, {0.5, 0}}), 0).in(room::parlour);
}

// A saxophone's line: each note slides into its key.
void saxophone(Stage& stage, const std::vector<std::pair<double, double>>& keysAndSeconds, double growl, double at,
               double gain, RandomNumbers& random) {
    for (const auto& [key, seconds] : keysAndSeconds) {
        const Curve slide{{0, keyPitch(key - 1.5)}, {0.06 / seconds, keyPitch(key)}, {1, keyPitch(key - 0.2)}};
        stage.play(blown({.seconds = seconds + 0.04,
                          .pitch = slide,
                          .loudness = {{0, 0.45}, {0.15, 1}, {0.8, 0.75}, {1, 0}},
                          .openness = {{0, 1600}, {0.2, 4600}, {1, 2200}},
                          .body = 620,
                          .vibrato = 0.5,
                          .growl = growl},
                         random),
                   at, gain);
        at += seconds;
    }
}

Stereo champagne(RandomNumbers& random) {
    const Curve fizz{{0, 1}, {0.2, 0.6}, {1, 0}};
    const Cry she{.speaker = cast::mara,
                  .seconds = 0.5,
                  .pitch = {{0, 420}, {0.4, 880}, {1, 620}},
                  .mouth = {{0, consonant::w}, {0.3, vowel::ih}, {1, vowel::ee}},
                  .press = 0.7,
                  .air = 1.5};
    return Stage()
        .play(pop(random))
        .play(faded(highPassed(whiteNoise(1.2, random), 5000), fizz), 0.05, 0.1)
        .play(cried(she, random), 0.3)
        .play(struck(body::glass, 2350, 0.6, 0.4), 0.9, 0.4, -0.5)
        .play(struck(body::glass, 2640, 0.6, 0.4), 0.97, 0.4, 0.5)
        .in(room::parlour);
}

Stereo flamenco(RandomNumbers& random) {
    Stage stage;
    for (const double at : {0.0, 0.09, 0.18, 0.36, 0.45, 0.54}) {
        const double hertz = random.between(1500, 1700);
        const double place = random.between(-0.8, 0.8);
        stage.play(struck(body::wood, hertz, 0.8), at, 0.7, place);
    }
    for (const double key : {52, 59, 64, 68, 71, 76}) {
        stage.play(plucked(keyPitch(key), 0.9, 0.8, random), 0.72 + 0.012 * (key - 52) / 4, 0.5, 0.3);
    }
    const Cry he{.speaker = cast::pip,
                 .seconds = 0.6,
                 .pitch = {{0, 260}, {0.2, 450}, {0.6, 400}, {1, 240}},
                 .mouth = {{0, vowel::a}, {0.4, vowel::a}, {0.7, vowel::ih}},
                 .press = 0.85};
    return stage.play(cried(he, random), 0.7).in(room::parlour);
}

Stereo swoon(RandomNumbers& random) {
    const Cry she{.speaker = cast::hedda,
                  .seconds = 0.95,
                  .pitch = {{0, 400}, {0.2, 780}, {0.45, 640}, {1, 210}},
                  .loudness = {{0, 0.25}, {0.16, 1}, {0.5, 0.6}, {1, 0.05}},
                  .mouth = {{0, vowel::a}, {0.4, vowel::ae}, {1, vowel::aw}},
                  .press = {{0, 0.7}, {1, 0.1}},
                  .air = 1.5,
                  .after = 0.3};
    return Stage()
        .play(cried(she, random))
        .play(bowed(1.2, {{0, keyPitch(76)}, {0.25, keyPitch(79)}, {1, keyPitch(55)}}, swell, random), 0, 0.3, -0.5)
        .play(thump(80, 0.3), 1.15, 0.8)
        .in(room::parlour);
}

Stereo hotSax(RandomNumbers& random) {
    Stage stage;
    saxophone(stage, {{65, 0.12}, {68, 0.12}, {70, 0.24}, {73, 0.16}, {72, 0.12}, {68, 0.2}, {70, 0.75}}, 0.7, 0, 1,
              random);
    double at = 0;
    for (const double key : {34, 41, 44, 46, 34, 41}) {
        stage.play(plucked(keyPitch(key), 0.4, 0.4, random), at, 0.5, -0.4);
        stage.play(crash(0.2, 7000, random), at, 0.12, 0.6);
        at += 0.24;
    }
    return stage.in(room::parlour);
}

// Clapping that swells and dies down again.
void applause(Stage& stage, double from, double seconds, int claps, RandomNumbers& random) {
    const Curve joining{{0, 0.1}, {0.5, 1}, {1, 0.2}};
    for (int clap = 0; clap < claps; ++clap) {
        const double hertz = random.between(900, 2200);
        const double early = random.between(0, 0.5);
        const double late = random.between(0, 0.5);
        const double gain = joining(early + late) * random.between(0.2, 0.5);
        const double place = random.between(-1, 1);
        stage.play(smack(hertz, 0.09, random), from + seconds * (early + late), gain, place);
    }
}

Stereo bravo(RandomNumbers& random) {
    Stage stage;
    const Cry rolled{
        .speaker = cast::otto,
        .seconds = 1.2,
        .pitch = {{0, 190}, {0.3, 230}, {0.45, 390}, {0.8, 370}, {1, 200}},
        .loudness = {{0, 0.5}, {0.1, 0.8}, {0.42, 0.7}, {0.55, 1}, {0.8, 0.7}, {1, 0.03}},
        .mouth = {{0, consonant::r}, {0.2, consonant::r}, {0.3, vowel::a}, {0.42, consonant::w}, {0.5, vowel::aw}},
        .press = {{0, 0.5}, {0.5, 0.85}, {1, 0.4}},
        .after = 0.2};
    stage.play(fluttered(cried(rolled, random), 26, {{0, 0.85}, {0.18, 0.85}, {0.24, 0}}));
    applause(stage, 0.45, 1.7, 36, random);
    return stage.in(room::hall);
}

Voice warmingUp() {
    return {.seconds = 2.05,
            .pitch = {{0, keyPitch(64)},
                      {0.08, keyPitch(64)},
                      {0.14, keyPitch(68)},
                      {0.2, keyPitch(71)},
                      {0.27, keyPitch(76)},
                      {0.36, keyPitch(80)},
                      {0.46, keyPitch(83)},
                      {0.75, keyPitch(83)},
                      {1, keyPitch(76)}},
            .loudness = {{0, 0.5}, {0.3, 0.9}, {0.5, 1}, {0.85, 0.9}, {1, 0}},
            .mouth = {{0, consonant::m}, {0.06, vowel::ee}, {0.3, vowel::ah}},
            .tract = woman,
            .tension = 0.85,
            .vibrato = 1};
}

Stereo divaWarmsUp(RandomNumbers& random) {
    const std::vector<double> keys{64, 68, 71, 76, 80, 83, 80, 76};
    Stage stage;
    stage.play(sing(warmingUp(), random));
    double at = 0;
    for (const double key : keys) {
        stage.play(plucked(keyPitch(key - 12), 0.8, 0.6, random), at, 0.5, -0.5);
        stage.play(plucked(keyPitch(key - 24), 0.8, 0.6, random), at, 0.5, 0.5);
        at += 0.12;
    }
    return stage.in(room::hall);
}

Cry oohLaLa() {
    return {.speaker = cast::mara,
            .seconds = 1.5,
            .pitch = {{0, 290}, {0.14, 480}, {0.23, 400}, {0.32, 600}, {0.42, 500}, {0.54, 840}, {0.7, 760}, {1, 320}},
            .loudness = {{0, 0.3},
                         {0.07, 1},
                         {0.16, 0.7},
                         {0.22, 0.3},
                         {0.28, 0.9},
                         {0.36, 0.6},
                         {0.41, 0.3},
                         {0.48, 1},
                         {0.7, 0.6},
                         {1, 0.03}},
            .mouth = {{0, vowel::er},
                      {0.08, vowel::oo},
                      {0.19, vowel::oo},
                      {0.23, consonant::l},
                      {0.28, vowel::a},
                      {0.36, vowel::a},
                      {0.41, consonant::l},
                      {0.46, vowel::a},
                      {1, vowel::a}},
            .press = {{0, 0.5}, {0.5, 0.75}, {1, 0.1}},
            .air = 1.3,
            .after = 0.25};
}

Stereo oohLaLaWithAKiss(RandomNumbers& random) {
    Stage stage;
    stage.play(cried(oohLaLa(), random)).play(kiss(0.34, random), 1.72, 1.3);
    double at = 0.75;
    for (const double key : {64, 68, 71, 76, 80, 83, 88, 92, 95, 100}) {
        stage.play(plucked(keyPitch(key), 0.9, 0.7, random), at, 0.45, 2 * (at - 1.0));
        at += 0.055;
    }
    for (const double key : {52, 59, 64, 68}) {
        const double place = random.between(-0.8, 0.8);
        stage.play(bowed(1.1, keyPitch(key), swell, random), 0.8, 0.14, place);
    }
    stage.play(struck(body::bar, keyPitch(100), 0.6, 0.6), 2.05, 0.35);
    return stage.in(room::hall);
}

// The accompaniment of a high note: strings, a roll on the kettledrum, a cymbal on the last beat.
void orchestra(Stage& stage, const std::vector<double>& keys, double seconds, double gain, RandomNumbers& random) {
    for (const double key : keys) {
        const double place = random.between(-0.9, 0.9);
        stage.play(bowed(seconds, keyPitch(key), {{0, 0.5}, {0.7, 1}, {0.9, 0.9}, {1, 0}}, random), 0, gain, place);
    }
    const double rolling = 0.8 * seconds;
    const int strokes = static_cast<int>(rolling / 0.07);
    for (int stroke = 0; stroke <= strokes; ++stroke) {
        const double at = 0.07 * stroke;
        stage.play(struck(body::drum, 82, 0.4, 0.5), at, gain * (0.4 + at / seconds));
    }
    stage.play(crash(0.9, 4000, random), rolling, 1.6 * gain);
}

Stereo tenor(RandomNumbers& random) {
    const double high = keyPitch(71);
    const Voice he{.seconds = 2.3,
                   .pitch = {{0, keyPitch(64)}, {0.14, keyPitch(66)}, {0.24, high}, {0.85, high}, {1, keyPitch(64)}},
                   .loudness = {{0, 0.5}, {0.25, 1}, {0.85, 1}, {1, 0}},
                   .mouth = {{0, vowel::aw}, {0.2, vowel::ah}, {0.8, vowel::ah}, {1, vowel::aw}},
                   .tension = 0.95,
                   .vibrato = 1};
    Stage stage;
    orchestra(stage, {40, 47, 52, 59, 64, 68}, 2.3, 0.16, random);
    applause(stage, 1.2, 2.1, 110, random);
    return stage.play(sing(he, random), 0, 1.2).in(room::hall);
}

// The diva climbs, and climbs once more.
Signal lastNote(double seconds, RandomNumbers& random) {
    return sing({.seconds = seconds,
                 .pitch = {{0, keyPitch(69)},
                           {0.1, keyPitch(73)},
                           {0.18, keyPitch(76)},
                           {0.3, keyPitch(81)},
                           {0.5, keyPitch(81)},
                           {0.6, keyPitch(85)},
                           {0.9, keyPitch(85)},
                           {1, keyPitch(81)}},
                 .loudness = {{0, 0.6}, {0.3, 1}, {0.92, 1}, {1, 0}},
                 .mouth = {{0, vowel::ah}, {0.5, vowel::ae}, {1, vowel::ah}},
                 .tract = woman,
                 .tension = 1,
                 .vibrato = 1.3},
                random);
}

void breakTheGlasses(Stage& stage, double from, RandomNumbers& random) {
    for (int shard = 0; shard < 26; ++shard) {
        const double hertz = random.between(1900, 5200);
        const double at = from + random.between(0, 0.5);
        const double place = random.between(-1, 1);
        stage.play(struck(body::glass, hertz, 0.9, 0.3), at, 0.4, place);
    }
    stage.play(crash(0.8, 5500, random), from, 0.6);
}

Stereo operaFinale(RandomNumbers& random) {
    const Voice everyone{.seconds = 2.7,
                         .pitch = 1,
                         .loudness = {{0, 0.6}, {0.6, 1}, {0.9, 0.9}, {1, 0}},
                         .mouth = {{0, vowel::ah}},
                         .tension = 0.9,
                         .vibrato = 0.6};
    Stage stage;
    orchestra(stage, {33, 45, 52, 57, 61, 64, 69}, 2.7, 0.16, random);
    singTogether(stage, {57, 64}, everyone, 0, 0.3, random);
    stage.play(lastNote(2.7, random), 0, 1.2);
    breakTheGlasses(stage, 2.3, random);
    return stage.in(room::hall);
}

} // namespace

PackRecipe sexyRecipe() {
    return {SoundPack::sexy,
            {
                {"A coy hum", 101, coyHum, "hum", cast::tom.name},
                {"A kiss", 108, oneKiss},
                {"An asking hum", 102, askingHum, "hum", cast::mara.name},
                {"A gasp", 131, gasp, "gasp", cast::hedda.name},
                {"Ha-ha", 132, haHa, "laugh", cast::tom.name},
                {"Mm-hm", 104, mmHm, "hum", cast::ida.name},
                {"Hey", 106, hey, "call", cast::boris.name},
                {"Ooh", 105, ooh, "call", cast::mara.name},
                {"Oh-ho", 109, ohHo, "call", cast::ida.name},
                {"A snigger", 133, snigger, "laugh", cast::otto.name},
                {"A purr", 107, purr},
                {"A chuckle", 134, chuckle, "laugh", cast::boris.name},
                {"A giggle", 110, giggle, "laugh", cast::mara.name},
                {"Meow", 112, meow},
                {"Ooh la", 114, oohLa, "call", cast::hedda.name},
                {"A wolf whistle", 117, wolfWhistle},
                {"Wow", 115, wow, "call", cast::pip.name},
                {"A meow with claws", 119, growlingMeow},
                {"Three kisses", 116, threeKisses},
                {"A throaty laugh", 118, throatyLaugh, "laugh", cast::ida.name},
                {"Champagne", 121, champagne, "call", cast::mara.name},
                {"Flamenco", 122, flamenco, "call", cast::pip.name},
                {"Well, hello there", 113, wellHello, "hum", cast::boris.name},
                {"A swoon", 123, swoon, "call", cast::hedda.name},
                {"Hot saxophone", 124, hotSax},
                {"The diva warms up", 127, divaWarmsUp},
                {"Bravo", 125, bravo, "call", cast::otto.name},
                {"Ooh la la, with a kiss", 128, oohLaLaWithAKiss, "call", cast::mara.name},
                {"The tenor's high note, and applause", 129, tenor},
                {"Opera, the end of it", 130, operaFinale},
            }};
}

} // namespace quiverly::clips
