#include "clips/PackRecipe.h"
#include "clips/instruments/Creature.h"
#include "clips/instruments/Impact.h"
#include "clips/instruments/Struck.h"
#include "clips/synthesis/Filter.h"
#include "clips/synthesis/Oscillator.h"
#include "clips/synthesis/Stage.h"
#include "clips/synthesis/Tuning.h"

namespace quiverly::clips {

namespace {

// Growls: body is the lowest resonance in hertz, roughness 0 to 1.
Signal growl(double seconds, const Curve& beats, double body, double roughness, const Curve& loudness,
             RandomNumbers& random) {
    const Curve gape{{0, 0.8}, {0.3, 1.25}, {0.7, 1.1}, {1, 0.75}};
    return growled(
        {.seconds = seconds, .beats = beats, .gape = gape, .body = body, .loudness = loudness, .roughness = roughness},
        random);
}

void chirp(Stage& stage, double at, double top, double seconds, double roughness, RandomNumbers& random) {
    const Curve bend{{0, 0.9 * top}, {0.3, top}, {1, 0.82 * top}};
    const double place = random.between(-0.4, 0.4);
    stage.play(chirped(seconds, bend, roughness, random), at, 1, place);
}

Stereo hatchling(RandomNumbers& random) {
    Stage stage;
    chirp(stage, 0, 1700, 0.13, 0.05, random);
    chirp(stage, 0.17, 2000, 0.16, 0.05, random);
    return stage.in(room::parlour);
}

// A tongue that tastes the air: two puffs through a narrow mouth.
Stereo tongueFlick(RandomNumbers& random) {
    const Curve puff{{0, 0.5}, {0.15, 1}, {0.5, 0.5}, {1, 0}};
    return Stage()
        .play(hissed(0.12, {{0, 2600}, {1, 3900}}, puff, random))
        .play(hissed(0.2, {{0, 3000}, {0.3, 4800}, {1, 2400}}, puff, random), 0.15)
        .play(chirped(0.1, {{0, 1100}, {1, 700}}, 0.2, random), 0.16, 0.35)
        .in(room::parlour);
}

Stereo smallCroak(RandomNumbers& random) {
    return Stage()
        .play(croak(0.2, {{0, 105}, {1, 92}}, {{0, 1250}, {1, 980}}, random))
        .play(croak(0.14, {{0, 112}, {1, 98}}, {{0, 1350}, {1, 1150}}, random), 0.22, 0.7)
        .in(room::parlour);
}

Stereo lick(RandomNumbers& random) {
    const Curve lap{{0, 0.4}, {0.5, 1}, {1, 0}};
    return Stage()
        .play(hissed(0.16, {{0, 700}, {1, 2100}}, lap, random), 0, 0.8)
        .play(hissed(0.18, {{0, 800}, {1, 2600}}, lap, random), 0.17, 0.8)
        .play(croak(0.18, {{0, 98}, {1, 84}}, {{0, 640}, {1, 560}}, random), 0.36)
        .in(room::parlour);
}

Stereo crunchACricket(RandomNumbers& random) {
    Stage stage;
    for (const double at : {0.0, 0.12}) {
        stage.play(rattled(0.08, 320, 2600, {{0, 1}, {1, 0}}, random), at, 0.7).play(thump(160, 0.07), at, 0.3);
    }
    stage.play(growl(0.4, {{0, 56}, {1, 50}}, 210, 0.1, {{0, 0.5}, {0.25, 1}, {1, 0}}, random), 0.2);
    return stage.in(room::parlour);
}

Stereo gecko(RandomNumbers& random) {
    Stage stage;
    for (const double at : {0.0, 0.38}) {
        stage.play(chirped(0.11, {{0, 900}, {1, 1500}}, 0.4, random), at, 0.8);
        stage.play(croak(0.2, {{0, 75}, {1, 48}}, {{0, 1250}, {1, 800}}, random), at + 0.12);
    }
    return stage.in(room::parlour);
}

Stereo chirps(RandomNumbers& random) {
    Stage stage;
    double at = 0;
    for (int number = 0; number < 5; ++number) {
        const double top = random.between(1500, 2600);
        chirp(stage, at, top, 0.1, 0.15, random);
        at += 0.125 - 0.008 * number;
    }
    return stage.in(room::parlour);
}

// Claws on wood, and the hiss of an animal that wants to be let alone.
Stereo scuttle(RandomNumbers& random) {
    Stage stage;
    const Curve warning{{0, 0.4}, {0.2, 1}, {0.6, 0.6}, {1, 0}};
    stage.play(hissed(0.5, {{0, 2400}, {0.3, 3800}, {1, 2600}}, warning, random), 0, 0.9);
    stage.play(growl(0.5, {{0, 34}, {1, 28}}, 240, 0.3, warning, random), 0, 0.6);
    double at = 0.22;
    for (int step = 0; step < 7; ++step) {
        const double hertz = random.between(420, 700);
        const double gain = random.between(0.25, 0.5);
        const double place = 0.25 * step - 0.8;
        stage.play(struck(body::wood, hertz, 0.5), at, gain, place);
        stage.play(smack(3800, 0.04, random), at, 0.2, place);
        at += 0.055;
    }
    return stage.in(room::parlour);
}

Stereo croakOnce(RandomNumbers& random) {
    return Stage().play(croak(0.5, {{0, 96}, {1, 44}}, {{0, 880}, {0.4, 1050}, {1, 760}}, random)).in(room::parlour);
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

Stereo swampFrog(RandomNumbers& random) {
    Stage stage;
    stage.play(croak(0.3, {{0, 52}, {1, 40}}, {{0, 560}, {1, 480}}, random));
    stage.play(croak(0.28, {{0, 58}, {1, 44}}, {{0, 640}, {0.5, 760}, {1, 560}}, random), 0.33);
    stage.play(croak(0.5, {{0, 48}, {1, 30}}, {{0, 560}, {0.3, 820}, {1, 430}}, random), 0.63);
    const Curve envelope{{0, 0.4}, {0.5, 0.7}, {0.7, 1}, {1, 0}};
    stage.play(growl(1.15, {{0, 50}, {1, 32}}, 90, 0.6, envelope, random), 0, 0.5);
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
    stage.play(growl(0.55, {{0, 70}, {0.3, 55}, {1, 38}}, 150, 0.7, spit, random), at + 0.08, 0.8);
    stage.play(hissed(0.6, {{0, 6500}, {0.4, 4300}, {1, 2600}}, spit, random), at + 0.08, 0.5);
    return stage.in(room::parlour);
}

Stereo lowGrowl(RandomNumbers& random) {
    const Curve envelope{{0, 0.4}, {0.2, 1}, {0.8, 0.8}, {1, 0}};
    return Stage().play(growl(0.95, {{0, 36}, {0.5, 46}, {1, 30}}, 110, 0.5, envelope, random)).in(room::parlour);
}

// A throat that lets its air out in beats: growl and hiss together, of one length.
Signal throat(double seconds, const Curve& beats, double body, const Curve& brightness, const Curve& loudness,
              RandomNumbers& random) {
    Signal sound = growl(seconds, beats, body, 1, loudness, random);
    add(sound, fluttered(hissed(seconds, brightness, loudness, random), beats, 0.9), 0, 0.3);
    return sound;
}

Stereo snarl(RandomNumbers& random) {
    const Curve envelope{{0, 0.4}, {0.3, 1}, {0.8, 0.8}, {1, 0}};
    const Curve beats{{0, 36}, {0.4, 52}, {1, 34}};
    return Stage()
        .play(throat(1.15, beats, 240, {{0, 3800}, {0.5, 7200}, {1, 4200}}, envelope, random))
        .in(room::parlour);
}

Stereo bellow(RandomNumbers& random) {
    const Curve envelope{{0, 0.4}, {0.25, 1}, {0.75, 0.9}, {1, 0}};
    const Curve beats{{0, 33}, {0.4, 46}, {1, 31}};
    return Stage()
        .play(throat(1.5, beats, 70, {{0, 2400}, {1, 1500}}, envelope, random))
        .play(croak(1.5, beats, {{0, 310}, {0.4, 520}, {1, 260}}, random), 0, 0.4)
        .in(room::swamp);
}

// A cry that is half a bird's, half a saw's, torn by beats.
Signal screech(double seconds, double top, const Curve& beats, RandomNumbers& random) {
    const Curve bend{{0, 0.4 * top}, {0.15, top}, {0.5, 0.85 * top}, {1, 0.3 * top}};
    Signal edge = saw(seconds, bend, {0.6, 17});
    add(edge, whiteNoise(seconds, random), 0, 0.25);
    Signal sound = bandPassed(edge, bend * 2.7, 1.2);
    add(sound, bandPassed(edge, 5200, 1.5), 0, 0.7);
    sound = fluttered(saturated(normalised(std::move(sound)), 2), beats, 0.9);
    const Curve loudness{{0, 0.4}, {0.1, 1}, {0.7, 0.9}, {1, 0}};
    return normalised(faded(std::move(sound), loudness));
}

Stereo raptor(RandomNumbers& random) {
    const Curve envelope{{0, 0.4}, {0.2, 1}, {0.8, 0.7}, {1, 0}};
    const Curve beats{{0, 38}, {0.5, 52}, {1, 34}};
    return Stage()
        .play(screech(1.2, 1250, beats, random))
        .play(throat(1.2, beats, 130, {{0, 2600}, {0.3, 5200}, {1, 2400}}, envelope, random), 0, 0.4)
        .in(room::swamp);
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
        fire = fluttered(std::move(fire), {{0, 31}, {0.3, 44}, {1, 30}}, 0.8);
        stage.play(normalised(faded(std::move(fire), blaze)), caught, 0.8, side);
        stage.play(rattled(1.75, {{0, 8}, {0.5, 26}, {1, 14}}, 3100, {{0, 0.2}, {0.5, 1}, {1, 0.4}}, random), caught,
                   0.4, -side);
    }
    return stage.in(room::cave);
}

// A roar in two surges, the second the deeper.
Stereo roar(RandomNumbers& random) {
    const Curve envelope{{0, 0.5}, {0.12, 1}, {0.36, 0.8}, {0.47, 0.3}, {0.6, 1}, {0.8, 0.8}, {1, 0}};
    const Curve beats{{0, 34}, {0.2, 50}, {0.44, 36}, {0.6, 46}, {1, 31}};
    return Stage()
        .play(throat(1.9, beats, 80, {{0, 1500}, {0.2, 3800}, {1, 1100}}, envelope, random))
        .play(faded(screech(1.9, 620, beats, random), envelope), 0, 0.8, 0.3)
        .in(room::swamp);
}

Stereo monster(RandomNumbers& random) {
    Stage stage;
    for (const double at : {0.0, 0.42}) {
        stage.play(thump(55, 0.4), at, 2)
            .play(smack(300, 0.25, random), at, 1.2)
            .play(crash(0.5, 2500, random), at, 0.5);
    }
    const Curve envelope{{0, 0.5}, {0.12, 1}, {0.8, 0.95}, {1, 0}};
    const Curve beats{{0, 34}, {0.2, 50}, {0.5, 42}, {0.75, 48}, {1, 31}};
    stage.play(throat(2.2, beats, 75, {{0, 1800}, {0.3, 5000}, {1, 1500}}, envelope, random), 0.6, 1.2);
    stage.play(throat(2.2, beats, 150, {{0, 1500}, {0.3, 3400}, {1, 1300}}, envelope, random), 0.6, 0.6, 0.6);
    stage.play(screech(2.2, 1150, beats, random), 0.6, 0.9, -0.5);
    return stage.in(room::swamp);
}

} // namespace

PackRecipe lizardRecipe() {
    return {SoundPack::lizard,
            {
                {"A hatchling", 53, hatchling},
                {"A tongue flicks", 51, tongueFlick},
                {"A small croak", 71, smallCroak},
                {"A lick", 54, lick},
                {"Chirps", 57, chirps},
                {"A cricket, crunched", 55, crunchACricket},
                {"A short hiss", 60, shortHiss},
                {"A croak", 56, croakOnce},
                {"Scuttling off", 59, scuttle},
                {"A gecko says its name", 58, gecko},
                {"A low growl", 64, lowGrowl},
                {"A frill snaps open", 63, frill},
                {"A tail rattles", 61, tailRattle},
                {"A frog in the swamp", 62, swampFrog},
                {"A snarl", 65, snarl},
                {"A raptor", 66, raptor},
                {"A bellow from the swamp", 67, bellow},
                {"A roar", 68, roar},
                {"Breathing fire", 69, fireBreath},
                {"The monster comes", 70, monster},
            }};
}

} // namespace quiverly::clips
