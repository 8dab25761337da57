#include "landscape.h"

#include <array>

namespace ombrix::pictures {

namespace {

constexpr float kFarShore = 0.53f;
constexpr float kSunX = 0.60f;
constexpr float kSunY = 0.40f;
constexpr Color kHaze = Hex(0xf0c9a0);

// Each layer that does not cover everything changes `under`, the colour of what lies behind it.

// ---- Sky: a smooth gradient, a blown-out sun, soft clouds ------------------------------------------------------

Color Sky(float x, float y) {
    Color sky = Mix(Hex(0x1d3f86), Hex(0x6fa3d6), Smooth(0.0f, 0.34f, y));
    sky = Mix(sky, Hex(0xf6cf9b), Smooth(0.18f, kFarShore, y));
    const float fromSun = std::hypot(x - kSunX, 1.15f * (y - kSunY));
    sky = Mix(sky, Hex(0xffdf9e), 0.75f * std::exp(-6.5f * fromSun));
    sky = Mix(sky, Hex(0xfffdf2), Smooth(0.052f, 0.036f, fromSun));

    // Clouds flatten towards the horizon, and their sides towards the sun glow.
    const float flat = 3.0f + 9.0f * y;
    const float density = Fractal(2.6f * x + 1.3f, flat * y, 40, 6);
    const float towardsSun = Fractal(2.6f * (x + 0.03f * (kSunX - x)) + 1.3f, flat * (y + 0.012f), 40, 6);
    const float cover = Smooth(0.50f, 0.78f, density) * Smooth(0.50f, 0.36f, y);
    const float lit = std::clamp(0.55f + 5.0f * (density - towardsSun) - 0.5f * fromSun, 0.0f, 1.0f);
    return Mix(sky, Mix(Hex(0xa49cbd), Hex(0xfff0dc), lit), 0.88f * cover);
}

// ---- Balloons: saturated colours, round shading ----------------------------------------------------------------

struct Balloon {
    float x, y, radius;
    Color first, second;
    int stripes;
};

constexpr std::array kBalloons = {
    Balloon{1.16f, 0.20f, 0.098f, Hex(0xe3171f), Hex(0xffd21c), 9},
    Balloon{0.88f, 0.11f, 0.048f, Hex(0x00a9c7), Hex(0xf4f4f0), 7},
    Balloon{1.37f, 0.35f, 0.036f, Hex(0xc4127f), Hex(0xff8a1f), 7},
    Balloon{0.44f, 0.23f, 0.030f, Hex(0x17913a), Hex(0xe8e337), 5},
};

void AddBalloon(Color& under, const Balloon& balloon, float x, float y) {
    const float across = (x - balloon.x) / balloon.radius;
    const float down = (y - balloon.y) / balloon.radius;
    // Round above, tapering to the mouth below.
    const float width =
        down < 0 ? std::sqrt(std::max(0.0f, 1 - down * down)) : std::max(0.22f, std::cos(1.05f * down) - 0.02f * down);
    if (down > -1 && down < 1.28f && std::abs(across) < width) {
        const float turned = std::asin(std::clamp(across / width, -1.0f, 1.0f));
        const auto stripe =
            static_cast<int>(std::floor((turned / 3.1416f + 0.5f) * static_cast<float>(balloon.stripes)));
        const Color cloth = stripe % 2 ? balloon.second : balloon.first;
        const float light = 0.62f - 0.42f * across / width - 0.22f * down;
        under = Mix(cloth * (0.42f + 0.72f * std::clamp(light, 0.0f, 1.0f)), Hex(0xfff3d0),
                    0.45f * Smooth(0.42f, 0.0f, std::hypot(across + 0.42f, down + 0.38f)));
    } else if (down >= 1.28f && down < 1.58f && std::abs(std::abs(across) - 0.18f) < 0.018f) {
        under = Hex(0x3a2c22);  // ropes
    } else if (down >= 1.58f && down < 1.86f && std::abs(across) < 0.19f) {
        under = Mix(Hex(0x8a5a2c), Hex(0x4a2d15), Smooth(-0.19f, 0.19f, across));
    }
}

// ---- Mountains: tones that fade with distance ------------------------------------------------------------------

struct Ridge {
    float base, height, frequency;
    std::uint32_t seed;
    Color light, shadow;
    float haze;
};

constexpr std::array kRidges = {
    Ridge{0.50f, 0.27f, 1.9f, 3, Hex(0xe9d9d6), Hex(0x6f7fa8), 0.50f},
    Ridge{0.53f, 0.21f, 2.7f, 11, Hex(0xb79b86), Hex(0x4b5a78), 0.30f},
    Ridge{0.55f, 0.115f, 4.2f, 23, Hex(0x6f8450), Hex(0x28412f), 0.12f},
};

void AddRidge(Color& under, const Ridge& ridge, float x, float y) {
    const float shape = Fractal(ridge.frequency * x + 3.7f, 0.5f, ridge.seed, 7);
    const float crest = ridge.base - ridge.height * (shape * 1.35f - 0.28f);
    if (y < crest) {
        return;
    }
    // Gullies run down from the crest; a slope is lit where the ground falls away from the sun's side.
    const float below = y - crest;
    const float lean = x + 0.45f * below;
    const float relief =
        Fractal(16 * lean, 5 * y, ridge.seed + 100, 5) - Fractal(16 * lean + 0.22f, 5 * y, ridge.seed + 100, 5);
    const float lit = std::clamp(0.5f + 5.5f * relief, 0.0f, 1.0f);
    const Color rock = Mix(ridge.shadow, ridge.light, lit);
    under = Mix(rock, kHaze, std::min(0.92f, ridge.haze + 1.5f * below * ridge.haze + 0.10f));
}

/// Firs on the far shore: a dark, serrated band.
void AddForest(Color& under, float x, float y) {
    for (int row = 0; row < 3; ++row) {
        const float spacing = 0.0085f + 0.002f * static_cast<float>(row);
        const auto cell = static_cast<int>(std::floor(x / spacing));
        for (int tree = cell - 1; tree <= cell + 1; ++tree) {
            const float centre = (static_cast<float>(tree) + Random(tree, row, 70)) * spacing;
            const float stand = Smooth(0.30f, 0.62f, Noise(3.1f * centre, static_cast<float>(row), 71));
            const float height = (0.018f + 0.034f * Random(tree, row, 72)) * (0.35f + stand);
            const float foot = kFarShore + 0.001f;
            const float up = (foot - y) / height;
            const float ragged = 0.75f + 0.5f * Noise(0, 420 * y, static_cast<std::uint32_t>(900 + tree));
            if (up > 0 && up < 1 && std::abs(x - centre) < 0.0075f * (1 - up) * ragged) {
                under = Mix(Hex(0x10251f), Hex(0x31503a), 0.6f * Random(tree, row, 73) + 0.4f * up);
                under = Mix(under, kHaze, 0.16f);
            }
        }
    }
}

struct House {
    float x, width;
    Color wall;
};

constexpr std::array kHouses = {
    House{1.055f, 0.044f, Hex(0xb3201a)}, House{1.110f, 0.036f, Hex(0xe9e2d2)}, House{1.155f, 0.040f, Hex(0x1f62b5)},
    House{1.205f, 0.034f, Hex(0xe9a313)}, House{1.250f, 0.046f, Hex(0xa31d22)},
};

/// A house by the water, with a gable, a roof and lit windows.
void AddHouse(Color& under, const House& house, float x, float y) {
    const float across = (x - house.x) / house.width;
    const float up = (kFarShore + 0.002f - y) / house.width;
    if (up < 0 || std::abs(across) > 0.58f) {
        return;
    }
    const float roof = 1.18f - 1.05f * std::abs(across);
    if (up < roof && up >= roof - 0.13f && up > 0.55f) {
        under = Hex(0x2d2a33);
    } else if (up < roof && std::abs(across) < 0.5f) {
        const bool board = std::fmod(across * 14 + 20, 1.0f) < 0.16f;
        under = house.wall * ((board ? 0.82f : 1.0f) * (1.0f - 0.28f * Smooth(-0.5f, 0.5f, across)));
        const float column = std::abs(std::abs(across) - 0.24f);
        const float row = std::abs(up - 0.40f);
        if (column < 0.12f && row < 0.16f) {
            const bool frame = column > 0.085f || row > 0.125f || std::abs(row) < 0.014f;
            under = frame ? Hex(0xf3efe6) : Hex(0xffd98a);
        }
    }
}

/// All that the lake reflects.
Color BeyondTheLake(float x, float y) {
    Color color = Sky(x, y);
    for (const Ridge& ridge : kRidges) {
        AddRidge(color, ridge, x, y);
    }
    for (const Balloon& balloon : kBalloons) {
        AddBalloon(color, balloon, x, y);
    }
    AddForest(color, x, y);
    for (const House& house : kHouses) {
        AddHouse(color, house, x, y);
    }
    return color;
}

// ---- Lake and boats --------------------------------------------------------------------------------------------

struct Boat {
    float x, waterline, height;
    Color sail, jib, hull;
};

constexpr std::array kBoats = {
    Boat{0.83f, 0.575f, 0.085f, Hex(0xf3f0e8), Hex(0xe8331f), Hex(0x1c3557)},
    Boat{0.50f, 0.610f, 0.125f, Hex(0xf4b400), Hex(0x1769c2), Hex(0x7c1f17)},
    Boat{0.98f, 0.556f, 0.050f, Hex(0xe2463d), Hex(0xf4efe6), Hex(0x2b2b2b)},
};

/// Whether the boat covers the point.
bool AddBoat(Color& under, const Boat& boat, float x, float y) {
    const float across = (x - boat.x) / boat.height;
    const float up = (boat.waterline - y) / boat.height;
    if (up < 0 || up > 1) {
        return false;
    }
    if (up < 0.10f && std::abs(across) < 0.30f + 0.7f * up) {
        under = Mix(boat.hull * 1.25f, boat.hull * 0.6f, Smooth(-0.3f, 0.3f, across));
        return true;
    }
    if (up > 0.10f && std::abs(across) < 0.008f) {
        under = Hex(0x4a3524);
        return true;
    }
    const float taper = (1 - up) / 0.85f;
    const bool mainsail = up > 0.16f && across > 0.015f && across < 0.36f * taper * (1 + 0.12f * up);
    const bool jib = up > 0.16f && up < 0.86f && across < -0.02f && across > -0.30f * (0.9f - up) / 0.74f;
    if (mainsail || jib) {
        const Color cloth = mainsail ? boat.sail : boat.jib;
        const bool seam = std::fmod(up * 7, 1.0f) < 0.05f;
        under = cloth * ((seam ? 0.9f : 1.0f) * (1.06f - 0.9f * std::abs(across)));
        return true;
    }
    return false;
}

Color Lake(float x, float y) {
    // Waves are wider apart where they are nearer.
    const float near = (y - kFarShore) / 0.16f;
    const float wave = Fractal(9 * x, 260 * (y - kFarShore) / (0.25f + 2.2f * near), 55, 4) - 0.5f;
    const float sway = 0.004f + 0.030f * near;
    const float mirrored = 2 * kFarShore - y + 1.4f * sway * wave;
    Color water = BeyondTheLake(x + 0.55f * sway * wave, std::min(mirrored, kFarShore - 0.0005f));
    for (const Boat& boat : kBoats) {
        if (y > boat.waterline) {
            AddBoat(water, boat, x + 0.9f * sway * wave, 2 * boat.waterline - y);
        }
    }
    water = Mix(water, Hex(0x123c5a), 0.20f + 0.34f * near + 0.5f * wave * near);

    const float path = std::exp(-std::pow((x - kSunX) / (0.03f + 0.09f * near), 2.0f));
    const float glitter = Fractal(75 * x, 900 * (y - kFarShore) / (0.4f + 1.6f * near), 58, 2);
    return Mix(water, Hex(0xfff1cc), path * Smooth(0.50f, 0.82f, glitter + 0.12f * (1 - near)));
}

// ---- Meadow: fine detail, saturated specks, deep shadow --------------------------------------------------------

float NearShore(float x) { return 0.672f + 0.030f * Fractal(2.2f * x, 0.3f, 61, 4) - 0.05f * Smooth(0.45f, 0.0f, x); }

/// How much the tree and its crown keep the sun from the ground: 0 in full sun, 1 in the deepest shade.
float Shade(float x, float y) {
    const float edge = 0.50f + 0.22f * (Fractal(5 * x, 7 * y, 66, 4) - 0.5f) + 0.30f * (y - 0.7f);
    return 0.93f * Smooth(edge + 0.13f, edge - 0.20f, x);
}

Color Soil(float x, float y) { return Mix(Hex(0x33461c), Hex(0x586b26), Fractal(14 * x, 40 * y, 62, 4)); }

constexpr std::array kPetals = {Hex(0xe01b24), Hex(0xffffff), Hex(0xf7d21a), Hex(0x7b2fd0), Hex(0xff5fa2)};

/// Rows of grass blades, each row before the last and larger.
Color Meadow(float x, float y) {
    constexpr float kSmallest = 0.13f;  // of the blades' size at the bottom edge
    constexpr float kGrowth = 1.032f;   // from row to row
    constexpr int kRows = 76;
    Color color = Soil(x, y);
    float size = kSmallest;
    for (int row = 0; row < kRows; ++row, size *= kGrowth) {
        const float foot = 0.625f + 0.375f * size + 0.006f;
        const float height = 0.085f * size;
        if (y > foot || y < foot - 1.25f * height) {
            continue;
        }
        const float spacing = 0.0068f * size;
        const auto cell = static_cast<int>(std::floor(x / spacing));
        for (int blade = cell - 3; blade <= cell + 3; ++blade) {
            const float own = 0.45f + 0.75f * Random(blade, row, 80);
            const float up = (foot - y) / (height * own);
            const float root = (static_cast<float>(blade) + Random(blade, row, 81)) * spacing;
            const float lean = (Random(blade, row, 82) - 0.42f) * 3.2f * spacing;
            const float centre = root + lean * up * up;
            const float patch = Fractal(4 * root, 9 * foot, 63, 3);
            if (up > 0 && up < 1 && std::abs(x - centre) < 0.42f * spacing * (1.02f - up)) {
                const Color tip =
                    Mix(Hex(0x6f9a2a), Hex(0xd6c455), Smooth(0.35f, 0.75f, patch + 0.25f * Random(blade, row, 83)));
                color = Mix(Hex(0x27400f), tip, 0.10f + 0.90f * up);
            }
            const bool flowers = Random(blade, row, 84) < 0.010f + 0.060f * Smooth(0.52f, 0.70f, patch);
            const float petalRadius = (0.9f + 0.7f * Random(blade, row, 85)) * spacing;
            const float flowerX = root + lean;
            const float flowerY = foot - height * own;
            const float fromFlower = Ellipse(x, y, flowerX, flowerY, petalRadius, 0.75f * petalRadius);
            if (flowers && fromFlower < 1) {
                const auto kind = static_cast<std::size_t>(Random(blade, row, 86) * 4.999f);
                color = fromFlower < 0.33f ? Hex(0x6b4a0b) : kPetals[kind] * (0.82f + 0.18f * fromFlower);
            }
        }
    }
    return color;
}

/// The ground with the light that falls on it.
Color LitMeadow(float x, float y) {
    const Color sunny = Meadow(x, y);
    const float sun = 1.08f - 0.16f * Smooth(0.6f, 1.5f, x);
    const Color dark = {sunny.red * 0.14f, sunny.green * 0.17f, sunny.blue * 0.24f};
    return Mix(sunny * sun, dark, Shade(x, y));
}

// ---- People: skin in several tones -----------------------------------------------------------------------------

struct Person {
    float x, foot, height;
    Color skin, hair, shirt, trousers;
};

constexpr std::array kPeople = {
    Person{0.765f, 0.838f, 0.205f, Hex(0xf1c7a5), Hex(0x6a3a16), Hex(0xd8232a), Hex(0x27365c)},
    Person{0.838f, 0.846f, 0.190f, Hex(0x8d5a3a), Hex(0x15100e), Hex(0xf2b705), Hex(0x47402f)},
    Person{0.900f, 0.834f, 0.150f, Hex(0xd9a27a), Hex(0x2a1a10), Hex(0x12907d), Hex(0x6b2d5c)},
};

/// Light comes from the left, as on everything near.
float LightFromLeft(float across) { return 1.12f - 0.42f * Smooth(-1.0f, 1.0f, across); }

void AddPerson(Color& under, const Person& person, float x, float y) {
    const float across = (x - person.x) / person.height;
    const float up = (person.foot - y) / person.height;
    if (up < 0.09f * Noise(620 * x, 0, 130)) {
        return;  // grass stands before the feet
    }
    const auto limb = [&](float x0, float y0, float x1, float y1, float radius) {
        const float length = (x1 - x0) * (x1 - x0) + (y1 - y0) * (y1 - y0);
        const float along = std::clamp(((across - x0) * (x1 - x0) + (up - y0) * (y1 - y0)) / length, 0.0f, 1.0f);
        const float side = std::hypot(across - x0 - along * (x1 - x0), up - y0 - along * (y1 - y0)) / radius;
        return side < 1 ? (across - x0 - along * (x1 - x0)) / radius : 2.0f;  // 2: not on it
    };
    const auto paint = [&](float part, Color color) {
        if (part < 2) {
            under = color * LightFromLeft(part);
        }
    };
    paint(limb(-0.055f, 0.02f, -0.045f, 0.42f, 0.046f), person.trousers);
    paint(limb(0.055f, 0.02f, 0.045f, 0.42f, 0.046f), person.trousers * 0.9f);
    paint(limb(-0.118f, 0.73f, -0.160f, 0.42f, 0.024f), person.skin);
    paint(limb(0.118f, 0.73f, 0.160f, 0.42f, 0.024f), person.skin * 0.92f);
    paint(limb(-0.108f, 0.745f, -0.138f, 0.60f, 0.033f), person.shirt);
    paint(limb(0.108f, 0.745f, 0.138f, 0.60f, 0.033f), person.shirt * 0.9f);
    paint(limb(0, 0.49f, 0, 0.69f, 0.106f), person.shirt);
    paint(limb(0, 0.80f, 0, 0.86f, 0.036f), person.skin * 0.88f);
    paint(limb(0, 0.945f, 0, 0.935f, 0.092f), person.hair);
    const float face = Ellipse(across, up, -0.008f, 0.905f, 0.070f, 0.088f);
    if (face < 1) {
        under = person.skin * LightFromLeft(across / 0.09f);
        const bool fringe = up > 0.955f + 0.25f * across;
        const bool eye = Ellipse(std::abs(across + 0.010f), up, 0.028f, 0.908f, 0.010f, 0.009f) < 1;
        const bool mouth = std::abs(up - 0.862f - 6 * (across + 0.01f) * (across + 0.01f)) < 0.006f &&
                           std::abs(across + 0.010f) < 0.028f;
        if (fringe) {
            under = person.hair;
        } else if (eye) {
            under = Hex(0x1b1412);
        } else if (mouth) {
            under = Mix(person.skin, Hex(0x9c2530), 0.7f);
        } else if (Ellipse(std::abs(across + 0.010f), up, 0.042f, 0.880f, 0.020f, 0.016f) < 1) {
            under = Mix(under, Hex(0xd8503f), 0.22f);
        }
    }
}

/// The soft shadow that something standing on the ground throws to the right, away from the sun.
void AddShadow(Color& under, float x, float y, float footX, float footY, float size) {
    const float inside = Ellipse(x, y, footX + 0.9f * size, footY + 0.05f * size, 1.1f * size, 0.17f * size);
    under = under * (1 - 0.55f * Smooth(1.0f, 0.35f, inside));
}

// ---- Wall with pots: round, earthen tones ----------------------------------------------------------------------

struct Pot {
    float x, foot, width, height;
    Color clay;
};

constexpr std::array kPots = {
    Pot{1.105f, 0.900f, 0.062f, 0.150f, Hex(0xeec3a0)},
    Pot{1.390f, 0.900f, 0.078f, 0.215f, Hex(0x7d4a30)},
    Pot{1.255f, 0.912f, 0.076f, 0.128f, Hex(0xc98a62)},
};

/// Half the pot's width at a height from 0 to 1, in terms of its belly.
float Profile(float up) {
    const float belly = 0.55f + 0.45f * std::sin(3.1416f * std::clamp(0.16f + 0.80f * up, 0.0f, 1.0f));
    const float neck = 1 - 0.34f * Smooth(0.62f, 0.84f, up);
    const float rim = 1 + 0.30f * Smooth(0.86f, 0.95f, up);
    return belly * neck * rim;
}

void AddPot(Color& under, const Pot& pot, float x, float y) {
    const float foot = Ellipse(x, y, pot.x + 0.6f * pot.width, pot.foot + 0.002f, 1.5f * pot.width, 0.016f);
    under = under * (1 - 0.62f * Smooth(1.0f, 0.3f, foot));

    const float across = (x - pot.x) / pot.width;
    // Seen a little from above: the edges of a ring lie higher than its front.
    const float up =
        (pot.foot - y) / pot.height + 0.045f * (1 - std::sqrt(std::max(0.0f, 1 - across * across))) - 0.02f;
    if (up > -0.03f && up < 1.0f && std::abs(across) < Profile(up)) {
        const float turn = across / Profile(up);
        const float facing = std::clamp(0.50f - 0.62f * turn + 0.35f * (up - 0.5f) * (1 - turn * turn), 0.0f, 1.0f);
        Color clay = pot.clay * (0.30f + 0.86f * facing);
        clay = clay * (0.94f + 0.10f * Fractal(90 * x, 260 * y, 90, 3));
        if (std::abs(up - 0.56f) < 0.045f) {
            const bool zigzag =
                std::abs(up - 0.56f - 0.022f * std::asin(std::sin(18 * std::asin(std::clamp(turn, -1.0f, 1.0f))))) <
                0.012f;
            clay = clay * (zigzag ? 0.55f : 1.0f);
        }
        const float gloss = Ellipse(turn, up, -0.45f, 0.52f, 0.16f, 0.20f);
        under = Mix(clay, Hex(0xfff4e2), 0.42f * Smooth(1.0f, 0.0f, gloss));
    }
    const float mouth = Ellipse(x, y, pot.x, pot.foot - 0.985f * pot.height, Profile(0.96f) * pot.width, 0.010f);
    if (mouth < 1) {
        under = mouth < 0.80f ? Mix(Hex(0x120a06), pot.clay * 0.4f, Smooth(-0.3f, 0.8f, across)) : pot.clay * 1.05f;
    }
}

void AddWall(Color& under, float x, float y) {
    constexpr float kTop = 0.885f;
    const float left = 1.02f + 0.006f * (Noise(0, 60 * y, 91) - 0.5f);
    if (x < left || y < kTop) {
        return;
    }
    if (y < kTop + 0.042f) {  // its top, of one slab
        under = Mix(Hex(0xb9ac9a), Hex(0xe0d3bd), Fractal(24 * x, 90 * y, 92, 5));
        return;
    }
    // Courses of stones, each shifted by half a stone.
    const float course = (y - kTop - 0.042f) / 0.036f;
    const auto row = static_cast<int>(course);
    const float along = x / 0.085f + 0.5f * static_cast<float>(row % 2);
    const auto stone = static_cast<int>(std::floor(along));
    const float edge = std::min({along - std::floor(along), 1 - along + std::floor(along),
                                 0.45f * (course - std::floor(course)), 0.45f * (1 - course + std::floor(course))});
    const float tone = 0.44f + 0.22f * Random(stone, row, 93) + 0.22f * Fractal(40 * x, 60 * y, 94, 5);
    const Color body = Mix(Hex(0x1a1714), Mix(Hex(0x8b7f70), Hex(0x9c8a78), Random(stone, row, 95)), tone + 0.18f);
    under = Mix(Hex(0x0b0a09), body, Smooth(0.0f, 0.06f, edge));
    under = under * (1.0f - 0.45f * Smooth(kTop + 0.06f, kTop + 0.042f, y));
}

// ---- Tree: deep shadow with detail left in it ------------------------------------------------------------------

void AddTree(Color& under, float x, float y) {
    const float flare = 0.075f * Smooth(0.78f, 0.97f, y);
    const float left = 0.062f - 0.03f * y - flare + 0.006f * Fractal(3, 14 * y, 97, 3);
    const float right = 0.150f + 0.028f * std::sin(3 * y) + flare + 0.010f * Fractal(7, 16 * y, 98, 4);
    const float rootLine = 0.955f + 0.02f * Noise(30 * x, 0, 99);
    const bool branch =
        std::abs(y - 0.30f + 0.55f * (x - 0.12f) + 0.04f * std::sin(9 * x)) < 0.020f - 0.034f * (x - 0.12f) &&
        x > 0.12f && x < 0.62f;
    if ((x > left && x < right && y < rootLine) || branch) {
        const float bark = Fractal(95 * x + 5 * Noise(20 * x, 9 * y, 101), 9 * y, 100, 5);
        under = Mix(Hex(0x040303), Hex(0x33261c), Smooth(0.30f, 0.85f, bark));
        under = Mix(under, Hex(0xb2763a),
                    0.75f * Smooth(right - 0.016f, right, x) * Smooth(0.45f, 0.7f, bark) * (branch ? 0.0f : 1.0f));
    }
    // The crown: leaves in three depths, the nearest the darkest.
    for (int depth = 0; depth < 3; ++depth) {
        const float spacing = 0.013f + 0.003f * static_cast<float>(depth);
        const auto column = static_cast<int>(std::floor(x / spacing));
        const auto row = static_cast<int>(std::floor(y / spacing));
        for (int cell = 0; cell < 9; ++cell) {
            const int i = column + cell % 3 - 1;
            const int j = row + cell / 3 - 1;
            const auto seed = static_cast<std::uint32_t>(110 + 10 * depth);
            const float leafX = (static_cast<float>(i) + Random(i, j, seed)) * spacing;
            const float leafY = (static_cast<float>(j) + Random(i, j, seed + 1)) * spacing;
            const float reach = leafY + 0.62f * leafX - 0.10f * std::sin(11 * leafX);
            const float crown =
                Smooth(0.40f, 0.22f, reach + 0.42f * (Fractal(6 * leafX, 6 * leafY, seed + 2, 3) - 0.5f));
            if (Random(i, j, seed + 3) > 1.15f * crown) {
                continue;
            }
            const float angle = 6.28f * Random(i, j, seed + 4);
            const float along = (x - leafX) * std::cos(angle) + (y - leafY) * std::sin(angle);
            const float beside = (y - leafY) * std::cos(angle) - (x - leafX) * std::sin(angle);
            if (Ellipse(along, beside, 0, 0, 0.78f * spacing, 0.36f * spacing) < 1) {
                const Color leaf = Mix(Hex(0x3f5c17), Hex(0x08120a), 0.38f * static_cast<float>(depth) + 0.2f);
                const float glow = Smooth(0.10f, 0.55f, leafX) * Random(i, j, seed + 5);
                under = Mix(leaf * (0.45f + 0.9f * Random(i, j, seed + 6)), Hex(0xc9b23a),
                            (depth == 0 ? 0.55f : 0.14f) * glow);
            }
        }
    }
}

}  // namespace

Color Landscape(float x, float y) {
    Color color;
    if (y < kFarShore) {
        color = BeyondTheLake(x, y);
    } else {
        color = Lake(x, y);
    }
    for (const Boat& boat : kBoats) {
        AddBoat(color, boat, x, y);
    }
    if (y > NearShore(x) - 0.010f * Noise(170 * x, 0, 120) - 0.006f * Noise(420 * x, 0, 121)) {
        color = LitMeadow(x, y);
        for (const Person& person : kPeople) {
            AddShadow(color, x, y, person.x, person.foot, 0.5f * person.height);
        }
    }
    for (const Person& person : kPeople) {
        AddPerson(color, person, x, y);
    }
    AddWall(color, x, y);
    for (const Pot& pot : kPots) {
        AddPot(color, pot, x, y);
    }
    AddTree(color, x, y);
    return color;
}

}  // namespace ombrix::pictures
