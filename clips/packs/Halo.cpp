#include "clips/PackRecipe.h"
#include "clips/instruments/Choir.h"
#include "clips/instruments/Harp.h"
#include "clips/instruments/Horn.h"
#include "clips/instruments/Impact.h"
#include "clips/instruments/Organ.h"
#include "clips/instruments/Strings.h"
#include "clips/instruments/Struck.h"
#include "clips/synthesis/Tuning.h"

namespace quiverly::clips {

namespace {

using Keys = std::vector<double>; // as keyPitch() counts them

// A choir that swells from a hummed "oo" to an open "ah".
Voice choir(double seconds) {
    return {.seconds = seconds,
            .pitch = 1,
            .loudness = {{0, 0.25}, {0.2, 1}, {0.7, 0.8}, {1, 0}},
            .mouth = {{0, vowel::oo}, {0.35, vowel::ah}, {1, vowel::aw}},
            .breath = 0.12,
            .tension = 0.5,
            .vibrato = 0.25};
}

void harpRun(Stage& stage, const Keys& keys, double at, double step, double gain, RandomNumbers& random) {
    double place = -0.6;
    for (const double key : keys) {
        stage.play(plucked(keyPitch(key), 1.3, 0.5, random), at, gain, place);
        at += step;
        place += 1.2 / static_cast<double>(keys.size());
    }
}

void ring(Stage& stage, const Body& body, const Keys& keys, double at, double step, double gain, double length) {
    double place = 0.5;
    for (const double key : keys) {
        stage.play(struck(body, keyPitch(key), 0.5, length), at, gain, place);
        at += step;
        place = -place;
    }
}

Stereo harpUp(RandomNumbers& random) {
    Stage stage;
    harpRun(stage, {60, 64, 67, 71, 72, 76, 79, 83, 84, 88, 91}, 0, 0.06, 0.7, random);
    return stage.in(room::hall);
}

// Voice upon voice joins in, the last with a bell.
Stereo gladChord(RandomNumbers& random) {
    Stage stage;
    Voice glad = choir(0.9);
    glad.loudness = {{0, 0.4}, {0.1, 1}, {0.5, 0.6}, {1, 0}};
    glad.mouth = {{0, vowel::ee}, {0.25, vowel::ae}, {1, vowel::ah}};
    glad.tension = 0.7;
    double at = 0;
    for (const double key : {60, 64, 67, 72, 76}) {
        singTogether(stage, {key}, glad, at, 0.5, random);
        at += 0.14;
    }
    ring(stage, body::bar, {84, 88, 91}, at, 0.05, 0.35, 0.5);
    return stage.in(room::cathedral);
}

Stereo oneBell(RandomNumbers&) {
    Stage stage;
    ring(stage, body::churchBell, {72}, 0, 0, 1, 0.6);
    return stage.in(room::cathedral);
}

Stereo amen(RandomNumbers& random) {
    Stage stage;
    Voice ah = choir(0.85);
    ah.mouth = {{0, vowel::ah}, {0.6, vowel::ah}, {1, consonant::m}};
    Voice men = choir(1.5);
    men.mouth = {{0, consonant::m}, {0.15, vowel::eh}, {0.5, vowel::eh}, {0.75, consonant::m}};
    singTogether(stage, {53, 57, 60, 65, 69}, ah, 0, 0.5, random);
    singTogether(stage, {48, 55, 60, 64, 67}, men, 0.75, 0.5, random);
    stage.play(piped({29, 41, 53}, 0.8, {{0, 0.5}, {0.3, 1}, {0.9, 0.7}, {1, 0}}), 0, 0.6);
    stage.play(piped({24, 36, 48}, 1.5, {{0, 0.5}, {0.3, 1}, {0.8, 0.8}, {1, 0}}), 0.75, 0.6);
    return stage.in(room::cathedral);
}

// Men hum low, a viola sighs above them, and a harp drops three notes like tears.
Stereo sadChord(RandomNumbers& random) {
    Stage stage;
    Voice humming = choir(1.7);
    humming.mouth = {{0, consonant::m}, {0.5, vowel::oo}, {1, consonant::m}};
    humming.tension = 0.3;
    singTogether(stage, {45, 52, 57}, humming, 0, 0.4, random);
    const Curve sigh{{0, keyPitch(71)},    {0.3, keyPitch(72)},  {0.38, keyPitch(71)},
                     {0.55, keyPitch(71)}, {0.63, keyPitch(69)}, {1, keyPitch(68.6)}};
    stage.play(bowed(1.7, sigh, {{0, 0.3}, {0.2, 1}, {0.45, 0.5}, {0.6, 0.9}, {1, 0}}, random), 0, 0.9, 0.3);
    harpRun(stage, {81, 76, 72}, 0.7, 0.32, 0.6, random);
    return stage.in(room::cathedral);
}

Stereo glassDrops(RandomNumbers&) {
    Stage stage;
    ring(stage, body::glass, {84, 91, 88, 95, 93, 100}, 0, 0.11, 0.7, 0.5);
    return stage.in(room::hall);
}

Stereo harpDown(RandomNumbers& random) {
    Stage stage;
    harpRun(stage, {93, 88, 86, 84, 81, 76, 74, 72, 69, 64, 62, 60, 57, 52, 50}, 0, 0.055, 0.7, random);
    return stage.in(room::hall);
}

Stereo doubtfulChord(RandomNumbers& random) {
    Stage stage;
    Voice wavering = choir(1.7);
    wavering.pitch = {
        {0, 1}, {0.35, 1}, {0.6, semitoneRatio(-1.2)}, {0.8, semitoneRatio(0.3)}, {1, semitoneRatio(-0.6)}};
    wavering.mouth = {{0, vowel::oo}, {0.4, vowel::oo}, {0.7, vowel::eh}, {1, vowel::uh}};
    singTogether(stage, {50, 56, 59, 62, 65}, wavering, 0, 0.5, random);
    return stage.in(room::hall);
}

Stereo fanfare(RandomNumbers& random) {
    Stage stage;
    const auto trumpets = [&](const Keys& keys, double at, double seconds) {
        for (const double key : keys) {
            const double detuned = key + random.between(-0.06, 0.06);
            const double place = random.between(-0.5, 0.5);
            stage.play(blown({.seconds = seconds,
                              .pitch = keyPitch(detuned),
                              .loudness = {{0, 0.4}, {0.06, 1}, {0.75, 0.8}, {1, 0}},
                              .openness = {{0, 1500}, {0.15, 5200}, {1, 2500}},
                              .body = 1200,
                              .vibrato = 0.2},
                             random),
                       at, 0.5, place);
        }
    };
    trumpets({67}, 0, 0.16);
    trumpets({67}, 0.17, 0.14);
    trumpets({67, 72}, 0.32, 0.3);
    trumpets({60, 67, 72, 76}, 0.62, 1);
    stage.play(struck(body::drum, 98, 0.5), 0.62, 0.8);
    stage.play(crash(1.2, 4500, random), 0.62, 0.2);
    return stage.in(room::hall);
}

// A turn and a run high up, then the whole organ with its pedal.
Stereo grandOrgan(RandomNumbers&) {
    Stage stage;
    const auto play = [&](const Keys& keys, double at, double seconds, double gain) {
        stage.play(piped(keys, seconds, {{0, 0.4}, {0.08, 1}, {0.8, 0.9}, {1, 0}}), at, gain);
    };
    play({69, 81}, 0, 0.09, 0.5);
    play({67, 79}, 0.09, 0.09, 0.5);
    play({69, 81}, 0.18, 0.36, 0.6);
    double at = 0.58;
    for (const double key : {79, 77, 76, 74, 73}) {
        play({key - 12, key}, at, 0.08, 0.5);
        at += 0.07;
    }
    play({38}, at, 1.2, 0.7);
    play({50, 57, 62, 66, 69, 74}, at + 0.12, 1.15, 1);
    return stage.in(room::cathedral);
}

Stereo peal(RandomNumbers& random) {
    Stage stage;
    double at = 0;
    for (const double key : {79, 76, 74, 72, 67, 76, 72, 79}) {
        stage.play(struck(body::churchBell, keyPitch(key), 0.6, 0.45), at, 0.7, random.between(-0.8, 0.8));
        at += 0.19 + random.between(-0.02, 0.02);
    }
    return stage.in(room::hall);
}

Stereo choirboy(RandomNumbers& random) {
    const double high = keyPitch(84);
    const Voice boy{.seconds = 1.7,
                    .pitch = {{0, keyPitch(77)}, {0.2, keyPitch(77)}, {0.26, high}, {0.8, high}, {1, high}},
                    .loudness = {{0, 0.35}, {0.3, 1}, {0.75, 0.7}, {1, 0}},
                    .mouth = {{0, vowel::oo}, {0.4, vowel::ah}, {1, vowel::oo}},
                    .tract = 1.3,
                    .breath = 0.1,
                    .tension = 0.3,
                    .vibrato = 0.2};
    Stage stage;
    stage.play(sing(boy, random));
    ring(stage, body::bar, {96}, 0.45, 0, 0.25, 0.8);
    return stage.in(room::cathedral);
}

Stereo dreamChord(RandomNumbers& random) {
    Stage stage;
    const Curve swell{{0, 0.3}, {0.35, 1}, {1, 0}};
    for (const double key : {53, 60, 64, 67, 71, 74}) {
        const double place = random.between(-0.7, 0.7);
        stage.play(bowed(1.7, keyPitch(key), swell, random), 0, 0.4, place);
    }
    ring(stage, body::bar, {89, 91, 95, 98, 101, 103, 107}, 0.15, 0.08, 0.3, 0.6);
    return stage.in(room::cathedral);
}

Stereo twinkle(RandomNumbers& random) {
    Stage stage;
    double at = 0;
    for (const double key : {84, 88, 91, 96, 91, 96, 100, 103, 108}) {
        stage.play(struck(body::bar, keyPitch(key), 0.6, 0.5), at, 0.6, random.between(-0.7, 0.7));
        at += 0.07;
    }
    return stage.in(room::hall);
}

Stereo gatesOpen(RandomNumbers& random) {
    Stage stage;
    Voice rising = choir(2);
    rising.pitch = {{0, semitoneRatio(-12)}, {0.12, semitoneRatio(-12)}, {0.6, 1}, {1, 1}};
    singTogether(stage, {48, 55, 64, 67, 72}, rising, 0, 0.4, random);
    harpRun(stage, {48, 52, 55, 60, 64, 67, 72, 76, 79, 84, 88, 91, 96}, 0.35, 0.06, 0.4, random);
    ring(stage, body::churchBell, {84}, 1.25, 0, 0.5, 0.5);
    stage.play(crash(1, 6000, random), 1.25, 0.12);
    return stage.in(room::cathedral);
}

Stereo haloSlips(RandomNumbers& random) {
    Stage stage;
    singTogether(stage, {60, 64, 67, 72}, choir(0.75), 0, 0.5, random);
    const Curve wobble{{0, keyPitch(88)}, {0.3, keyPitch(87)}, {0.6, keyPitch(88.6)}, {1, keyPitch(84)}};
    stage.play(bowed(0.5, wobble, {{0, 0.4}, {0.3, 1}, {1, 0}}, random), 0.7, 0.7);
    double at = 1.15;
    for (const double gain : {1.0, 0.7, 0.5, 0.35, 0.25}) {
        stage.play(struck(body::pan, 1150, 0.7, 0.4), at, 2.2 * gain, 0.3);
        at += 0.04 + 0.17 * gain;
    }
    return stage.in(room::hall);
}

} // namespace

PackRecipe haloRecipe() {
    return {SoundPack::halo,
            {
                {"A harp runs up", 31, harpUp},
                {"A glad chord", 32, gladChord},
                {"One bell", 33, oneBell},
                {"Amen", 34, amen},
                {"A sad chord", 35, sadChord},
                {"Drops of glass", 36, glassDrops},
                {"A harp runs down", 37, harpDown},
                {"A doubtful chord", 38, doubtfulChord},
                {"Fanfare", 39, fanfare},
                {"A grand chord", 40, grandOrgan},
                {"A peal of bells", 41, peal},
                {"A choirboy reaches for it", 42, choirboy},
                {"A dreaming chord", 43, dreamChord},
                {"Twinkle", 44, twinkle},
                {"The gates open", 45, gatesOpen},
                {"A halo slips", 46, haloSlips},
            }};
}

} // namespace quiverly::clips
