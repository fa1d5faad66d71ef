// pathgen: writes a camera flight around the origin as an animation file ("KVLANI1").
//
// The camera circles the origin at a constant angular speed. Its distance swings around
// the radius twice per flight and its height rises and falls once, and at every keyframe
// pitch and heading aim it at a point just above the origin. Keyframes are evenly spaced,
// `rate` per second of the intended flight, so a controller that plays the file over
// `seconds` shows one keyframe every 1/rate s. Headings are unwrapped (they keep counting
// past 360), since paths interpolate angles by their numbers.
//
// The production's camera path is the output of the defaults:
//     pathgen -o resources/misc/camera.ani

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string>

namespace {

constexpr double kPi = 3.14159265358979323846;

struct Options {
    double seconds = 24.0;
    int rate = 25;
    double radius = 8.0;
    double swing = 1.5;
    double height = 3.0;
    double rise = 2.0;
    double turns = 1.0;
    double start = 0.0;
    double target = 0.5;
    std::string output;
};

void usage(std::ostream& out) {
    out << "Usage: pathgen [options]\n"
           "Writes a camera flight around the origin as an animation file (KVLANI1).\n"
           "\n"
           "Options:\n"
           "  --seconds S   length of the flight the file is made for (default 24)\n"
           "  --rate N      keyframes per second of flight (default 25)\n"
           "  --radius R    mean distance from the vertical axis (default 8)\n"
           "  --swing W     the distance swings by +-W, twice per flight (default 1.5)\n"
           "  --height H    mean camera height (default 3)\n"
           "  --rise D      the height rises and falls by +-D, once per flight (default 2)\n"
           "  --turns T     turns around the origin, negative the other way (default 1)\n"
           "  --start A     angle of the first keyframe in degrees, 0 on +z, 90 on +x (default 0)\n"
           "  --target Y    height of the point the camera aims at (default 0.5)\n"
           "  -o FILE       write to FILE instead of standard output\n"
           "  --help        this text\n"
           "\n"
           "Keyframes: seconds * rate + 1. Pitch is positive looking down, heading\n"
           "positive turning towards +x; at pitch and heading 0 the camera looks down -z.\n"
           "\n"
           "Example: a 4 s flight with 1 keyframe per second:\n"
           "  pathgen --seconds 4 --rate 1\n"
           "writes\n"
           "  KVLANI1\n"
           "  keyframes 5\n"
           "  pos 0.0000 1.0000 8.0000\n"
           "  rot 3.5763 0.0000\n"
           "  pos 8.0000 3.0000 0.0000\n"
           "  rot 17.3540 -90.0000\n"
           "  pos 0.0000 5.0000 -8.0000\n"
           "  rot 29.3578 -180.0000\n"
           "  pos -8.0000 3.0000 0.0000\n"
           "  rot 17.3540 -270.0000\n"
           "  pos 0.0000 1.0000 8.0000\n"
           "  rot 3.5763 -360.0000\n"
           "and is played in a script by an effect whose \"anim\" names it in the\n"
           "\"animation\" block, e.g. animation { camera = camera.ani; }.\n";
}

bool readNumber(const char* text, double& value) {
    char* end = nullptr;
    value = std::strtod(text, &end);
    return end != text && *end == '\0' && std::isfinite(value);
}

// Parses the command line; false with a message for anything unknown.
bool parse(int argc, char** argv, Options& options, bool& help) {
    for (int i = 1; i < argc; i++) {
        std::string name = argv[i];
        if (name == "--help" || name == "-h") {
            help = true;
            return true;
        }
        if (i + 1 >= argc) {
            std::cerr << "pathgen: '" << name << "' needs a value (see --help)\n";
            return false;
        }
        const char* text = argv[++i];
        if (name == "-o") {
            options.output = text;
            continue;
        }
        double value = 0.0;
        if (!readNumber(text, value)) {
            std::cerr << "pathgen: '" << text << "' is not a number for " << name << "\n";
            return false;
        }
        if (name == "--seconds") {
            options.seconds = value;
        } else if (name == "--rate") {
            options.rate = static_cast<int>(value);
        } else if (name == "--radius") {
            options.radius = value;
        } else if (name == "--swing") {
            options.swing = value;
        } else if (name == "--height") {
            options.height = value;
        } else if (name == "--rise") {
            options.rise = value;
        } else if (name == "--turns") {
            options.turns = value;
        } else if (name == "--start") {
            options.start = value;
        } else if (name == "--target") {
            options.target = value;
        } else {
            std::cerr << "pathgen: unknown option '" << name << "' (see --help)\n";
            return false;
        }
    }
    if (options.seconds <= 0.0 || options.rate < 1 || options.seconds * options.rate > 1e6) {
        std::cerr << "pathgen: seconds and rate must be positive, and give at most 1000000 "
                     "keyframes\n";
        return false;
    }
    return true;
}

// Pitch and heading that aim a camera at `from` towards `to`. The camera's view direction
// for pitch a and heading b is (sin b cos a, -sin a, -cos a cos b).
void aim(const double from[3], const double to[3], double& pitch, double& heading) {
    double d[3] = {to[0] - from[0], to[1] - from[1], to[2] - from[2]};
    double length = std::sqrt(d[0] * d[0] + d[1] * d[1] + d[2] * d[2]);
    pitch = std::asin(-d[1] / length) * 180.0 / kPi;
    heading = std::atan2(d[0], -d[2]) * 180.0 / kPi;
}

// Keeps a heading within half a turn of the one before, so it never jumps by 360.
double unwrap(double heading, double previous) {
    while (heading - previous > 180.0) {
        heading -= 360.0;
    }
    while (heading - previous < -180.0) {
        heading += 360.0;
    }
    return heading;
}

// Prints -0.0000 as 0.0000, so that the output reads the same on every platform.
std::string number(double value) {
    char text[64];
    std::snprintf(text, sizeof(text), "%.4f", value);
    if (std::strcmp(text, "-0.0000") == 0) {
        return "0.0000";
    }
    return text;
}

void write(const Options& options, std::FILE* out) {
    int keyframes = static_cast<int>(std::lround(options.seconds * options.rate)) + 1;
    std::fprintf(out, "KVLANI1\nkeyframes %d\n", keyframes);
    const double target[3] = {0.0, options.target, 0.0};
    double previousHeading = 0.0;
    for (int k = 0; k < keyframes; k++) {
        double s = static_cast<double>(k) / (keyframes - 1);
        double angle = (options.start + 360.0 * options.turns * s) * kPi / 180.0;
        double distance = options.radius + options.swing * std::sin(4.0 * kPi * s);
        double place[3] = {distance * std::sin(angle),
                           options.height - options.rise * std::cos(2.0 * kPi * s),
                           distance * std::cos(angle)};
        double pitch = 0.0;
        double heading = 0.0;
        aim(place, target, pitch, heading);
        if (k > 0) {
            heading = unwrap(heading, previousHeading);
        }
        previousHeading = heading;
        std::fprintf(out, "pos %s %s %s\nrot %s %s\n", number(place[0]).c_str(),
                     number(place[1]).c_str(), number(place[2]).c_str(), number(pitch).c_str(),
                     number(heading).c_str());
    }
}

} // namespace

int main(int argc, char** argv) {
    Options options;
    bool help = false;
    if (!parse(argc, argv, options, help)) {
        return 1;
    }
    if (help) {
        usage(std::cout);
        return 0;
    }
    std::FILE* out = stdout;
    if (!options.output.empty()) {
        out = std::fopen(options.output.c_str(), "w");
        if (out == nullptr) {
            std::cerr << "pathgen: cannot write '" << options.output << "'\n";
            return 1;
        }
    }
    write(options, out);
    if (out != stdout && std::fclose(out) != 0) {
        std::cerr << "pathgen: cannot write '" << options.output << "'\n";
        return 1;
    }
    return 0;
}
