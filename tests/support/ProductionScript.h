#ifndef KVL_PRODUCTIONSCRIPT_H
#define KVL_PRODUCTIONSCRIPT_H

#include <string>

class TempDir;

// The script of a small production, put together from its parts: one fade
// effect, no music, a window of 64 by 64 pixels. A test changes the parts it
// is about; a part left empty is left out of the script.
struct ProductionScript {
    // Where the player and the loader look for the script.
    static const std::string PATH;

    std::string header = "{KVLDS1}";
    // The bodies of the system blocks.
    std::string paths = "definition = resources/definitions/; misc = resources/misc/; "
                        "sound = resources/music/;";
    std::string system = "start = 00:00:000;";
    std::string screen = "width = 64; height = 64;";
    std::string sound = "play = 0;";
    // Whole blocks: shaders, framebuffers, graphics, binary, objects, animation.
    std::string blocks;
    // Declarations of the effect objects.
    std::string effects = "fade * FadeEffect { ; }";
    // The body of the timeline block.
    std::string timeline = "fade.start(00:00:000, 10);";

    std::string text() const;
    // Writes the text to PATH below the directory.
    void writeTo(const TempDir& directory) const;
};

#endif
