#include "clips/PackRecipe.h"
#include "clips/instruments/Creature.h"
#include "clips/instruments/Impact.h"
#include "clips/instruments/Lips.h"
#include "clips/instruments/Speech.h"
#include "clips/instruments/Struck.h"
#include "clips/packs/Cast.h"
#include "clips/synthesis/Stage.h"

namespace quiverly::clips {

namespace {

Stereo crying(const Cry& cry, RandomNumbers& random) {
    return Stage().play(cried(cry, random)).in(room::parlour);
}

Stereo ow(RandomNumbers& random) {
    return crying({.speaker = cast::tom,
                   .seconds = 0.4,
                   .pitch = {{0, 170}, {0.2, 330}, {0.5, 260}, {1, 100}},
                   .mouth = {{0, vowel::ae}, {0.4, vowel::a}, {0.8, vowel::aw}, {1, vowel::oo}},
                   .press = {{0, 0.6}, {0.2, 0.8}, {1, 0.3}}},
                  random);
}

Stereo ah(RandomNumbers& random) {
    return crying({.speaker = cast::mara,
                   .seconds = 0.3,
                   .pitch = {{0, 290}, {0.25, 560}, {0.6, 470}, {1, 230}},
                   .mouth = {{0, vowel::a}, {0.5, vowel::ae}, {1, vowel::uh}},
                   .press = {{0, 0.5}, {0.25, 0.75}, {1, 0.2}},
                   .after = 0.18},
                  random);
}

Stereo argh(RandomNumbers& random) {
    return crying({.speaker = cast::boris,
                   .seconds = 0.5,
                   .pitch = {{0, 110}, {0.18, 250}, {0.6, 215}, {1, 80}},
                   .loudness = {{0, 0.15}, {0.14, 1}, {0.5, 0.45}, {1, 0.02}},
                   .mouth = {{0, vowel::uh}, {0.15, vowel::ae}, {0.6, vowel::a}, {1, vowel::er}},
                   .press = {{0, 0.7}, {0.2, 0.95}, {1, 0.5}},
                   .doubling = 0.5,
                   .rasp = 0.5},
                  random);
}

Stereo yelp(RandomNumbers& random) {
    return crying({.speaker = cast::lili,
                   .seconds = 0.26,
                   .pitch = {{0, 460}, {0.35, 880}, {0.7, 780}, {1, 430}},
                   .mouth = {{0, consonant::y}, {0.25, vowel::ae}, {1, vowel::a}},
                   .press = {{0, 0.6}, {0.3, 0.8}, {1, 0.3}}},
                  random);
}

Stereo oof(RandomNumbers& random) {
    const Cry winded{.speaker = cast::pip,
                     .seconds = 0.3,
                     .pitch = {{0, 290}, {0.3, 240}, {1, 130}},
                     .mouth = {{0, vowel::uh}, {0.4, vowel::aw}, {1, vowel::oo}},
                     .press = {{0, 0.7}, {1, 0.1}},
                     .air = 1.6,
                     .before = 0.02,
                     .after = 0.28};
    return Stage().play(thump(110, 0.16), 0, 0.6).play(cried(winded, random), 0.01).in(room::parlour);
}

Stereo womansScream(RandomNumbers& random) {
    return crying({.speaker = cast::ida,
                   .seconds = 0.5,
                   .pitch = {{0, 350}, {0.14, 780}, {0.55, 700}, {1, 260}},
                   .loudness = {{0, 0.15}, {0.15, 1}, {0.5, 0.55}, {1, 0.02}},
                   .mouth = {{0, vowel::a}, {0.3, vowel::ae}, {0.7, vowel::a}, {1, vowel::uh}},
                   .press = {{0, 0.6}, {0.2, 0.9}, {0.7, 0.8}, {1, 0.2}},
                   .air = 1.4},
                  random);
}

Stereo groan(RandomNumbers& random) {
    return crying({.speaker = cast::otto,
                   .seconds = 0.56,
                   .pitch = {{0, 150}, {0.14, 190}, {0.5, 140}, {1, 82}},
                   .loudness = {{0, 0.2}, {0.18, 1}, {0.6, 0.45}, {1, 0.03}},
                   .mouth = {{0, vowel::uh}, {0.25, vowel::ae}, {0.5, vowel::uh}, {0.75, consonant::m}},
                   .press = {{0, 0.6}, {0.3, 0.6}, {1, 0.2}},
                   .rasp = 0.3},
                  random);
}

Stereo ouch(RandomNumbers& random) {
    const Cry boy{.speaker = cast::ben,
                  .seconds = 0.36,
                  .pitch = {{0, 280}, {0.25, 520}, {0.6, 440}, {1, 220}},
                  .mouth = {{0, vowel::a}, {0.5, vowel::a}, {1, vowel::oo}},
                  .press = {{0, 0.6}, {0.3, 0.8}, {1, 0.4}},
                  .after = 0.05};
    const Signal ch = hissed(0.17, {{0, 3300}, {1, 4200}}, {{0, 0.9}, {0.1, 1}, {0.5, 0.6}, {1, 0}}, random);
    return Stage().play(cried(boy, random)).play(ch, 0.41, 0.45).in(room::parlour);
}

Stereo bonk(RandomNumbers& random) {
    const Cry hit{.speaker = cast::pip,
                  .seconds = 0.28,
                  .pitch = {{0, 330}, {0.2, 590}, {1, 260}},
                  .loudness = {{0, 0.15}, {0.2, 1}, {0.5, 0.45}, {1, 0.02}},
                  .mouth = {{0, vowel::uh}, {0.4, vowel::ae}, {1, vowel::ih}},
                  .press = {{0, 0.6}, {0.25, 0.85}, {1, 0.3}}};
    return Stage()
        .play(struck(body::wood, 420, 0.7), 0, 0.8)
        .play(boing(330, 0.5), 0.05, 0.3)
        .play(cried(hit, random), 0.02)
        .in(room::parlour);
}

Stereo hoppingOnOneFoot(RandomNumbers& random) {
    Stage stage;
    double at = 0;
    for (const double top : {390, 430, 340}) {
        const Cry yelp{.speaker = cast::tom,
                       .seconds = 0.19,
                       .pitch = {{0, 0.65 * top}, {0.35, top}, {1, 0.6 * top}},
                       .loudness = {{0, 0.2}, {0.35, at == 0 ? 1 : 0.8}, {1, 0.02}},
                       .mouth = {{0, vowel::a}, {0.5, vowel::a}, {1, vowel::aw}},
                       .press = {{0, 0.6}, {0.3, 0.85}, {1, 0.4}},
                       .before = 0.03,
                       .after = 0.07};
        stage.play(cried(yelp, random), at, at == 0 ? 1 : 0.8);
        if (at > 0) stage.play(thump(95, 0.1), at - 0.03, 0.25);
        at += 0.27;
    }
    return stage.in(room::parlour);
}

Stereo mansScream(RandomNumbers& random) {
    return crying({.speaker = cast::tom,
                   .seconds = 0.56,
                   .pitch = {{0, 160}, {0.12, 400}, {0.4, 430}, {0.46, 560}, {0.75, 520}, {1, 150}},
                   .loudness = {{0, 0.15}, {0.14, 1}, {0.5, 0.55}, {1, 0.02}},
                   .mouth = {{0, vowel::a}, {0.4, vowel::ae}, {0.6, vowel::eh}, {1, vowel::eh}},
                   .press = {{0, 0.7}, {0.2, 1}, {0.8, 0.9}, {1, 0.3}},
                   .air = 1.3,
                   .doubling = 0.55,
                   .rasp = 0.35},
                  random);
}

Stereo stubbedToe(RandomNumbers& random) {
    const Cry relief{.speaker = cast::mara,
                     .seconds = 0.36,
                     .pitch = {{0, 380}, {0.2, 500}, {0.5, 420}, {1, 230}},
                     .mouth = {{0, vowel::ae}, {0.4, vowel::a}, {1, vowel::oo}},
                     .press = {{0, 0.6}, {0.3, 0.6}, {1, 0.1}}};
    return Stage()
        .play(struck(body::wood, 260, 0.3), 0, 0.35)
        .play(hissed(0.1, {{0, 5200}, {1, 6600}}, {{0, 0.4}, {0.6, 1}, {0.95, 0.8}, {1, 0}}, random), 0.02, 0.2)
        .play(cried(relief, random), 0.1)
        .in(room::parlour);
}

Stereo oh(RandomNumbers& random) {
    return crying({.speaker = cast::hedda,
                   .seconds = 0.5,
                   .pitch = {{0, 360}, {0.16, 600}, {0.5, 420}, {0.7, 500}, {1, 260}},
                   .mouth = {{0, vowel::a}, {0.3, vowel::aw}, {1, vowel::uh}},
                   .press = {{0, 0.5}, {0.25, 0.7}, {1, 0.1}},
                   .after = 0.16},
                  random);
}

// A wail and three sobs for air.
Stereo crybaby(RandomNumbers& random) {
    Stage stage;
    const Cry wail{.speaker = cast::ben,
                   .seconds = 0.4,
                   .pitch = {{0, 340}, {0.18, 560}, {0.55, 500}, {0.6, 640}, {0.75, 470}, {1, 300}},
                   .loudness = {{0, 0.2}, {0.2, 1}, {0.7, 0.7}, {1, 0.02}},
                   .mouth = {{0, consonant::w}, {0.15, vowel::ae}, {0.8, vowel::ae}, {1, vowel::uh}},
                   .press = 0.8,
                   .after = 0.05};
    stage.play(cried(wail, random));
    double at = 0.5;
    for (const double top : {430, 470, 450}) {
        const Cry sob{.speaker = cast::ben,
                      .seconds = 0.09,
                      .pitch = {{0, 0.8 * top}, {0.5, top}, {1, 0.7 * top}},
                      .mouth = {{0, vowel::uh}, {1, vowel::eh}},
                      .press = 0.4,
                      .air = 2.5,
                      .before = 0.05,
                      .after = 0.05};
        stage.play(cried(sob, random), at, 0.5);
        at += 0.17;
    }
    return stage.in(room::parlour);
}

Stereo ugh(RandomNumbers& random) {
    return crying({.speaker = cast::boris,
                   .seconds = 0.3,
                   .pitch = {{0, 105}, {0.25, 165}, {1, 80}},
                   .mouth = {{0, vowel::uh}, {0.5, vowel::a}, {1, vowel::er}},
                   .press = {{0, 0.8}, {0.3, 0.9}, {1, 0.3}},
                   .air = 1.3,
                   .after = 0.16,
                   .doubling = 0.3,
                   .rasp = 0.4},
                  random);
}

Stereo eep(RandomNumbers& random) {
    return crying({.speaker = cast::lili,
                   .seconds = 0.24,
                   .pitch = {{0, 640}, {0.35, 1080}, {1, 940}},
                   .loudness = {{0, 0.2}, {0.3, 1}, {0.7, 0.6}, {1, 0.03}},
                   .mouth = {{0, vowel::ih}, {0.4, vowel::ee}},
                   .press = 0.7,
                   .after = 0.1},
                  random);
}

Stereo fryingPan(RandomNumbers& random) {
    const Cry dazed{.speaker = cast::otto,
                    .seconds = 0.5,
                    .pitch = {{0, 190}, {0.2, 250}, {0.6, 170}, {1, 105}},
                    .mouth = {{0, vowel::a}, {0.4, vowel::uh}, {1, vowel::er}},
                    .press = {{0, 0.7}, {1, 0.2}}};
    Stage stage;
    stage.play(struck(body::pan, 370, 0.9, 0.5), 0, 0.4).play(cried(dazed, random), 0.02);
    for (int bird = 0; bird < 3; ++bird) {
        const double top = random.between(3200, 4200);
        const Curve tweet{{0, top}, {0.5, 0.7 * top}, {1, 1.1 * top}};
        stage.play(whistle(0.09, tweet, {{0, 0.4}, {0.5, 1}, {1, 0}}, random), 0.55 + 0.14 * bird, 0.1,
                   bird % 2 == 0 ? -0.7 : 0.7);
    }
    return stage.in(room::parlour);
}

tl::expected<Stereo, std::string> offendedGentleman(RandomNumbers& random) {
    const Cry hurt{.speaker = cast::otto,
                   .seconds = 0.3,
                   .pitch = {{0, 170}, {0.25, 300}, {1, 150}},
                   .mouth = {{0, vowel::a}, {0.5, vowel::a}, {1, vowel::oo}},
                   .press = {{0, 0.6}, {0.3, 0.8}, {1, 0.3}},
                   .after = 0.1};
    const auto words = spoken("How dare you, sir!", {.wordsPerMinute = 190, .pitch = 42, .range = 190});
    if (!words) return tl::unexpected(words.error());
    return Stage().play(cried(hurt, random)).play(*words, 0.43, 0.8).in(room::parlour);
}

Stereo aiee(RandomNumbers& random) {
    return crying({.speaker = cast::mara,
                   .seconds = 0.46,
                   .pitch = {{0, 400}, {0.16, 900}, {0.5, 860}, {1, 330}},
                   .loudness = {{0, 0.15}, {0.17, 1}, {0.5, 0.55}, {1, 0.02}},
                   .mouth = {{0, vowel::a}, {0.25, vowel::ae}, {0.6, vowel::ih}, {1, vowel::eh}},
                   .press = {{0, 0.6}, {0.2, 0.9}, {1, 0.3}},
                   .air = 1.3},
                  random);
}

Stereo ayAyAy(RandomNumbers& random) {
    Stage stage;
    double at = 0;
    for (const double top : {470, 420}) {
        const Cry cry{.speaker = cast::hedda,
                      .seconds = 0.22,
                      .pitch = {{0, 0.7 * top}, {0.3, top}, {1, 0.6 * top}},
                      .mouth = {{0, vowel::a}, {0.5, vowel::ae}, {1, vowel::ih}},
                      .press = {{0, 0.6}, {0.3, 0.8}, {1, 0.3}},
                      .after = 0.08};
        stage.play(cried(cry, random), at, at == 0 ? 1 : 0.75);
        at += 0.29;
    }
    return stage.in(room::parlour);
}

} // namespace

PackRecipe painRecipe() {
    return {SoundPack::pain,
            {
                {"Ow", 11, ow, "cry", cast::tom.name},
                {"Ah", 12, ah, "cry", cast::mara.name},
                {"Argh", 13, argh, "scream", cast::boris.name},
                {"A yelp", 14, yelp, "yelp", cast::lili.name},
                {"Oof", 15, oof, "cry", cast::pip.name},
                {"A scream", 16, womansScream, "scream", cast::ida.name},
                {"A groan", 17, groan, "groan", cast::otto.name},
                {"Ouch", 18, ouch, "cry", cast::ben.name},
                {"Bonk on the head", 19, bonk, "cry", cast::pip.name},
                {"Hopping on one foot", 20, hoppingOnOneFoot, "yelp", cast::tom.name},
                {"A man screams", 21, mansScream, "scream", cast::tom.name},
                {"A stubbed toe", 22, stubbedToe, "cry", cast::mara.name},
                {"Oh", 23, oh, "cry", cast::hedda.name},
                {"A crybaby", 24, crybaby, "cry", cast::ben.name},
                {"Ugh", 25, ugh, "groan", cast::boris.name},
                {"Eep", 26, eep, "yelp", cast::lili.name},
                {"A frying pan, and birds", 27, fryingPan, "groan", cast::otto.name},
                {"An offended gentleman", 28, offendedGentleman, "cry", cast::otto.name},
                {"Aiee", 29, aiee, "scream", cast::mara.name},
                {"Ay, ay", 30, ayAyAy, "cry", cast::hedda.name},
            }};
}

} // namespace quiverly::clips
