#include "clips/PackRecipe.h"
#include "clips/instruments/Creature.h"
#include "clips/instruments/Impact.h"
#include "clips/instruments/Lips.h"
#include "clips/instruments/Struck.h"
#include "clips/instruments/Voice.h"
#include "clips/synthesis/Filter.h"
#include "clips/synthesis/Oscillator.h"
#include "clips/synthesis/Stage.h"
#include "clips/synthesis/Tuning.h"

namespace quiverly::clips {

namespace {

// A monster's throat: everything rough, wet and low.
Signal growl(double seconds, const Curve& pitch, double tract, const Curve& loudness, RandomNumbers& random) {
    const Voice throat{.seconds = seconds,
                       .pitch = pitch,
                       .loudness = loudness,
                       .mouth = {{0, vowel::oo}, {0.3, vowel::ah}, {1, vowel::aw}},
                       .tract = tract,
                       .breath = 0.3,
                       .tension = 0.95,
                       .roughness = 1};
    Signal rough = fluttered(sing(throat, random), {{0, 24}, {0.5, 38}, {1, 18}}, 0.55);
    add(rough, highPassed(rough, 900), 0, 1.5); // small loudspeakers have no bass to growl with
    return normalised(saturated(rough, 3));
}

void chirp(Stage& stage, double at, double top, double seconds, double gain, RandomNumbers& random) {
    const Curve bend{{0, 0.8 * top}, {0.35, top}, {1, 0.45 * top}};
    const double place = random.between(-0.4, 0.4);
    stage.play(whistle(seconds, bend, {{0, 0.5}, {0.2, 1}, {1, 0}}, random), at, gain, place);
}

Stereo tongueFlick(RandomNumbers& random) {
    return Stage()
        .play(slurp(0.13, {{0, 500}, {0.6, 1100}, {1, 700}}, random))
        .play(thump(300, 0.07), 0.1, 0.7)
        .in(room::parlour);
}

Stereo blink(RandomNumbers& random) {
    Stage stage;
    for (const double at : {0.0, 0.17}) {
        stage.play(thump(420, 0.05), at, 0.8).play(slurp(0.07, {{0, 900}, {1, 1500}}, random), at + 0.01, 0.5);
    }
    return stage.in(room::parlour);
}

Stereo hatchling(RandomNumbers& random) {
    Stage stage;
    chirp(stage, 0, 2100, 0.12, 1, random);
    chirp(stage, 0.2, 2500, 0.15, 1, random);
    return stage.in(room::parlour);
}

Stereo lick(RandomNumbers& random) {
    return Stage()
        .play(slurp(0.3, {{0, 380}, {0.5, 1000}, {1, 1900}}, random))
        .play(smack(1500, 0.06, random), 0.3, 0.6)
        .in(room::parlour);
}

Stereo crunchACricket(RandomNumbers& random) {
    Stage stage;
    chirp(stage, 0, 4200, 0.06, 0.4, random);
    chirp(stage, 0.08, 4300, 0.06, 0.4, random);
    for (const double at : {0.2, 0.33, 0.45}) {
        stage.play(rattled(0.08, 320, 2600, {{0, 1}, {1, 0}}, random), at, 0.9).play(thump(160, 0.07), at, 0.5);
    }
    return stage.in(room::parlour);
}

Stereo gecko(RandomNumbers& random) {
    Stage stage;
    for (const double at : {0.0, 0.36}) {
        stage.play(croak(0.12, 160, {{0, 900}, {1, 1300}}, random), at);
        stage.play(croak(0.17, {{0, 140}, {1, 90}}, {{0, 1100}, {1, 620}}, random), at + 0.13);
    }
    return stage.in(room::parlour);
}

Stereo chirps(RandomNumbers& random) {
    Stage stage;
    double at = 0;
    for (int number = 0; number < 7; ++number) {
        const double top = random.between(2300, 3600);
        chirp(stage, at, top, 0.085, 1, random);
        at += 0.115 - 0.007 * number;
    }
    return stage.in(room::parlour);
}

Stereo scuttle(RandomNumbers& random) {
    Stage stage;
    double at = 0;
    for (int step = 0; step < 9; ++step) {
        const double hertz = random.between(420, 700);
        const double gain = random.between(0.5, 1);
        const double place = 0.2 * step - 0.8;
        stage.play(struck(body::wood, hertz, 0.5), at, gain, place);
        stage.play(smack(3800, 0.04, random), at, 0.25, place);
        at += 0.055;
    }
    return stage.play(hissed(0.2, 3500, {{0, 0.3}, {0.4, 1}, {1, 0}}, random), at, 0.4, 0.9).in(room::parlour);
}

Stereo croakOnce(RandomNumbers& random) {
    return Stage().play(croak(0.55, {{0, 70}, {1, 34}}, {{0, 520}, {0.4, 640}, {1, 430}}, random)).in(room::parlour);
}

Stereo shortHiss(RandomNumbers& random) {
    const Curve envelope{{0, 0.5}, {0.12, 1}, {0.5, 0.5}, {1, 0}};
    return Stage().play(hissed(0.75, {{0, 3800}, {0.3, 5200}, {1, 3000}}, envelope, random)).in(room::parlour);
}

Stereo tailRattle(RandomNumbers& random) {
    const Curve swell{{0, 0.35}, {0.5, 1}, {0.85, 0.9}, {1, 0}};
    return Stage()
        .play(rattled(0.95, {{0, 40}, {0.5, 85}, {1, 70}}, 4200, swell, random), 0, 1, -0.3)
        .play(rattled(0.95, {{0, 34}, {0.5, 74}, {1, 60}}, 3100, swell, random), 0, 0.8, 0.3)
        .in(room::parlour);
}

Stereo bullfrog(RandomNumbers& random) {
    Stage stage;
    stage.play(croak(0.32, {{0, 88}, {1, 70}}, {{0, 300}, {1, 260}}, random));
    stage.play(croak(0.28, {{0, 96}, {1, 80}}, {{0, 330}, {0.5, 420}, {1, 300}}, random), 0.34);
    stage.play(croak(0.5, {{0, 84}, {1, 48}}, {{0, 300}, {0.3, 480}, {1, 240}}, random), 0.64);
    return stage.in(room::parlour);
}

// Ribs that snap open one after the other, ever faster; the skin between them flaps, and the throat spits.
Stereo frill(RandomNumbers& random) {
    Stage stage;
    double at = 0;
    for (int rib = 0; rib < 7; ++rib) {
        stage.play(struck(body::wood, 240 * semitoneRatio(2.5 * rib), 0.6), at, 0.8, 0.9 - 0.3 * rib);
        stage.play(smack(700 * semitoneRatio(2 * rib), 0.05, random), at, 0.6, 0.3 * rib - 0.9);
        at += 0.075 - 0.008 * rib;
    }
    Signal skin = lowPassed(whiteNoise(0.5, random), {{0, 1600}, {1, 500}});
    skin = fluttered(std::move(skin), {{0, 34}, {1, 15}}, 0.95);
    stage.play(normalised(faded(std::move(skin), {{0, 1}, {0.5, 0.5}, {1, 0}})), at, 0.7);
    const Curve spit{{0, 1}, {0.3, 0.5}, {1, 0}};
    stage.play(growl(0.55, {{0, 150}, {0.3, 105}, {1, 80}}, 0.9, spit, random), at + 0.08, 0.8);
    stage.play(hissed(0.6, {{0, 6500}, {0.4, 4300}, {1, 2600}}, spit, random), at + 0.08, 0.5);
    return stage.in(room::parlour);
}

Stereo lowGrowl(RandomNumbers& random) {
    const Curve envelope{{0, 0.4}, {0.3, 1}, {0.8, 0.8}, {1, 0}};
    return Stage().play(growl(1.1, {{0, 62}, {0.5, 78}, {1, 55}}, 0.75, envelope, random)).in(room::parlour);
}

Stereo snarl(RandomNumbers& random) {
    const Curve envelope{{0, 0.4}, {0.35, 1}, {0.8, 0.8}, {1, 0}};
    return Stage()
        .play(growl(1.15, {{0, 90}, {0.4, 190}, {1, 85}}, 0.9, envelope, random))
        .play(hissed(1.2, {{0, 2600}, {0.5, 5200}, {1, 3000}}, envelope, random), 0.05, 0.45)
        .in(room::parlour);
}

Stereo bellow(RandomNumbers& random) {
    const Curve envelope{{0, 0.4}, {0.25, 1}, {0.75, 0.9}, {1, 0}};
    return Stage()
        .play(growl(1.35, {{0, 48}, {0.35, 80}, {1, 42}}, 0.55, envelope, random))
        .play(croak(1.35, {{0, 30}, {0.4, 46}, {1, 24}}, {{0, 210}, {0.4, 360}, {1, 180}}, random), 0, 0.7)
        .play(hissed(1.3, {{0, 2400}, {1, 1500}}, envelope, random), 0, 0.4)
        .in(room::cave);
}

// A cry that is half a bird's, half a saw's.
Signal screech(double seconds, double top, RandomNumbers& random) {
    const Voice raptor{.seconds = seconds,
                       .pitch = {{0, 0.45 * top}, {0.15, top}, {0.6, 0.85 * top}, {1, 0.4 * top}},
                       .loudness = {{0, 0.4}, {0.12, 1}, {0.7, 0.9}, {1, 0}},
                       .mouth = {{0, vowel::ae}, {0.3, vowel::ee}, {1, vowel::ae}},
                       .tract = 1.1,
                       .breath = 0.25,
                       .tension = 1,
                       .vibrato = 1.2,
                       .vibratoRate = 17,
                       .roughness = 0.6};
    return normalised(saturated(sing(raptor, random), 2));
}

Stereo raptor(RandomNumbers& random) {
    const Curve envelope{{0, 0.4}, {0.2, 1}, {0.8, 0.7}, {1, 0}};
    return Stage()
        .play(screech(1.15, 980, random))
        .play(growl(1.2, {{0, 110}, {0.3, 240}, {1, 90}}, 0.85, envelope, random), 0, 0.5)
        .in(room::hall);
}

// A breath is drawn, the fire catches with a dull blow, blazes, and dies down crackling.
Stereo fireBreath(RandomNumbers& random) {
    const double caught = 0.5;
    const Curve blaze{{0, 0.4}, {0.12, 1}, {0.6, 0.8}, {0.8, 0.35}, {1, 0}};
    Stage stage;
    stage.play(hissed(caught, {{0, 600}, {1, 2600}}, {{0, 0.25}, {0.85, 1}, {1, 0}}, random), 0, 0.3);
    stage.play(thump(58, 0.4), caught, 1.3).play(smack(480, 0.3, random), caught, 0.9);
    for (const double side : {-0.7, 0.7}) {
        Signal fire = lowPassed(whiteNoise(1.75, random), {{0, 500}, {0.15, 7000}, {0.6, 3800}, {1, 600}});
        add(fire, lowPassed(fire, 220, 2), 0, 2.5); // the rumble of a big fire
        fire = fluttered(std::move(fire), {{0, 9}, {0.3, 19 + 3 * side}, {1, 7}}, 0.55);
        stage.play(normalised(faded(std::move(fire), blaze)), caught, 0.8, side);
        stage.play(rattled(1.75, {{0, 8}, {0.5, 26}, {1, 14}}, 3100, {{0, 0.2}, {0.5, 1}, {1, 0.4}}, random), caught,
                   0.4, -side);
    }
    return stage.in(room::cave);
}

// A roar in two surges, the second the deeper.
Stereo roar(RandomNumbers& random) {
    const Curve envelope{{0, 0.5}, {0.12, 1}, {0.36, 0.8}, {0.47, 0.3}, {0.6, 1}, {0.8, 0.8}, {1, 0}};
    return Stage()
        .play(growl(1.9, {{0, 80}, {0.2, 230}, {0.44, 110}, {0.6, 170}, {1, 50}}, 0.6, envelope, random))
        .play(growl(1.9, {{0, 120}, {0.2, 345}, {0.44, 165}, {0.6, 255}, {1, 75}}, 0.8, envelope, random), 0.02, 0.6,
              0.5)
        .play(hissed(1.9, {{0, 1500}, {0.2, 3800}, {1, 1100}}, envelope, random), 0, 0.4, -0.4)
        .in(room::cave);
}

Stereo monster(RandomNumbers& random) {
    Stage stage;
    for (const double at : {0.0, 0.42}) {
        stage.play(thump(55, 0.4), at, 2)
            .play(smack(300, 0.25, random), at, 1.2)
            .play(crash(0.5, 2500, random), at, 0.7);
    }
    const Curve envelope{{0, 0.5}, {0.12, 1}, {0.8, 0.95}, {1, 0}};
    stage.play(growl(2.2, {{0, 70}, {0.2, 230}, {0.5, 180}, {0.75, 220}, {1, 45}}, 0.55, envelope, random), 0.6, 1.2);
    stage.play(growl(2.2, {{0, 110}, {0.2, 380}, {0.5, 280}, {0.75, 350}, {1, 70}}, 0.8, envelope, random), 0.62, 0.8,
               0.6);
    stage.play(screech(2, 1150, random), 0.68, 0.6, -0.5);
    stage.play(hissed(2.2, {{0, 1800}, {0.3, 5000}, {1, 1500}}, envelope, random), 0.6, 0.6);
    return stage.in(room::cave);
}

} // namespace

PackRecipe lizardRecipe() {
    return {SoundPack::lizard,
            {
                {"A tongue flicks", 51, tongueFlick},
                {"A hatchling", 53, hatchling},
                {"Two slow blinks", 52, blink},
                {"A lick", 54, lick},
                {"Chirps", 57, chirps},
                {"A cricket, crunched", 55, crunchACricket},
                {"A croak", 56, croakOnce},
                {"Scuttling off", 59, scuttle},
                {"A short hiss", 60, shortHiss},
                {"A gecko says its name", 58, gecko},
                {"A low growl", 64, lowGrowl},
                {"A frill snaps open", 63, frill},
                {"A tail rattles", 61, tailRattle},
                {"A bullfrog", 62, bullfrog},
                {"A snarl", 65, snarl},
                {"A raptor", 66, raptor},
                {"A bellow from the swamp", 67, bellow},
                {"A roar", 68, roar},
                {"Breathing fire", 69, fireBreath},
                {"The monster comes", 70, monster},
            }};
}

} // namespace quiverly::clips
