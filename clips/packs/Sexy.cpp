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
#include "clips/synthesis/Filter.h"
#include "clips/synthesis/Oscillator.h"
#include "clips/synthesis/Stage.h"
#include "clips/synthesis/Tuning.h"

namespace quiverly::clips {

namespace {

constexpr double woman = 1.17; // factor of her vocal tract on a man's resonances

const Curve swell{{0, 0.3}, {0.35, 1}, {1, 0}};

Stereo coyHum(RandomNumbers& random) {
    const Voice he{.seconds = 0.36,
                   .pitch = {{0, 150}, {0.5, 112}, {1, 126}},
                   .loudness = swell,
                   .mouth = {{0, consonant::m}},
                   .breath = 0.2,
                   .tension = 0.1};
    return Stage().play(sing(he, random)).in(room::parlour);
}

Stereo askingHum(RandomNumbers& random) {
    const Voice she{.seconds = 0.5,
                    .pitch = {{0, 210}, {0.3, 195}, {1, 370}},
                    .loudness = {{0, 0.3}, {0.5, 1}, {0.9, 0.7}, {1, 0}},
                    .mouth = {{0, consonant::m}},
                    .tract = woman,
                    .breath = 0.12,
                    .tension = 0.15};
    return Stage().play(sing(she, random)).in(room::parlour);
}

// Three steps on a double bass; the last one is left to ring.
Stereo tiptoe(RandomNumbers& random) {
    Stage stage;
    stage.play(plucked(keyPitch(38), 0.16, 0.15, random), 0, 1, -0.3);
    stage.play(plucked(keyPitch(41), 0.16, 0.15, random), 0.18, 1, 0.3);
    const Curve ringing{{0, 1}, {0.3, 0.6}, {0.65, 0.2}, {1, 0}};
    stage.play(faded(plucked(keyPitch(43), 0.8, 0.15, random), ringing), 0.36);
    return stage.in(room::parlour);
}

Stereo purr(RandomNumbers& random) {
    const Voice cat{.seconds = 0.85,
                    .pitch = {{0, 92}, {0.5, 110}, {1, 88}},
                    .loudness = {{0, 0.4}, {0.4, 1}, {0.8, 0.8}, {1, 0}},
                    .mouth = {{0, consonant::m}, {0.5, vowel::er}, {1, consonant::m}},
                    .breath = 0.35,
                    .tension = 0.3};
    return Stage().play(fluttered(sing(cat, random), {{0, 23}, {1, 26}}, 0.85)).in(room::parlour);
}

Stereo mmHm(RandomNumbers& random) {
    const Voice she{.seconds = 0.62,
                    .pitch = {{0, 225}, {0.35, 200}, {0.5, 190}, {0.75, 290}, {1, 230}},
                    .loudness = {{0, 0.35}, {0.2, 0.9}, {0.42, 0.15}, {0.65, 1}, {1, 0}},
                    .mouth = {{0, consonant::m}, {0.45, consonant::m}, {0.6, vowel::uh}, {0.8, consonant::m}},
                    .tract = woman,
                    .breath = {{0, 0.1}, {0.4, 0.6}, {0.6, 0.15}},
                    .tension = 0.25};
    return Stage().play(sing(she, random)).in(room::parlour);
}

Stereo ooh(RandomNumbers& random) {
    const Voice she{.seconds = 0.7,
                    .pitch = {{0, 230}, {0.45, 430}, {1, 240}},
                    .loudness = {{0, 0.3}, {0.4, 1}, {1, 0}},
                    .mouth = {{0, vowel::oo}, {0.5, vowel::oo}, {1, consonant::w}},
                    .tract = woman,
                    .breath = 0.18,
                    .tension = {{0, 0.2}, {0.5, 0.5}, {1, 0.2}}};
    return Stage().play(sing(she, random)).in(room::parlour);
}

Stereo hey(RandomNumbers& random) {
    const Voice he{.seconds = 0.6,
                   .pitch = {{0, 105}, {0.4, 142}, {1, 84}},
                   .loudness = {{0, 0.3}, {0.3, 1}, {1, 0}},
                   .mouth = {{0, vowel::eh}, {0.45, vowel::eh}, {1, vowel::ee}},
                   .tract = 0.95,
                   .breath = {{0, 0.9}, {0.15, 0.15}, {1, 0.25}},
                   .tension = 0.45};
    return Stage().play(sing(he, random)).in(room::parlour);
}

Stereo oneKiss(RandomNumbers& random) {
    return Stage().play(kiss(0.34, random)).in(room::parlour);
}

Stereo ohHo(RandomNumbers& random) {
    const Voice she{.seconds = 0.72,
                    .pitch = {{0, 270}, {0.3, 320}, {0.45, 250}, {0.7, 420}, {1, 230}},
                    .loudness = {{0, 0.4}, {0.2, 1}, {0.42, 0.1}, {0.62, 1}, {1, 0}},
                    .mouth = {{0, vowel::aw}, {0.3, vowel::oo}, {0.45, vowel::aw}, {1, vowel::oo}},
                    .tract = woman,
                    .breath = {{0, 0.1}, {0.42, 0.85}, {0.58, 0.1}, {1, 0.3}},
                    .tension = 0.5};
    return Stage().play(sing(she, random)).in(room::parlour);
}

// Laughter: one voice cut into ha-ha-ha, falling in pitch.
Voice laughing(double seconds, int times, double high, double low, double tract, MouthShape open) {
    return {.seconds = seconds,
            .pitch = {{0, high}, {0.15, 1.08 * high}, {1, low}},
            .loudness = Curve::strokes(times, 0.05, 1),
            .mouth = {{0, open}},
            .tract = tract,
            .breath = Curve::strokes(times, 0.9, 0.1),
            .tension = 0.55};
}

Stereo giggle(RandomNumbers& random) {
    return Stage().play(sing(laughing(0.62, 4, 480, 330, 1.25, vowel::ih), random)).in(room::parlour);
}

// A muted trumpet says two short words and a long one, each opened by the player's hand.
Stereo wahWah(RandomNumbers& random) {
    Stage stage;
    const auto word = [&](double at, double seconds, const Curve& pitch, const Curve& openness, double growl) {
        stage.play(blown({.seconds = seconds,
                          .pitch = pitch,
                          .loudness = {{0, 0.4}, {0.3, 1}, {0.7, 0.8}, {1, 0}},
                          .openness = openness,
                          .body = 1050,
                          .vibrato = 0.5,
                          .growl = growl},
                         random),
                   at);
    };
    word(0, 0.17, keyPitch(65), {{0, 450}, {0.6, 2600}, {1, 700}}, 0);
    word(0.2, 0.13, keyPitch(63), {{0, 450}, {0.6, 2000}, {1, 600}}, 0);
    word(0.4, 0.62, {{0, keyPitch(60)}, {0.25, keyPitch(67)}, {0.6, keyPitch(68)}, {1, keyPitch(61)}},
         {{0, 400}, {0.35, 4200}, {0.5, 1500}, {0.65, 3800}, {1, 450}}, 0.5);
    return stage.in(room::parlour);
}

Stereo meow(RandomNumbers& random) {
    const Voice cat{
        .seconds = 0.85,
        .pitch = {{0, 420}, {0.35, 690}, {0.6, 640}, {1, 350}},
        .loudness = {{0, 0.3}, {0.3, 1}, {0.7, 0.8}, {1, 0}},
        .mouth = {{0, consonant::m}, {0.12, vowel::ee}, {0.45, vowel::ah}, {0.75, vowel::aw}, {1, consonant::w}},
        .tract = 1.35,
        .tension = 0.6,
        .vibrato = 0.3};
    return Stage().play(sing(cat, random)).in(room::parlour);
}

tl::expected<Stereo, std::string> wellHello(RandomNumbers& random) {
    const auto words = spoken("Well, hello there.", {.wordsPerMinute = 150, .pitch = 22, .range = 170});
    if (!words) return tl::unexpected(words.error());
    Stage stage;
    stage.play(plucked(keyPitch(34), 0.6, 0.2, random), 0, 0.5).play(plucked(keyPitch(41), 0.8, 0.2, random), 0.3, 0.5);
    return stage.play(*words, 0.02).in(room::parlour);
}

Stereo threeKisses(RandomNumbers& random) {
    return Stage()
        .play(kiss(0.22, random), 0, 0.8, -0.6)
        .play(kiss(0.22, random), 0.28, 0.9, 0.6)
        .play(kiss(0.4, random), 0.58)
        .in(room::parlour);
}

Stereo oohLa(RandomNumbers& random) {
    const Voice she{
        .seconds = 0.95,
        .pitch = {{0, 290}, {0.3, 480}, {0.42, 430}, {0.6, 640}, {1, 400}},
        .loudness = {{0, 0.4}, {0.25, 1}, {0.42, 0.45}, {0.58, 1}, {1, 0}},
        .mouth = {{0, vowel::oo}, {0.36, vowel::oo}, {0.43, consonant::l}, {0.52, vowel::ah}, {1, vowel::ah}},
        .tract = woman,
        .tension = 0.6,
        .vibrato = 0.3};
    return Stage().play(sing(she, random)).in(room::parlour);
}

Stereo wolfWhistle(RandomNumbers& random) {
    const Curve puff{{0, 0.5}, {0.15, 1}, {0.85, 0.9}, {1, 0}};
    return Stage()
        .play(whistle(0.38, {{0, 900}, {0.3, 1100}, {1, 2600}}, puff, random))
        .play(whistle(0.62, {{0, 1050}, {0.35, 2250}, {0.5, 2200}, {1, 780}}, puff, random), 0.44)
        .in(room::parlour);
}

Stereo wow(RandomNumbers& random) {
    const Voice he{.seconds = 0.95,
                   .pitch = {{0, 130}, {0.45, 330}, {1, 120}},
                   .loudness = {{0, 0.35}, {0.4, 1}, {0.7, 0.8}, {1, 0}},
                   .mouth = {{0, consonant::w}, {0.4, vowel::ah}, {0.6, vowel::ah}, {1, consonant::w}},
                   .tension = {{0, 0.4}, {0.4, 0.9}, {1, 0.4}}};
    return Stage().play(sing(he, random)).in(room::parlour);
}

Stereo throatyLaugh(RandomNumbers& random) {
    return Stage().play(sing(laughing(1.15, 5, 260, 165, woman, vowel::ah), random)).in(room::parlour);
}

Stereo growlingMeow(RandomNumbers& random) {
    const Voice tiger{.seconds = 1,
                      .pitch = {{0, 190}, {0.5, 420}, {1, 210}},
                      .loudness = {{0, 0.4}, {0.4, 1}, {0.75, 0.8}, {1, 0}},
                      .mouth = {{0, consonant::r}, {0.35, vowel::er}, {0.6, vowel::ah}, {1, consonant::w}},
                      .tract = 1.1,
                      .tension = 0.9,
                      .roughness = 0.35};
    return Stage().play(fluttered(sing(tiger, random), 27, {{0, 0.9}, {0.45, 0.7}, {0.6, 0}}), 0).in(room::parlour);
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

Stereo loungeSax(RandomNumbers& random) {
    Stage stage;
    saxophone(stage, {{58, 0.16}, {61, 0.16}, {65, 0.32}, {63, 0.6}}, 0.2, 0, 1, random);
    return stage.play(crash(0.35, 6500, random), 0, 0.12, 0.5).in(room::parlour);
}

Stereo champagne(RandomNumbers& random) {
    const Curve fizz{{0, 1}, {0.2, 0.6}, {1, 0}};
    const Voice she{.seconds = 0.6,
                    .pitch = {{0, 480}, {0.6, 880}, {1, 700}},
                    .loudness = {{0, 0.4}, {0.3, 1}, {1, 0}},
                    .mouth = {{0, consonant::w}, {0.3, vowel::ee}},
                    .tract = woman,
                    .tension = 0.6};
    return Stage()
        .play(pop(random))
        .play(faded(highPassed(whiteNoise(1.2, random), 5000), fizz), 0.05, 0.1)
        .play(sing(she, random), 0.35, 0.9)
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
    const Voice he{.seconds = 0.75,
                   .pitch = {{0, 300}, {0.25, 440}, {0.7, 400}, {1, 300}},
                   .loudness = {{0, 0.4}, {0.2, 1}, {0.7, 0.8}, {1, 0}},
                   .mouth = {{0, vowel::ah}, {0.4, vowel::ah}, {0.7, vowel::ee}},
                   .tension = 0.9,
                   .vibrato = 0.5};
    return stage.play(sing(he, random), 0.7).in(room::parlour);
}

Stereo swoon(RandomNumbers& random) {
    const Voice she{.seconds = 1.15,
                    .pitch = {{0, 500}, {0.3, 820}, {0.5, 760}, {1, 260}},
                    .loudness = {{0, 0.4}, {0.3, 1}, {0.6, 0.8}, {1, 0}},
                    .mouth = {{0, vowel::aw}, {0.4, vowel::ah}, {1, vowel::oo}},
                    .tract = woman,
                    .breath = {{0, 0.1}, {1, 0.4}},
                    .tension = {{0, 0.7}, {1, 0.3}},
                    .vibrato = 0.6};
    return Stage()
        .play(sing(she, random))
        .play(bowed(1.2, {{0, keyPitch(76)}, {0.25, keyPitch(79)}, {1, keyPitch(55)}}, swell, random), 0, 0.5, -0.5)
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

Stereo bigBand(RandomNumbers& random) {
    Stage stage;
    const auto hit = [&](const std::vector<double>& keys, double at, double seconds) {
        for (const double key : keys) {
            const double place = random.between(-0.7, 0.7);
            stage.play(blown({.seconds = seconds,
                              .pitch = {{0, keyPitch(key)}, {0.7, keyPitch(key)}, {1, keyPitch(key - 3)}},
                              .loudness = {{0, 0.5}, {0.08, 1}, {0.7, 0.8}, {1, 0}},
                              .openness = {{0, 2500}, {0.2, 6500}, {1, 3000}},
                              .body = 1150,
                              .vibrato = 0.5,
                              .growl = 0.2},
                             random),
                       at, 0.5, place);
        }
        stage.play(crash(0.6, 5000, random), at, 0.35).play(thump(85, 0.2), at, 0.8);
    };
    hit({58, 62, 65, 68, 73}, 0, 0.2);
    hit({58, 62, 65, 68, 73}, 0.38, 0.18);
    hit({57, 61, 64, 67, 72, 76}, 0.62, 0.95);
    return stage.in(room::hall);
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
    const Voice rolled{
        .seconds = 1.3,
        .pitch = {{0, 190}, {0.3, 230}, {0.45, 390}, {0.8, 370}, {1, 200}},
        .loudness = {{0, 0.5}, {0.1, 0.8}, {0.42, 0.7}, {0.55, 1}, {0.8, 0.9}, {1, 0}},
        .mouth = {{0, consonant::r}, {0.2, consonant::r}, {0.3, vowel::ah}, {0.42, consonant::w}, {0.5, vowel::aw}},
        .tension = 0.9,
        .vibrato = 0.7};
    stage.play(fluttered(sing(rolled, random), 26, {{0, 0.85}, {0.18, 0.85}, {0.24, 0}}));
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

Voice oohLaLa() {
    return {.seconds = 1.75,
            .pitch = {{0, 330}, {0.14, 520}, {0.23, 470}, {0.32, 620}, {0.42, 600}, {0.52, 880}, {0.82, 840}, {1, 480}},
            .loudness = {{0, 0.5}, {0.1, 1}, {0.22, 0.5}, {0.3, 1}, {0.4, 0.5}, {0.5, 1}, {0.85, 0.9}, {1, 0}},
            .mouth = {{0, vowel::oo},
                      {0.19, vowel::oo},
                      {0.23, consonant::l},
                      {0.28, vowel::ah},
                      {0.36, vowel::ah},
                      {0.41, consonant::l},
                      {0.46, vowel::ah},
                      {1, vowel::ah}},
            .tract = woman,
            .tension = 0.8,
            .vibrato = 0.8};
}

Stereo oohLaLaWithAKiss(RandomNumbers& random) {
    Stage stage;
    stage.play(sing(oohLaLa(), random)).play(kiss(0.34, random), 1.72, 1.3);
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
                {"A coy hum", 101, coyHum},
                {"An asking hum", 102, askingHum},
                {"A kiss", 108, oneKiss},
                {"Mm-hm", 104, mmHm},
                {"Ooh", 105, ooh},
                {"Oh-ho", 109, ohHo},
                {"Hey", 106, hey},
                {"A purr", 107, purr},
                {"A giggle", 110, giggle},
                {"A wolf whistle", 117, wolfWhistle},
                {"Ooh la", 114, oohLa},
                {"Meow", 112, meow},
                {"A meow with claws", 119, growlingMeow},
                {"On tiptoe", 103, tiptoe},
                {"Wow", 115, wow},
                {"Three kisses", 116, threeKisses},
                {"Wah-wah", 111, wahWah},
                {"A throaty laugh", 118, throatyLaugh},
                {"Flamenco", 122, flamenco},
                {"Champagne", 121, champagne},
                {"Well, hello there", 113, wellHello},
                {"Lounge saxophone", 120, loungeSax},
                {"A swoon", 123, swoon},
                {"Big band", 126, bigBand},
                {"Hot saxophone", 124, hotSax},
                {"The diva warms up", 127, divaWarmsUp},
                {"Bravo", 125, bravo},
                {"Ooh la la, with a kiss", 128, oohLaLaWithAKiss},
                {"The tenor's high note, and applause", 129, tenor},
                {"Opera, the end of it", 130, operaFinale},
            }};
}

} // namespace quiverly::clips
