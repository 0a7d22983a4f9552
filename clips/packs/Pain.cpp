#include "clips/PackRecipe.h"
#include "clips/instruments/Creature.h"
#include "clips/instruments/Harp.h"
#include "clips/instruments/Horn.h"
#include "clips/instruments/Impact.h"
#include "clips/instruments/Lips.h"
#include "clips/instruments/Speech.h"
#include "clips/instruments/Struck.h"
#include "clips/instruments/Voice.h"
#include "clips/synthesis/Filter.h"
#include "clips/synthesis/Oscillator.h"
#include "clips/synthesis/Stage.h"
#include "clips/synthesis/Tuning.h"
#include "clips/synthesis/Vocoder.h"

namespace quiverly::clips {

namespace {

Stereo ow(RandomNumbers& random) {
    const Voice man{.seconds = 0.62,
                    .pitch = {{0, 260}, {0.2, 400}, {1, 190}},
                    .loudness = {{0, 0.3}, {0.12, 1}, {0.6, 0.7}, {1, 0}},
                    .mouth = {{0, vowel::ah}, {0.45, vowel::ah}, {0.9, vowel::oo}},
                    .breath = {{0, 0.4}, {0.15, 0.08}, {1, 0.3}},
                    .tension = {{0, 0.9}, {1, 0.4}}};
    return Stage().play(smack(1800, 0.08, random), 0, 0.5).play(sing(man, random), 0.02).in(room::parlour);
}

Stereo bonk(RandomNumbers& random) {
    return Stage()
        .play(struck(body::wood, 420, 0.7))
        .play(thump(150, 0.18), 0, 0.8)
        .play(smack(2600, 0.05, random), 0, 0.4)
        .play(boing(330, 0.75), 0.06, 0.6)
        .in(room::parlour);
}

Stereo yowl(RandomNumbers& random) {
    const Voice cat{.seconds = 1.25,
                    .pitch = {{0, 300}, {0.18, 660}, {0.5, 560}, {1, 210}},
                    .loudness = {{0, 0.4}, {0.1, 1}, {0.7, 0.8}, {1, 0}},
                    .mouth = {{0, consonant::y}, {0.12, vowel::ae}, {0.5, vowel::ah}, {1, vowel::oo}},
                    .tract = 1.25,
                    .tension = {{0, 0.5}, {0.2, 1}, {1, 0.5}},
                    .vibrato = 0.7,
                    .vibratoRate = 7,
                    .roughness = 0.15};
    return Stage().play(sing(cat, random)).in(room::parlour);
}

Stereo fryingPan(RandomNumbers& random) {
    Stage stage;
    stage.play(struck(body::pan, 370, 0.9, 1.2)).play(smack(3000, 0.05, random), 0, 0.6).play(thump(120, 0.15), 0, 0.6);
    const Voice dazed{.seconds = 0.5,
                      .pitch = {{0, 150}, {0.3, 170}, {1, 105}},
                      .loudness = {{0, 0.3}, {0.2, 1}, {1, 0}},
                      .mouth = {{0, vowel::uh}, {1, vowel::er}},
                      .breath = 0.2,
                      .roughness = 0.3};
    stage.play(sing(dazed, random), 0.16, 0.7);
    for (int bird = 0; bird < 5; ++bird) {
        const double top = random.between(3200, 4200);
        const Curve tweet{{0, top}, {0.5, 0.7 * top}, {1, 1.1 * top}};
        stage.play(whistle(0.09, tweet, {{0, 0.4}, {0.5, 1}, {1, 0}}, random), 0.5 + 0.14 * bird, 0.22,
                   bird % 2 == 0 ? -0.7 : 0.7);
    }
    return stage.in(room::parlour);
}

tl::expected<Stereo, std::string> offendedGentleman(RandomNumbers& random) {
    const Voice harrumph{.seconds = 0.34,
                         .pitch = {{0, 120}, {0.4, 150}, {1, 95}},
                         .loudness = {{0, 0.4}, {0.3, 1}, {1, 0}},
                         .mouth = {{0, vowel::er}, {0.6, vowel::uh}, {1, consonant::m}},
                         .breath = {{0, 0.6}, {0.3, 0.1}, {1, 0.3}},
                         .roughness = 0.5};
    const auto words = spoken("How dare you, sir!", {.wordsPerMinute = 190, .pitch = 42, .range = 190});
    if (!words) return tl::unexpected(words.error());
    return Stage().play(sing(harrumph, random), 0, 0.8).play(*words, 0.26).in(room::parlour);
}

tl::expected<Stereo, std::string> woundedRobot(RandomNumbers& random) {
    const auto words = spoken("Ouch! System error.", {.wordsPerMinute = 190, .pitch = 35, .range = 40});
    if (!words) return tl::unexpected(words.error());
    const double seconds = static_cast<double>(words->size()) / sampleRate;
    Signal carrier = saw(seconds, {{0, 160}, {0.4, 160}, {0.45, 120}, {0.8, 120}, {1, 70}});
    add(carrier, whiteNoise(seconds, random), 0, 0.15);
    Stage stage;
    stage.play(vocoded(*words, carrier));
    stage.play(rattled(0.4, {{0, 90}, {1, 25}}, 4200, {{0, 1}, {1, 0.2}}, random), 0.02, 0.2, 0.5);
    stage.play(faded(sine(0.5, {{0, 900}, {1, 60}}), {{0, 0.4}, {0.2, 1}, {1, 0}}), seconds - 0.3, 0.2);
    return stage.in(room::parlour);
}

Stereo groan(RandomNumbers& random) {
    const Voice man{.seconds = 1.5,
                    .pitch = {{0, 128}, {0.15, 145}, {0.6, 104}, {1, 66}},
                    .loudness = {{0, 0.4}, {0.15, 1}, {0.7, 0.6}, {1, 0}},
                    .mouth = {{0, vowel::uh}, {0.5, vowel::aw}, {1, vowel::oo}},
                    .tract = 0.92,
                    .breath = {{0, 0.15}, {1, 0.4}},
                    .tension = {{0, 0.6}, {1, 0.2}},
                    .roughness = 0.55};
    return Stage().play(sing(man, random)).in(room::parlour);
}

Stereo squeakyToy(RandomNumbers& random) {
    return Stage()
        .play(squeak(0.2, {{0, 620}, {0.4, 980}, {1, 900}}, random))
        .play(squeak(0.34, {{0, 960}, {0.3, 720}, {1, 380}}, random), 0.2, 0.8)
        .in(room::parlour);
}

Stereo slideAndSplat(RandomNumbers& random) {
    Stage stage;
    stage.play(whistle(0.75, {{0, 1900}, {1, 420}}, {{0, 0.7}, {0.1, 1}, {0.95, 0.9}, {1, 0}}, random), 0, 0.6);
    stage.play(thump(75, 0.35), 0.76).play(smack(700, 0.25, random), 0.76, 0.9);
    stage.play(slurp(0.22, {{0, 900}, {1, 350}}, random), 0.84, 0.5);
    return stage.in(room::parlour);
}

Stereo hoppingOnOneFoot(RandomNumbers& random) {
    Stage stage;
    double at = 0;
    for (const double key : {64, 66, 63, 67, 62}) {
        const double hertz = keyPitch(key);
        const Voice yelp{.seconds = 0.24,
                         .pitch = {{0, 0.8 * hertz}, {0.3, 1.25 * hertz}, {1, 0.75 * hertz}},
                         .loudness = {{0, 0.4}, {0.25, 1}, {0.7, 0.7}, {1, 0}},
                         .mouth = {{0, vowel::ah}, {0.5, vowel::aw}, {1, consonant::w}},
                         .tract = 1.05,
                         .tension = 0.8};
        stage.play(sing(yelp, random), at).play(thump(95, 0.12), at + 0.18, 0.5);
        at += 0.255;
    }
    return stage.in(room::parlour);
}

Stereo fallingOffACliff(RandomNumbers& random) {
    const Voice faller{.seconds = 1.8,
                       .pitch = {{0, 420}, {0.08, 700}, {0.3, 660}, {1, 250}},
                       .loudness = {{0, 0.5}, {0.06, 1}, {0.3, 0.8}, {0.9, 0.06}, {1, 0}},
                       .mouth = {{0, vowel::ah}, {0.6, vowel::ah}, {1, vowel::uh}},
                       .tension = {{0, 1}, {1, 0.5}},
                       .vibrato = 0.5,
                       .vibratoRate = 6.5};
    return Stage()
        .play(sing(faller, random))
        .play(thump(60, 0.3), 1.95, 1.3)
        .play(smack(500, 0.2, random), 1.95, 0.7)
        .in(room::hall);
}

Stereo stubbedToe(RandomNumbers& random) {
    const Voice relief{.seconds = 0.75,
                       .pitch = {{0, 240}, {0.25, 330}, {1, 150}},
                       .loudness = {{0, 0.3}, {0.2, 1}, {1, 0}},
                       .mouth = {{0, vowel::aw}, {0.5, vowel::oo}, {1, consonant::w}},
                       .breath = {{0, 0.1}, {1, 0.5}},
                       .tension = 0.6};
    return Stage()
        .play(struck(body::wood, 260, 0.3), 0, 0.9)
        .play(hissed(0.42, {{0, 5200}, {1, 7600}}, {{0, 0.4}, {0.6, 1}, {0.95, 0.8}, {1, 0}}, random), 0.06, 0.45)
        .play(sing(relief, random), 0.5)
        .in(room::parlour);
}

Stereo pianoDrop(RandomNumbers& random) {
    Stage stage;
    stage.play(thump(65, 0.4)).play(smack(900, 0.2, random), 0, 0.8).play(struck(body::wood, 150, 0.8), 0, 0.9);
    for (const double key : {33, 40, 41, 47, 52, 53, 58, 63, 64, 70, 75}) {
        const double at = random.between(0, 0.05);
        const double place = random.between(-0.8, 0.8);
        stage.play(plucked(keyPitch(key), 1.5, 0.9, random), at, 0.55, place);
    }
    for (int splinter = 0; splinter < 9; ++splinter) {
        const double hertz = random.between(500, 1100);
        const double at = random.between(0.25, 0.95);
        const double place = random.between(-1, 1);
        stage.play(struck(body::wood, hertz, 0.8), at, 0.9, place);
    }
    stage.play(plucked(keyPitch(84), 0.8, 0.9, random), 1.12, 1.6, 0.4);
    return stage.in(room::parlour);
}

// A wail, three sobs for air, and a longer wail that breaks.
Stereo crybaby(RandomNumbers& random) {
    const auto cry = [&](double seconds, const Curve& pitch, const Curve& loudness) {
        return sing({.seconds = seconds,
                     .pitch = pitch,
                     .loudness = loudness,
                     .mouth = {{0, consonant::w}, {0.2, vowel::ae}, {0.8, vowel::ae}, {1, vowel::uh}},
                     .tract = 1.5,
                     .tension = 0.95,
                     .vibrato = 0.6,
                     .vibratoRate = 9,
                     .roughness = 0.12},
                    random);
    };
    Stage stage;
    stage.play(cry(0.36, {{0, 380}, {0.3, 540}, {1, 350}}, {{0, 0.4}, {0.2, 1}, {0.7, 0.7}, {1, 0}}));
    for (int sob = 0; sob < 3; ++sob) {
        const double top = 520 * semitoneRatio(2 * sob);
        const Voice gasp{.seconds = 0.07,
                         .pitch = {{0, 0.7 * top}, {1, top}},
                         .loudness = {{0, 0.3}, {0.7, 1}, {1, 0}},
                         .mouth = {{0, vowel::uh}, {1, vowel::ih}},
                         .tract = 1.5,
                         .breath = 0.75};
        stage.play(sing(gasp, random), 0.38 + 0.1 * sob, 0.4);
    }
    const Curve breaking{{0, 420}, {0.2, 640}, {0.5, 600}, {0.54, 860}, {0.66, 820}, {0.7, 560}, {1, 300}};
    stage.play(cry(0.66, breaking, {{0, 0.4}, {0.15, 1}, {0.7, 0.9}, {1, 0}}), 0.69);
    return stage.in(room::parlour);
}

Stereo circuitsFail(RandomNumbers& random) {
    Stage stage;
    double at = 0;
    for (const double key : {84, 79, 76, 70, 63, 54}) {
        stage.play(fluttered(saturated(sine(0.13, keyPitch(key)), 3), 45, 0.7), at, 0.6, 2 * random.between(-0.3, 0.3));
        at += 0.11;
    }
    stage.play(rattled(0.5, {{0, 160}, {1, 30}}, 5200, {{0, 1}, {1, 0.1}}, random), 0.1, 0.5, -0.4);
    stage.play(faded(lowPassed(saw(0.7, {{0, 180}, {1, 28}}), {{0, 2500}, {1, 300}}), {{0, 0.5}, {0.2, 1}, {1, 0}}),
               0.55, 0.6);
    return stage.in(room::parlour);
}

Stereo eep(RandomNumbers& random) {
    const Voice mouse{.seconds = 0.3,
                      .pitch = {{0, 620}, {0.3, 1050}, {1, 880}},
                      .loudness = {{0, 0.4}, {0.2, 1}, {0.7, 0.7}, {1, 0}},
                      .mouth = {{0, vowel::ee}},
                      .tract = 1.5,
                      .tension = 0.7};
    return Stage().play(sing(mouse, random)).in(room::parlour);
}

Stereo troddenHound(RandomNumbers& random) {
    Stage stage;
    for (int yip = 0; yip < 3; ++yip) {
        const double top = 950 - 90 * yip;
        const Voice dog{.seconds = 0.17,
                        .pitch = {{0, 0.6 * top}, {0.25, top}, {1, 0.45 * top}},
                        .loudness = {{0, 0.5}, {0.2, 1}, {1, 0}},
                        .mouth = {{0, vowel::ae}, {1, vowel::uh}},
                        .tract = 1.2,
                        .tension = 1};
        stage.play(sing(dog, random), 0.2 * yip, 1 - 0.15 * yip);
    }
    const Voice whimper{.seconds = 0.7,
                        .pitch = {{0, 520}, {0.3, 640}, {1, 400}},
                        .loudness = {{0, 0.2}, {0.3, 0.7}, {1, 0}},
                        .mouth = {{0, consonant::m}, {1, vowel::oo}},
                        .tract = 1.2,
                        .breath = 0.3,
                        .vibrato = 0.9,
                        .vibratoRate = 11};
    return stage.play(sing(whimper, random), 0.66, 0.6).in(room::parlour);
}

Stereo sadTrombone(RandomNumbers& random) {
    Stage stage;
    stage.play(thump(90, 0.2), 0, 0.8).play(smack(1500, 0.08, random), 0, 0.5);
    double at = 0.12;
    for (const double key : {58, 57, 56}) {
        stage.play(blown({.seconds = 0.26,
                          .pitch = keyPitch(key),
                          .loudness = {{0, 0.2}, {0.15, 1}, {0.8, 0.8}, {1, 0}},
                          .openness = {{0, 700}, {0.4, 2600}, {1, 800}},
                          .body = 520},
                         random),
                   at, 0.8);
        at += 0.28;
    }
    const Curve droop{{0, keyPitch(55)}, {0.5, keyPitch(55)}, {1, keyPitch(52.5)}};
    stage.play(blown({.seconds = 0.9,
                      .pitch = droop,
                      .loudness = {{0, 0.2}, {0.08, 1}, {0.7, 0.8}, {1, 0}},
                      .openness = {{0, 700}, {0.2, 2800}, {0.5, 900}, {0.7, 2400}, {1, 600}},
                      .body = 520,
                      .vibrato = 0.8},
                     random),
               at);
    return stage.in(room::parlour);
}

} // namespace

PackRecipe painRecipe() {
    return {SoundPack::pain,
            {
                {"Ow", 11, ow},
                {"Bonk on the head", 12, bonk},
                {"A yowl", 13, yowl},
                {"A frying pan, and birds", 14, fryingPan},
                {"An offended gentleman", 15, offendedGentleman},
                {"A wounded robot", 16, woundedRobot},
                {"A long groan", 17, groan},
                {"A squeaky toy, trodden on", 18, squeakyToy},
                {"Slide and splat", 19, slideAndSplat},
                {"Hopping on one foot", 20, hoppingOnOneFoot},
                {"Falling off a cliff", 21, fallingOffACliff},
                {"A stubbed toe", 22, stubbedToe},
                {"A piano, dropped", 23, pianoDrop},
                {"A crybaby", 24, crybaby},
                {"Circuits fail", 25, circuitsFail},
                {"Eep", 26, eep},
                {"A hound, trodden on", 27, troddenHound},
                {"Sad trombone", 28, sadTrombone},
            }};
}

} // namespace quiverly::clips
